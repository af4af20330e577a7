#include "window/platform/StartUp.h"

#include "base/Log.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>
#include <QString>
#include <cstdlib>
#include <string>

#include <fmt/format.h>
#include <unistd.h>

namespace vantro::window {
namespace {

/// The first thing that Qt complained of is the cause of what follows.
std::string& firstComplaint() {
    static std::string complaint;
    return complaint;
}

void handleAtStart(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    if (firstComplaint().empty())
        firstComplaint() = message.section(u'\n', 0, 0).trimmed().toStdString();
    if (type != QtFatalMsg)
        return;
    fmt::print(stderr,
               "vantro: no window can be opened: {} (\"vantro --help\" lists what works without)\n",
               firstComplaint());
    std::fflush(stderr);
    ::_exit(EXIT_FAILURE);
}

void handleAfterStart(QtMsgType type, const QMessageLogContext&, const QString& message) {
    const auto text = message.toStdString();
    if (type == QtFatalMsg || type == QtCriticalMsg)
        base::logError("{}", text);
    else if (type == QtWarningMsg)
        base::logWarning("{}", text);
    else
        base::logInfo("{}", text);
}

bool hasGraphicsHardware() {
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface))
        return false;
    const auto* name = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    const std::string renderer = name != nullptr ? name : "";
    for (const auto* inSoftware : {"llvmpipe", "softpipe", "swrast", "SwiftShader"})
        if (renderer.find(inSoftware) != std::string::npos)
            return false;
    return true;
}

bool environmentDecides() {
    return qEnvironmentVariableIsSet("QT_QUICK_BACKEND") ||
           qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
}

} // namespace

StartUpGuard::StartUpGuard() {
    qInstallMessageHandler(handleAtStart);
}

StartUpGuard::~StartUpGuard() {
    qInstallMessageHandler(handleAfterStart);
}

void chooseSceneGraph() {
    if (environmentDecides())
        return;
    // Asking OpenGL takes a while; without a device the answer is known.
    const bool hasDevice = ::access("/dev/dri/renderD128", R_OK | W_OK) == 0 ||
                           ::access("/dev/nvidiactl", R_OK | W_OK) == 0;
    if (!hasDevice || !hasGraphicsHardware())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace vantro::window

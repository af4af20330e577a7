#include "program/WindowedApplication.h"

#include "capture/RecordingTarget.h"
#include "ui/Language.h"
#include "ui/Preferences.h"
#include "ui/platform/AccessibleApplication.h"
#include "window/platform/StartUp.h"

#include <QApplication>
#include <QIcon>

namespace vantro::program {
namespace {

/// Qt gathers changes for 5 ms before it draws, a third of the time that a picture is shown for.
constexpr auto gatheringTime = "QT_QPA_UPDATE_IDLE_TIME";

} // namespace

std::unique_ptr<QApplication> makeWindowedApplication(int& argc, char** argv) {
    // The window class, by which recordings leave our own windows out.
    QCoreApplication::setApplicationName(QString::fromLatin1(capture::ownBundleIdentifier));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Vantro"));
    ui::tellDisplayName();
    QGuiApplication::setDesktopFileName(QString::fromLatin1(capture::ownBundleIdentifier));
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    if (!qEnvironmentVariableIsSet(gatheringTime))
        qputenv(gatheringTime, "1"); // ms
    std::unique_ptr<QApplication> application;
    {
        const window::StartUpGuard guard;
        application = std::make_unique<QApplication>(argc, argv);
    }
    new ui::Language(ui::Preferences().language(), *application);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/Vantro/vantro.svg")));
    window::chooseSceneGraph();
    return application;
}

} // namespace vantro::program

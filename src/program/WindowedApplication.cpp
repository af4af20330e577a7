#include "program/WindowedApplication.h"

#include "capture/RecordingTarget.h"
#include "window/platform/StartUp.h"

#include <QApplication>
#include <QIcon>

namespace vantro::program {

std::unique_ptr<QApplication> makeWindowedApplication(int& argc, char** argv) {
    // The window class, by which recordings leave our own windows out.
    QCoreApplication::setApplicationName(QString::fromLatin1(capture::ownBundleIdentifier));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Vantro"));
    QGuiApplication::setDesktopFileName(QString::fromLatin1(capture::ownBundleIdentifier));
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    std::unique_ptr<QApplication> application;
    {
        const window::StartUpGuard guard;
        application = std::make_unique<QApplication>(argc, argv);
    }
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/Vantro/vantro.svg")));
    window::chooseSceneGraph();
    return application;
}

} // namespace vantro::program

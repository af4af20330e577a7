#include <QApplication>

#include <gmock/gmock.h>

namespace {

/// A warning of Qt is a mistake of ours, most often in QML.
void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& message) {
    const bool ofPlatform = message.startsWith("This plugin does not support") ||
                            message.startsWith("QStandardPaths: XDG_RUNTIME_DIR");
    if (type != QtDebugMsg && type != QtInfoMsg && !ofPlatform)
        ADD_FAILURE() << message.toStdString();
}

} // namespace

/// Tests of what is on the screen need the program's own kind of application object, and no screen.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("VANTRO_RESOURCES", VANTRO_SOURCE_RESOURCES);
    qputenv("LOCPATH", VANTRO_LOCALES);
    testing::InitGoogleMock(&argc, argv);
    const QApplication application(argc, argv);
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}

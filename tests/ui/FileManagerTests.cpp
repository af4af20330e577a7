#include "ui/platform/FileManager.h"
#include "window/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>

#include <gtest/gtest.h>

namespace vantro::ui {
namespace {

/// A file manager that writes down what it is to show. The real ones need a desktop.
class ScriptedFileManager : public QDBusVirtualObject {
  public:
    QStringList shown;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        shown = message.arguments().value(0).toStringList();
        return bus.send(message.createReply());
    }
};

TEST(FileManager, ShowsTheFileOrWithoutOneOpensItsFolder) {
    const test::PrivateBus bus;
    QString opened;
    FileManager manager(bus.connect(QStringLiteral("program")),
                        [&](const QString& folder) { opened = folder; });
    manager.show(QStringLiteral("/films/a b.mp4"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened == QStringLiteral("/films"); }));

    opened.clear();
    ScriptedFileManager answering;
    auto desktop = bus.connect(QStringLiteral("desktop"));
    desktop.registerVirtualObject(QStringLiteral("/"), &answering, QDBusConnection::SubPath);
    desktop.registerService(QStringLiteral("org.freedesktop.FileManager1"));
    manager.show(QStringLiteral("/films/a b.mp4"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !answering.shown.isEmpty(); }));
    EXPECT_EQ(answering.shown, QStringList(QStringLiteral("file:///films/a%20b.mp4")));
    EXPECT_EQ(opened, QString());
    for (const auto* name : {"desktop", "program"})
        QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
}

} // namespace
} // namespace vantro::ui

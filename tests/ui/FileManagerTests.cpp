#include "ui/platform/FileManager.h"
#include "window/ScriptedDesktop.h"

#include <gtest/gtest.h>

namespace vantro::ui {
namespace {

TEST(FileManager, ShowsTheFileOrWithoutOneOpensItsFolder) {
    test::ScriptedDesktop desktop; // the real ones need one
    QString opened;
    FileManager manager(desktop.program(), [&](const QString& folder) { opened = folder; });
    manager.show(QStringLiteral("/films/a b.mp4"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened == QStringLiteral("/films"); }));

    opened.clear();
    desktop.serve("org.freedesktop.FileManager1");
    manager.show(QStringLiteral("/films/a b.mp4"));
    ASSERT_TRUE(desktop.isCalled("ShowItems"));
    EXPECT_EQ(desktop.calls["ShowItems"].arguments().value(0).toStringList(),
              QStringList(QStringLiteral("file:///films/a%20b.mp4")));
    desktop.answer("ShowItems");
    desktop.settle();
    EXPECT_EQ(opened, QString());
}

} // namespace
} // namespace vantro::ui

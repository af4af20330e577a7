#include "ui/Preferences.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vantro::ui {
namespace {

TEST(Preferences, RememberFromOneRunToTheNext) {
    const QTemporaryDir folder;
    const auto file = folder.filePath(QStringLiteral("vantro.ini"));
    {
        ui::Preferences first(file);
        EXPECT_FALSE(first.windowPosition());
        first.setTheme(ui::ThemeChoice::dark);
        first.setCountdown(true);
        first.setWindowPosition({-3, 700});
        first.setEditorSize({1000, 700});
        first.setEditorMaximized(true);
        first.setDevice(DeviceUse::microphone, {"mic", "Headset"});
        first.setDevice(DeviceUse::camera, {"cam", "Camera"});
        first.setDevice(DeviceUse::camera, {});
        for (int i = 0; i < 12; ++i)
            first.addRecentProject(QStringLiteral("/p/%1.vantro").arg(i));
        first.addRecentProject(QStringLiteral("/p/9.vantro"));
    }
    ui::Preferences second(file);
    EXPECT_EQ(second.theme(), ui::ThemeChoice::dark);
    EXPECT_TRUE(second.countdown());
    EXPECT_EQ(second.windowPosition(), QPoint(-3, 700));
    EXPECT_EQ(second.editorSize(), QSize(1000, 700));
    EXPECT_TRUE(second.editorMaximized());
    EXPECT_EQ(second.device(DeviceUse::microphone), (RememberedDevice{"mic", "Headset"}));
    EXPECT_EQ(second.device(DeviceUse::camera), RememberedDevice());
    const auto recent = second.recentProjects();
    ASSERT_EQ(recent.size(), 8);
    EXPECT_EQ(recent[0], "/p/9.vantro");
    EXPECT_EQ(recent[1], "/p/11.vantro");
    EXPECT_EQ(recent.count(recent[0]), 1);
    second.removeRecentProject(recent[0]);
    EXPECT_EQ(second.recentProjects(), recent.mid(1));
}

} // namespace
} // namespace vantro::ui

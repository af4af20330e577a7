#include "support/TemporaryFolder.h"
#include "ui/Preferences.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vantro::ui {
namespace {

TEST(Preferences, RememberFromOneRunToTheNext) {
    const QTemporaryDir folder;
    const auto file = folder.filePath(QStringLiteral("vantro.ini"));
    const model::Look look{.background = {.type = model::BackgroundColor{0, 0.5, 1},
                                          .padding = 0.2,
                                          .cornerRadius = 7},
                           .canvasAspectRatio = model::CanvasAspectRatio::ratio9x16};
    {
        ui::Preferences first(file);
        EXPECT_FALSE(first.windowPosition());
        first.setTheme(ui::ThemeChoice::dark);
        first.setCountdown(5);
        first.setFrameRate(24);
        first.setRecordingsFolder(QStringLiteral("/films"));
        first.setLanguage(QStringLiteral("de"));
        first.setLook(look);
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
    EXPECT_EQ(second.countdown(), 5);
    EXPECT_EQ(second.frameRate(), 24);
    EXPECT_EQ(second.recordingsFolder(), "/films");
    EXPECT_EQ(second.language(), "de");
    EXPECT_EQ(second.look(), look);
    second.setLook({});
    EXPECT_FALSE(second.look());
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

TEST(Preferences, AreTheUsualOnesWhereTheFileSaysSomethingAbsurd) {
    test::TemporaryFolder folder;
    const struct {
        const char* text;
        int countdown;
    } files[]{{"", 0},
              {"countdown=false", 0},
              {"countdown=true", 3}, // as it was written once
              {"countdown=10", 10},
              {"countdown=-7\nframeRate=1000000\nrecordingsFolder=films\nlanguage=tlh", 0},
              {"countdown=x\nframeRate=@Invalid()\nlook={}\nlanguage=", 0},
              {R"(look="{\"backgroundSettings\":{\"type\":{\"type\":\"color\",\"color\":)"
               R"({\"red\":0,\"green\":0,\"blue\":0}},\"padding\":9,\"cornerRadius\":0},)"
               R"(\"canvasAspectRatio\":\"Auto\"}")",
               0}};
    for (const auto& [text, countdown] : files) {
        const Preferences read(QString::fromStdString(
            folder.write("vantro.ini", std::string("[General]\n") + text + "\n").string()));
        EXPECT_EQ(read.countdown(), countdown) << text;
        EXPECT_EQ(read.frameRate(), 60) << text;
        EXPECT_EQ(read.recordingsFolder(), "") << text;
        EXPECT_EQ(read.language(), "") << text;
        EXPECT_FALSE(read.look()) << text;
    }
}

TEST(Preferences, KeepTheLooksOwnPictureWhenItsProjectGoes) {
    test::TemporaryFolder folder;
    Preferences preferences(QString::fromStdString((folder / "vantro.ini").string()));
    const auto picture = folder.write("film.vantro/beach.png", "picture");
    const auto use = [&](const std::filesystem::path& path) {
        preferences.setLook(model::Look{
            .background = {.type = model::BackgroundImageSource::custom(path), .padding = 0.3}});
    };
    const auto used = [&] {
        return std::get<model::BackgroundImageSource>(preferences.look().value().background.type)
            .path;
    };
    use(picture);
    std::filesystem::remove_all(folder / "film.vantro");
    const auto kept = used();
    EXPECT_EQ(std::filesystem::file_size(kept), 7U);
    use(kept); // of a recording that has this look
    EXPECT_EQ(used(), kept);
    std::filesystem::remove(kept);
    EXPECT_EQ(preferences.look().value().background,
              (model::BackgroundSettings{.type = model::BackgroundColor{}, .padding = 0.3}));
}

} // namespace
} // namespace vantro::ui

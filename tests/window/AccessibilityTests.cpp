#include "window/Contrast.h"
#include "window/WindowFixture.h"

#include <QAccessible>
#include <map>
namespace vantro::window {
namespace {

/// What everybody can use: told to screen readers and legible.
class AccessibilityTest : public test::WindowFixture {};

TEST_F(AccessibilityTest, TheKeyboardIsToldTheSameHelpAsThePointer) {
    showWindow();
    item("record").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(QTest::qWaitFor([this] { return shows("tipText"); }));
    EXPECT_EQ(text("tipText"), "Record (Ctrl+R)");
}

TEST_F(AccessibilityTest, TextsStandOutFromTheirGroundInBothThemes) {
    showWindow();
    for (const auto theme : {ui::ThemeChoice::light, ui::ThemeChoice::dark}) {
        preferences.setTheme(theme);
        settle();
        for (const auto& [text, grounds] : std::map<const char*, std::vector<const char*>>{
                 {"text", {"window", "surface", "raised", "sunken"}},
                 {"secondaryText", {"window", "surface", "sunken"}},
                 {"stageText", {"stage"}},
                 {"warning", {"window"}},
                 {"accentInk", {"accent", "accentHover", "accentPressed"}},
                 {"stopInk", {"stop", "stopHover", "stopPressed"}},
                 {"tipText", {"tip"}},
                 {"timelineText", {"timelineGround"}}})
            for (const auto* ground : grounds)
                EXPECT_GE(test::contrast(themeColor(text), themeColor(ground)), 4.5)
                    << text << " on " << ground << (theme == ui::ThemeChoice::dark ? ", dark" : "");
        for (const auto* mark : {"timelinePlayhead", "timelineHandle", "timelineZoomOutline"})
            EXPECT_GE(test::contrast(themeColor(mark), themeColor("timelineGround")), 3) << mark;
    }
}

} // namespace
} // namespace vantro::window

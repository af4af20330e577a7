#include "editor/sidebar/SidebarFixture.h"

#include <QAccessible>

namespace vantro::editor::sidebar {
namespace {

struct Row {
    const char* name;
    const char* step; ///< what undoing says
    double (*value)(const model::Edit&);
    const char* typed;
    double expected; ///< of that
    double afterKey; ///< one step more
    double usual;    ///< what a double click gives
    double least;    ///< the slider's left end
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

const Row rows[]{
    {"padding", "Change Padding", [](const auto& edit) { return edit.background.padding; }, "12",
     0.12, 0.13, 0.08, 0},
    {"cornerRadius", "Change Corner Radius",
     [](const auto& edit) { return edit.background.cornerRadius; }, "64", 64, 65, 32, 0},
    {"pointerScale", "Resize Pointer", [](const auto& edit) { return edit.cursorScale; }, "4,5",
     4.5, 4.6, 3, 0.5},
    {"zoomLevel", "Change Zoom Level", [](const auto& edit) { return zoom(edit).zoomLevel; }, "2.5",
     2.5, 2.6, 1.5, 1},
    {"zoomLeadIn", "Change Zoom Lead-In", [](const auto& edit) { return zoom(edit).startOffset; },
     "0.4", 0.4, 0.5, 1, 0.1}, // no more room before the click
    {"zoomLeadOut", "Change Zoom Lead-Out", [](const auto& edit) { return zoom(edit).endOffset; },
     "0.4", 0.4, 0.5, 1.25, 0.1}, // the next zoom begins there
    {"zoomX", "Move Zoom Center", [](const auto& edit) { return zoom(edit).x; }, "300", 300, 301,
     160, 0},
    {"zoomY", "Move Zoom Center", [](const auto& edit) { return zoom(edit).y; }, "999", 180, 180,
     90, 0}, // its end
    {"speed", "Change Speed", [](const auto& edit) { return edit.segments[0].speed; }, "99", 16, 16,
     1, 0.25},
    {"allZoomsLevel", "Change All Zoom Levels",
     [](const auto& edit) { return zoom(edit, 1).zoomLevel; }, "1.2", 1.2, 1.3, 1.5, 1},
    {"allZoomsLeadIn", "Change All Lead-Ins",
     [](const auto& edit) { return zoom(edit, 1).startOffset; }, "0.3", 0.3, 0.4, 1.5, 0.1},
    {"allZoomsLeadOut", "Change All Lead-Outs",
     [](const auto& edit) { return zoom(edit, 1).endOffset; }, "0.3", 0.3, 0.4, 1, 0.1},
    {"webcamSize", "Resize Webcam", [](const auto& edit) { return edit.webcamSize; }, "30 %", 0.3,
     0.31, 0.2, 0.05},
    {"systemVolume", "Change System Audio Volume",
     [](const auto& edit) { return edit.systemAudioVolume; }, "150", 1.5, 1.51, 1, 0},
    {"microphoneVolume", "Change Microphone Volume",
     [](const auto& edit) { return edit.microphoneVolume; }, "0", 0, 0.01, 1, 0}};

class SidebarRowTest : public SidebarTest, public testing::WithParamInterface<Row> {
  protected:
    SidebarRowTest() { open(); }
    double value() { return GetParam().value(edit()); }
    std::string part(const char* which) { return std::string(GetParam().name) + which; }
    /// There is one step to undo, of that name, since all was so.
    void expectOneStepSince(const model::Edit& before) {
        EXPECT_EQ(state.document().undoName(), GetParam().step);
        state.document().undo();
        EXPECT_TRUE(edit() == before);
        settle();
    }
};

TEST_P(SidebarRowTest, ADragChangesItAllTheWayAndIsOneStep) {
    auto& slider = reveal(part("Slider"));
    const auto start = edit();
    const double before = value();
    QTest::mousePress(&window(), Qt::LeftButton, {}, place(slider, slider.width() * 0.8));
    QTest::mouseMove(&window(), place(slider, slider.width() * 0.6));
    QTest::mouseMove(&window(), place(slider, slider.width() * 0.3));
    const double during = value();
    EXPECT_NE(during, before);
    QTest::mouseMove(&window(), place(slider, -20));
    EXPECT_NE(value(), during);
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, place(slider, -20));
    EXPECT_DOUBLE_EQ(value(), GetParam().least);
    expectOneStepSince(start);
}

TEST_P(SidebarRowTest, ItIsTypedAndSteppedAndADoubleClickGivesTheUsual) {
    type(part("Field"), GetParam().typed);
    EXPECT_DOUBLE_EQ(value(), GetParam().expected);
    const auto shown = text(part("Field").c_str());
    reveal(part("Slider"));
    key(Qt::Key_Right);
    EXPECT_NEAR(value(), GetParam().afterKey, 1e-9);
    EXPECT_EQ(text(part("Field").c_str()) != shown, GetParam().afterKey != GetParam().expected);
    const auto before = edit();
    auto& slider = item(part("Slider").c_str());
    const auto somewhere = place(slider, slider.width() * 0.9);
    QTest::mouseDClick(&window(), Qt::LeftButton, {}, somewhere);
    EXPECT_DOUBLE_EQ(value(), GetParam().usual);
    expectOneStepSince(before);
}

INSTANTIATE_TEST_SUITE_P(Rows, SidebarRowTest, testing::ValuesIn(rows),
                         [](const auto& row) { return row.param.name; });

TEST_F(SidebarTest, WhatIsTypedIsTakenOnlyWhenItIsANumberAndEscapeTakesItBack) {
    open();
    type("paddingField", "abc");
    EXPECT_EQ(text("paddingField"), "8 %");
    reveal("paddingField");
    QTest::keyClick(&window(), '4');
    EXPECT_EQ(text("paddingField"), "4");
    key(Qt::Key_Escape);
    EXPECT_EQ(text("paddingField"), "8 %");
    EXPECT_EQ(window().activeFocusItem(), &item("stage")) << "the keys are free again";
    EXPECT_FALSE(state.document().canUndo());
}

/// Every control of the sidebar that the keyboard reaches, in the order of Tab.
TEST_F(SidebarTest, TabReachesEverythingIntoViewAndEachTellsItsRoleAndName) {
    open();
    item("stage").forceActiveFocus();
    auto& page = item("sidebarPage");
    std::vector<std::string> reached;
    for (int i = 0; i < 120; ++i) {
        key(Qt::Key_Tab);
        auto* focused = window().activeFocusItem();
        ASSERT_NE(focused, nullptr);
        if (!page.isAncestorOf(focused))
            continue;
        const auto* told = QAccessible::queryAccessibleInterface(focused);
        const auto name = focused->objectName().toStdString();
        EXPECT_FALSE(told->text(QAccessible::Name).isEmpty()) << name;
        EXPECT_THAT(told->role(), testing::AnyOf(QAccessible::Slider, QAccessible::Button,
                                                 QAccessible::RadioButton, QAccessible::CheckBox,
                                                 QAccessible::EditableText))
            << name;
        const auto place = focused->mapRectToItem(&page, focused->boundingRect());
        EXPECT_TRUE(place.top() >= 0 && place.bottom() <= page.height()) << name;
        reached.push_back(name);
    }
    for (const auto& row : rows)
        for (const auto* part : {"Slider", "Field"})
            EXPECT_THAT(reached, testing::Contains(std::string(row.name) + part));
    EXPECT_THAT(reached, testing::IsSupersetOf({"preset0", "moreColors", "pointerShown",
                                                "webcamMirrored", "noiseReduced", "deleteZoom",
                                                "deleteSegment", "removeAllZooms"}));
}

} // namespace
} // namespace vantro::editor::sidebar

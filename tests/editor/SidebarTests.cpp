#include "media/PictureFile.h"
#include "model/BackgroundCatalog.h"
#include "window/WindowFixture.h"

#include <QAccessible>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gmock/gmock.h>

namespace vantro::editor::sidebar {
namespace {

const auto firstZoom = model::Uuid::random();
const auto secondZoom = model::Uuid::random();

model::Edit sampleEdit() {
    model::Edit edit;
    edit.clickEvents = {{{.id = firstZoom,
                          .x = 100,
                          .y = 60,
                          .timestamp = 1,
                          .startOffset = 0.5,
                          .endOffset = 0.5,
                          .zoomLevel = 2},
                         {.id = secondZoom,
                          .x = 200,
                          .y = 90,
                          .timestamp = 3,
                          .startOffset = 0.75,
                          .endOffset = 0.75,
                          .zoomLevel = 3}}};
    edit.segments = {
        {{.startFraction = 0, .endFraction = 0.5}, {.startFraction = 0.5, .speed = 2}}};
    return edit;
}

/// The editor with a recording that has everything, and everything selected that can be.
class SidebarTest : public test::WindowFixture {
  protected:
    SidebarTest() { showWindow(); }

    void open(const model::Edit& edit = sampleEdit(), bool hasSources = true) {
        model::RecordingMetadata metadata;
        metadata.captureRect = {0, 0, 320, 180};
        metadata.endTime = 4;
        metadata.hasSystemAudio = metadata.hasMicrophoneAudio = metadata.hasWebcam = hasSources;
        showEditor({}, metadata);
        state.show({"demo", *state.document().recording(), edit});
        if (!edit.clickEvents.empty())
            state.setSelectedClickID(firstZoom);
        state.setSelectedSegmentID(edit.segments.front().id);
        settle();
        layOut();
    }
    /// What has appeared finds its place when the window is drawn.
    void layOut() { window().grabWindow(); }
    const model::Edit& edit() { return state.document().edit(); }
    /// Gives an item the keyboard, as Tab does, which brings it into view.
    QQuickItem& reveal(const std::string& name) {
        auto& found = item(name.c_str());
        layOut();
        found.forceActiveFocus(Qt::TabFocusReason);
        settle();
        return found;
    }
    void clickRevealed(const std::string& name) {
        reveal(name);
        click(name.c_str());
    }
    QPoint place(QQuickItem& shown, double x) {
        return shown.mapToScene({x, shown.height() / 2}).toPoint();
    }
    void type(const std::string& name, const char* text) {
        reveal(name);
        for (const char* letter = text; *letter != 0; ++letter)
            QTest::keyClick(&window(), *letter);
        key(Qt::Key_Return);
    }
};

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

const model::ClickEvent& zoom(const model::Edit& edit, std::size_t index = 0) {
    return edit.clickEvents[index];
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

struct Button {
    const char* name;
    const char* step;
    bool (*happened)(const model::Edit&);
};

TEST_F(SidebarTest, EveryButtonDoesOneStep) {
    for (const auto& [name, step, happened] : std::initializer_list<Button>{
             {"preset6", "Change Background",
              [](const auto& edit) {
                  return std::get<model::BackgroundColor>(edit.background.type).hexString() ==
                         "#6FA8DC";
              }},
             {"backgroundReset", "Reset Background",
              [](const auto& edit) {
                  return edit.background.type == model::BackgroundType(model::BackgroundColor());
              }},
             {"frameReset", "Reset Frame",
              [](const auto& edit) {
                  return edit.background.padding == 0.08 && edit.background.cornerRadius == 32 &&
                         edit.canvasAspectRatio == model::CanvasAspectRatio::automatic;
              }},
             {"pointerShown", "Hide Pointer",
              [](const auto& edit) { return edit.cursorScale == 0; }},
             {"pointerReset", "Reset Pointer",
              [](const auto& edit) { return edit.cursorScale == 3; }},
             {"webcamShown", "Hide Webcam", [](const auto& edit) { return edit.webcamHidden; }},
             {"webcamMirrored", "Mirror Webcam",
              [](const auto& edit) { return edit.webcamMirrored; }},
             {"webcamReset", "Reset Webcam",
              [](const auto& edit) { return edit.webcamSize == 0.2 && !edit.webcamHidden; }},
             {"soundReset", "Reset Volumes",
              [](const auto& edit) { return edit.systemAudioVolume == 1; }},
             {"zoomReset", "Reset Zoom",
              [](const auto& edit) { return zoom(edit).zoomLevel == 1.5; }},
             {"deleteZoom", "Delete Zoom",
              [](const auto& edit) { return edit.clickEvents.size() == 1; }},
             {"allZoomsReset", "Reset All Zooms",
              [](const auto& edit) { return zoom(edit, 1).zoomLevel == 1.5; }},
             {"removeAllZooms", "Remove All Zooms",
              [](const auto& edit) { return edit.clickEvents.empty(); }},
             {"deleteSegment", "Delete Segment",
              [](const auto& edit) { return edit.segments.size() == 1; }}}) {
        auto start = sampleEdit();
        start.background.padding = 0.2;
        start.canvasAspectRatio = model::CanvasAspectRatio::ratio1x1;
        start.cursorScale = 5;
        start.webcamSize = 0.4;
        start.systemAudioVolume = 0.5;
        start.background.type = model::BackgroundColor{.red = 1, .green = 0.5, .blue = 0};
        open(start);
        clickRevealed(name);
        EXPECT_TRUE(happened(edit())) << name;
        EXPECT_EQ(state.document().undoName(), step);
        state.document().undo();
        EXPECT_FALSE(state.document().canUndo()) << name;
        EXPECT_TRUE(edit() == start) << name;
    }
}

TEST_F(SidebarTest, AHiddenPointerComesBackAsItWas) {
    auto start = sampleEdit();
    start.cursorScale = 5;
    open(start);
    clickRevealed("pointerShown");
    EXPECT_FALSE(shows("pointerScaleSlider"));
    clickRevealed("pointerShown");
    EXPECT_EQ(edit().cursorScale, 5);
}

TEST_F(SidebarTest, PickersShowAndChooseByPointerAndArrowKeys) {
    open();
    const auto choose = [this](const char* name, int index) {
        auto& picker = item(name);
        const double width = picker.width() / picker.property("choices").toList().size();
        const auto at = picker.mapToScene({(index + 0.5) * width, picker.height() / 2});
        QTest::mouseClick(&window(), Qt::LeftButton, {}, at.toPoint());
        settle();
    };
    reveal("canvas");
    choose("canvas", 3);
    EXPECT_EQ(edit().canvasAspectRatio, model::CanvasAspectRatio::ratio1x1);
    key(Qt::Key_Right);
    EXPECT_EQ(edit().canvasAspectRatio, model::CanvasAspectRatio::ratio9x16);
    reveal("webcamCorner");
    choose("webcamCorner", 0);
    EXPECT_EQ(edit().webcamPosition, model::WebcamPosition::topLeft);
    reveal("speedPresets");
    choose("speedPresets", 4);
    EXPECT_EQ(edit().segments[0].speed, 4);
}

TEST_F(SidebarTest, WhatCannotApplyIsNotShown) {
    auto bare = sampleEdit();
    bare.clickEvents = {};
    open(bare, false);
    state.setSelectedSegmentID({});
    settle();
    for (const auto* section : {"zoom", "segment", "allZooms", "webcam", "sound"})
        EXPECT_FALSE(shows(section)) << section;
    for (const auto* section : {"background", "frame", "pointer"})
        EXPECT_TRUE(shows(section)) << section;
    open();
    for (const auto* section : {"zoom", "segment", "allZooms", "webcam", "sound"})
        EXPECT_TRUE(shows(section)) << section;
    state.setEditableClickEvents({});
    settle();
    EXPECT_FALSE(shows("zoom")) << "what was selected is gone";
}

TEST_F(SidebarTest, AnyColorIsPickedByPointerKeysAndFigures) {
    open();
    clickRevealed("moreColors");
    const auto color = [this] {
        return std::get<model::BackgroundColor>(edit().background.type).hexString();
    };
    type("colorField", "336699");
    EXPECT_EQ(color(), "#336699");
    type("colorField", "#12345");
    EXPECT_EQ(color(), "#336699") << "no color";
    auto& square = reveal("colorSquare");
    const auto corner = square.mapToScene({square.width() - 1, 1}).toPoint();
    QTest::mousePress(&window(), Qt::LeftButton, {}, corner - QPoint(60, -40));
    QTest::mouseMove(&window(), corner - QPoint(30, -20));
    QTest::mouseMove(&window(), corner);
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, corner);
    const QColor bright(QString::fromStdString(color()));
    EXPECT_NEAR(bright.hsvHueF(), 7 / 12.0, 0.01) << "the hue stays";
    EXPECT_GT(bright.hsvSaturationF(), 0.97);
    EXPECT_GT(bright.valueF(), 0.97);
    state.document().undo();
    EXPECT_EQ(color(), "#336699");
    reveal("hueSlider");
    key(Qt::Key_Right);
    EXPECT_NEAR(QColor(QString::fromStdString(color())).hsvHue(), 210 + 3.6, 1);
}

class SidebarPictureTest : public SidebarTest {
  protected:
    SidebarPictureTest() {
        open();
        editor.sidebar()->background()->setPictureUsed(true);
        settle();
    }
    const model::BackgroundImageSource* picture() {
        return std::get_if<model::BackgroundImageSource>(&edit().background.type);
    }
    std::filesystem::path fileOf(QColor color, const char* name = "own #1 100%.png") {
        const auto path = files.filePath(QString::fromLatin1(name));
        QImage image(64, 64, QImage::Format_RGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(path));
        return path.toStdString();
    }
    QColor shownAt(const char* name) {
        auto& tile = item(name);
        const auto middle = tile.mapToScene({tile.width() / 2, tile.height() / 2}).toPoint();
        return window().grabWindow().pixelColor(middle);
    }
};

TEST_F(SidebarPictureTest, TheProgramsPicturesAreShownSmallAndChosen) {
    const auto& catalog = model::BackgroundCatalog::application().builtInBackgrounds();
    ASSERT_EQ(catalog.size(), 26U);
    EXPECT_EQ(picture()->path, catalog[0].path);
    reveal("picture25");
    const auto small = media::readPicture(*catalog[25].thumbnail);
    const auto* middle = small->row(0, small->height() / 2) + small->width() / 2 * 4;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const auto shown = shownAt("picture25");
        return std::abs(shown.red() - middle[2]) < 40 && std::abs(shown.blue() - middle[0]) < 40;
    }));
    click("picture25");
    EXPECT_EQ(picture()->path, catalog[25].path);
    key(Qt::Key_Up);
    EXPECT_EQ(picture()->path, catalog[21].path);
    editor.sidebar()->background()->setPictureUsed(false);
    editor.sidebar()->background()->setPictureUsed(true);
    EXPECT_EQ(picture()->path, catalog[21].path) << "where it was";
}

TEST_F(SidebarPictureTest, OnesOwnPictureIsChosenOrDroppedUnlessItIsNone) {
    const auto own = fileOf(Qt::magenta);
    clickRevealed("choosePicture");
    EXPECT_EQ(panels.kind, app::flows::PanelKind::openPicture);
    panels.answer(own);
    runTasks();
    ASSERT_NE(picture(), nullptr);
    EXPECT_EQ(picture()->path, own);
    reveal("ownPicture");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownAt("ownPicture") == QColor(Qt::magenta); }));

    const auto broken = files.filePath(QStringLiteral("broken.png"));
    QFile(broken).open(QIODevice::WriteOnly);
    const auto drop = [this](const QString& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        const auto at = item("sidebar").mapToScene({50, 50});
        QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window(), &enter);
        QDropEvent event(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(&window(),
                                    enter.isAccepted() ? static_cast<QEvent*>(&event) : &leave);
        runTasks();
        return enter.isAccepted();
    };
    EXPECT_TRUE(drop(broken));
    EXPECT_EQ(picture()->path, own) << "as it was";
    EXPECT_TRUE(text("pictureProblem").contains("broken.png"));
    EXPECT_FALSE(drop(files.filePath(QStringLiteral("notes.txt")))) << "no picture";
    const auto other = fileOf(Qt::green, "other.png");
    EXPECT_TRUE(drop(QString::fromStdString(other)));
    EXPECT_EQ(picture()->path, other);
    EXPECT_FALSE(shows("pictureProblem"));
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
    EXPECT_THAT(reached,
                testing::IsSupersetOf({"preset0", "moreColors", "pointerShown", "webcamMirrored",
                                       "deleteZoom", "deleteSegment", "removeAllZooms"}));
}

} // namespace
} // namespace vantro::editor::sidebar

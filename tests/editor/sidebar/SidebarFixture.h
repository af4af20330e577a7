#pragma once

#include "window/WindowFixture.h"

namespace vantro::editor::sidebar {

inline const auto firstZoom = model::Uuid::random();

inline model::Edit sampleEdit() {
    model::Edit edit;
    edit.clickEvents = {{{.id = firstZoom,
                          .x = 100,
                          .y = 60,
                          .timestamp = 1,
                          .startOffset = 0.5,
                          .endOffset = 0.5,
                          .zoomLevel = 2},
                         {.x = 200,
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

inline const model::ClickEvent& zoom(const model::Edit& edit, std::size_t index = 0) {
    return edit.clickEvents[index];
}

} // namespace vantro::editor::sidebar

#pragma once

#include "window/WindowFixture.h"

#include <cmath>

namespace vantro::editor::bars {

/// The bars under a real pointer and keyboard. The recording is four seconds long.
class TimelineBarsTest : public test::WindowFixture {
  protected:
    void open(std::vector<model::ClickEvent> zooms = {},
              std::vector<model::TimelineSegment> segments = {model::TimelineSegment{}},
              const model::RecordingMetadata& metadata = {}) {
        showWindow();
        model::Edit edit;
        edit.clickEvents = std::move(zooms);
        edit.segments = std::move(segments);
        showEditor(edit, metadata);
        ASSERT_TRUE(QTest::qWaitFor([this] { return preview.transport()->duration() > 0; }));
        settle();
    }
    static model::ClickEvent zoomAt(double time, double leadIn = 0.5, double leadOut = 0.5) {
        return {.timestamp = time, .startOffset = leadIn, .endOffset = leadOut};
    }

    /// A second of the recording on a bar, in window coordinates.
    QPoint at(const char* bar, double seconds) {
        auto& shown = item(bar);
        const double x = actions.timeline()->axis().xOf(seconds / 4);
        return shown.mapToScene({x, shown.height() / 2}).toPoint();
    }
    void drag(const char* bar, double from, double to, Qt::KeyboardModifiers held = {}) {
        QTest::mousePress(&window(), Qt::LeftButton, held, at(bar, from));
        QTest::mouseMove(&window(), at(bar, (from + to) / 2));
        QTest::mouseMove(&window(), at(bar, to));
        QTest::mouseRelease(&window(), Qt::LeftButton, held, at(bar, to));
        settle();
    }
    void tap(const char* bar, double seconds) {
        QTest::mouseClick(&window(), Qt::LeftButton, {}, at(bar, seconds));
        settle();
    }
    bool playheadBecomes(double seconds) {
        return QTest::qWaitFor(
            [&] { return std::abs(preview.transport()->currentTime() - seconds) < 0.02; });
    }
    const model::ClickEvent& zoom(std::size_t index) { return state.editableClickEvents()[index]; }
    std::vector<std::pair<double, double>> pieces() {
        std::vector<std::pair<double, double>> result;
        for (const auto& segment : state.segments())
            result.emplace_back(std::round(segment.startFraction * 100) / 100,
                                std::round(segment.endFraction * 100) / 100);
        return result;
    }
    std::string undoName() { return state.document().undoName(); }

    static constexpr double pixel = 0.006; ///< seconds, a little more than one at this width
};

using Pieces = std::vector<std::pair<double, double>>;

} // namespace vantro::editor::bars

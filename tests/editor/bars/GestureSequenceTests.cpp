#include "editor/bars/EditorActions.h"

#include <cmath>
#include <random>

#include <gmock/gmock.h>

namespace vantro::editor::bars {
namespace {

using Bar = BarGestures::Bar;

constexpr double duration = 60;

/// A recording with bursts of clicks, without a player; one of another program has zooms that
/// overlap.
model::Project recorded(std::mt19937& random, bool isForeign) {
    std::uniform_real_distribution<double> time(0.5, duration - 0.5);
    model::RecordingMetadata metadata;
    metadata.endTime = duration;
    metadata.captureRect = {0, 0, 800, 600};
    metadata.frameRate = 30;
    for (int i = 0; i < 12; ++i)
        metadata.clickEvents.push_back({.timestamp = time(random)});
    auto edit = model::freshEdit(metadata);
    if (isForeign) {
        std::uniform_real_distribution<double> lead(0.06, 3);
        auto zooms = edit.clickEvents.list();
        for (auto& zoom : zooms)
            zoom.startOffset = zoom.endOffset = random() % 3 == 0 ? 0.07 : lead(random);
        edit.clickEvents = std::move(zooms);
    }
    return {"demo", {"/nowhere/recording.mov", std::move(metadata)}, std::move(edit)};
}

/// How far zooms overlap or leave the recording in all, seconds.
double excess(const model::Edit& edit) {
    double sum = 0;
    double end = 0;
    for (const auto& zoom : edit.clickEvents) {
        if (model::isSilenced(zoom))
            continue;
        sum += std::max(0.0, end - (zoom.timestamp - zoom.startOffset));
        end = zoom.timestamp + zoom.endOffset;
    }
    return sum + std::max(0.0, end - duration);
}

/// Whether zooms and pieces are in order, pieces long enough, and all of it on the recording.
testing::AssertionResult isSound(const model::Edit& edit) {
    double end = 0;
    for (const auto& zoom : edit.clickEvents) {
        if (!(zoom.timestamp >= end) || !(zoom.timestamp <= duration) ||
            !(zoom.startOffset >= 0 && zoom.endOffset >= 0))
            return testing::AssertionFailure() << "zoom at " << zoom.timestamp;
        end = zoom.timestamp;
    }
    end = 0;
    for (const auto& segment : edit.segments) {
        if (!(segment.startFraction >= end) || !(segment.endFraction <= 1) ||
            !(segment.endFraction - segment.startFraction >= timeline::shortestPiece - 1e-12))
            return testing::AssertionFailure() << "piece from " << segment.startFraction;
        end = segment.endFraction;
    }
    return testing::AssertionSuccess();
}

/// One thing that a hand can do, whole or broken off.
void doAnything(std::mt19937& random, EditorActions& actions) {
    std::uniform_real_distribution<double> x(-40, 1040);
    const auto anySecond = [&] {
        return random() % 10 == 0 ? std::nan("") : x(random) / 1000 * duration;
    };
    auto& gestures = *actions.gestures();
    const auto bar = static_cast<Bar>(random() % 3);
    switch (random() % 9) {
    case 0:
        actions.timeline()->wheel(x(random), random() % 4 == 0 ? 60 : 0,
                                  random() % 2 == 0 ? 240 : -240);
        break;
    case 1:
        gestures.doubleClick(bar, x(random));
        break;
    case 2:
        actions.keys()->setZoom(static_cast<BarKeys::ZoomPart>(random() % 3), anySecond());
        break;
    case 3:
        actions.keys()->setEdge(static_cast<int>(random() % 3), anySecond());
        break;
    case 4:
        actions.keyPressed(Qt::Key_Delete, 0, {}, false);
        break;
    default:
        gestures.press(bar, x(random), random() % 3 == 0);
        for (auto moves = random() % 5; moves > 0; --moves)
            gestures.move(x(random));
        if (random() % 8 == 0)
            gestures.cancel();
        else
            gestures.release(x(random));
    }
}

TEST(GestureSequenceTest, WhateverAHandDoesTheEditStaysSoundAndUndoBringsBackAll) {
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        app::AppState state(1);
        PlayerTimeObserver transport;
        EditorActions actions(state, transport);
        actions.timeline()->setWidth(1000);
        const auto project = recorded(random, round % 2 == 1);
        state.show(project);
        int did = 0;
        for (; did < 40; ++did) {
            if (random() % 10 == 0) {
                random() % 2 == 0 ? actions.undo() : actions.redo();
                continue;
            }
            const double before = excess(state.document().edit());
            doAnything(random, actions);
            ASSERT_TRUE(isSound(state.document().edit())) << "round " << round << ", " << did;
            ASSERT_LE(excess(state.document().edit()), before + 1e-9) << "round " << round;
        }
        int steps = 0;
        for (; state.document().canUndo(); ++steps)
            actions.undo();
        EXPECT_LE(steps, did) << "a gesture is one step";
        ASSERT_EQ(state.document().edit(), project.edit) << "round " << round;
        EXPECT_FALSE(state.document().isModified());
    }
}

} // namespace
} // namespace vantro::editor::bars

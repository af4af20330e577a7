#pragma once

#include "capture/Colors.h"
#include "capture/MovieFrames.h"
#include "capture/session/RecordingSession.h"
#include "capture/wayland/WaylandCapturePlatform.h"
#include "support/Eventually.h"
#include "support/ScriptedScreen.h"
#include "support/TemporaryFolder.h"
#include "support/WaylandDesk.h"

#include <memory>
#include <optional>
#include <utility>

#include <gmock/gmock.h>

namespace vantro::test {

/// A private Wayland session in which one screen, or window, can be recorded.
class PortalFixture : public ::testing::Test {
  protected:
    static constexpr double codingTolerance = 8; // of 255 levels: the movie is not lossless

    void SetUp() override {
        if (!WaylandDesk::isInstalled())
            GTEST_SKIP() << "xdg-desktop-portal, PipeWire or WirePlumber is not installed";
        desk = std::make_unique<WaylandDesk>();
    }

    /// A desktop that grants this screen.
    void offer(const ScreenProfile& profile = {}, PortalScript script = {}) {
        screen = std::make_unique<ScriptedScreen>(profile);
        screen->show({.patches = {{0, 0, profile.width, profile.height, colors::red}}});
        script.node = screen->node();
        desk->startPortal(script);
        granted = script;
    }

    std::unique_ptr<capture::CapturePlatform> connect() const {
        return capture::wayland::connectPortal({desk->folder() / "tokens.json", ""}, clicks)
            .value();
    }
    /// Chosen and begun.
    void begin(const capture::RecordingRequest& request = {}) {
        session =
            std::make_unique<capture::RecordingSession>(request, [this] { return connect(); });
        ASSERT_TRUE(session->choose({}));
        session->start(movie);
        ASSERT_TRUE(awaitFrames(1));
    }
    bool awaitFrames(std::int64_t count) const {
        return eventually([&] { return session->statistics().framesCaptured >= count; });
    }
    /// Waits until a frame more has been recorded than there was before `change`.
    bool awaitFrameAfter(const std::function<void()>& change) const {
        const auto before = session->statistics().framesCaptured;
        change();
        return awaitFrames(before + 1);
    }
    bool awaitCondition(capture::RecordingCondition condition) const {
        return eventually([&] { return session->statistics().condition == condition; });
    }
    void end() { metadata = session->stop(); }
    std::vector<media::VideoFrame> frames() const { return framesOf(movie); }
    static bool has(const media::VideoFrame& frame, int x, int y, std::uint32_t color) {
        return hasColor(*frame.pixels, x, y, color, codingTolerance);
    }

    std::unique_ptr<WaylandDesk> desk;
    std::shared_ptr<capture::wayland::ClickAccess> clicks; ///< null: that of the run
    std::unique_ptr<ScriptedScreen> screen;
    PortalScript granted;
    TemporaryFolder folder;
    std::filesystem::path movie = folder / "recording.mov";
    std::unique_ptr<capture::RecordingSession> session;
    model::RecordingMetadata metadata;
};

/// All of a picture.
inline ScreenFrame filled(std::uint32_t color, const ScreenProfile& profile = {}) {
    return {.patches = {{0, 0, profile.width, profile.height, color}}};
}

} // namespace vantro::test

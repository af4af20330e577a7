#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace vantro::test {

/// In pixels of the picture.
struct Patch {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::uint32_t color = 0; ///< 0xRRGGBB
};

/// One buffer that a compositor sends.
struct ScreenFrame {
    std::vector<Patch> patches{};                 ///< on black, the last on top
    bool hasPicture = true;                       ///< false: news of the pointer only
    std::optional<std::pair<int, int>> pointer{}; ///< absent: hidden, or elsewhere
    enum class Time { now, none, stale };
    Time time = Time::now;
    std::optional<Patch> crop{};
    std::uint32_t transform = 0;
    int claimedStride = 0; ///< not what is true; 0: the truth
};

/// What a compositor's stream is like.
struct ScreenProfile {
    int width = 640;
    int height = 360;
    enum class Format { bgrx, bgra, rgbx, xrgb, xbgr, rgb, bgr };
    Format format = Format::bgrx;
    int rate = 60;                ///< frames a second, at most
    bool tellsPointer = true;     ///< has metadata for it
    bool emptyIsCorrupted = true; ///< of a buffer without a picture; else its size alone is 0
};

/// Stands for a compositor: a PipeWire node that sends what the test shows, as real ones do: at the
/// start of a stream what there is, then only what is new, in memory that it shares.
class ScriptedScreen {
  public:
    /// On the PipeWire server of the environment. Throws std::runtime_error.
    explicit ScriptedScreen(const ScreenProfile& profile = {});
    ~ScriptedScreen();
    ScriptedScreen(const ScriptedScreen&) = delete;
    ScriptedScreen& operator=(const ScriptedScreen&) = delete;

    std::uint32_t node() const;
    /// Sent as soon as somebody looks and has room; stays what there is.
    void show(const ScreenFrame& frame);
    /// The next frame gets lost on its way.
    void loseNext();
    /// Nothing is ever sent.
    void stayMute();
    /// Sends what `make` gives, at the profile's rate; no longer when null.
    void animate(std::function<ScreenFrame(int number)> make);
    /// Agrees upon another size, in which `frame` is the first.
    void resize(int width, int height, const std::optional<ScreenFrame>& frame = {});
    /// Frames sent so far.
    int sent() const;
    /// As while the computer is suspended: nobody is served.
    void sleep(bool isAsleep);
    /// The node goes away.
    void vanish();

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::test

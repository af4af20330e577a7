#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vantro::test {

/// Stands for a camera, as this machine has none: a real node of the PipeWire server that the
/// environment names, plugged in from construction to destruction.
///
/// Its picture: along the top a counter of the pictures, 16 bits of 8 pixels each, the lowest one
/// left, white for 1; below, the left half black or white, the right half of a strong color.
class FakeCamera {
  public:
    enum class Layout { yuyv, uyvy, nv12, i420, rgb, bgrx, gray, mjpeg };

    /// By which clock it says when a picture was taken.
    enum class Stamps { host, its, none };

    struct Format {
        Layout layout = Layout::yuyv;
        int width = 640;
        int height = 480;
        int rate = 30;
    };
    struct Settings {
        std::string name = "test_camera";
        std::string description = "Test camera";
        int priority = 1000;
        std::vector<Format> formats{Format{}};
        Stamps stamps = Stamps::host;
    };

    /// The color of the right half.
    static constexpr int red = 200;
    static constexpr int green = 60;
    static constexpr int blue = 40;

    /// Returns when the server knows it. Throws std::runtime_error.
    explicit FakeCamera(Settings settings);
    FakeCamera() : FakeCamera(Settings{}) {}
    ~FakeCamera();
    FakeCamera(const FakeCamera&) = delete;
    FakeCamera& operator=(const FakeCamera&) = delete;

    /// Sends nothing while it is set.
    void setStalled(bool isStalled) { m_isStalled = isStalled; }
    /// Sends the beginnings of pictures only.
    void setDamaged(bool isDamaged) { m_isDamaged = isDamaged; }
    void setWhite(bool isWhite) { m_isWhite = isWhite; }
    /// Offers this format only, from now on.
    void change(const Format& format);

    /// What it sends in, once somebody takes it.
    Format format() const;
    std::uint32_t sent() const { return m_counter; }
    /// When it sent each picture, by the counter; CLOCK_MONOTONIC seconds.
    std::vector<double> times() const;
    bool isUsed() const { return m_isUsed; }

  private:
    struct Node;

    const Settings m_settings;
    std::atomic<bool> m_isStalled = false;
    std::atomic<bool> m_isDamaged = false;
    std::atomic<bool> m_isWhite = false;
    std::atomic<bool> m_isUsed = false;
    std::atomic<std::uint32_t> m_counter = 0;
    std::unique_ptr<Node> m_node;
};

/// One picture of it; what it holds is rows of the layout without anything between them.
std::vector<std::uint8_t> fakePicture(const FakeCamera::Format& format, std::uint32_t counter,
                                      bool isWhite);

} // namespace vantro::test

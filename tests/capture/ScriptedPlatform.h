#pragma once

#include "capture/CapturePlatform.h"

#include <stdexcept>

namespace vantro::test {

/// A desktop with one display of 320 × 240 points whose stream does what the test tells it to.
class ScriptedPlatform final : public capture::CapturePlatform {
  public:
    static constexpr std::uint32_t displayID = 5;

    std::expected<capture::ShareableContent, std::string> shareableContent() override {
        return capture::ShareableContent{
            .displays = {{displayID, "scripted", {0, 0, 320, 240}, 1.0, true}}, .windows = {}};
    }

    std::expected<std::unique_ptr<capture::ScreenStream>, std::string>
    makeScreenStream(const capture::ContentFilter&,
                     const capture::ScreenStreamConfiguration&) override {
        return std::make_unique<Stream>(*this);
    }

    std::expected<std::shared_ptr<capture::PointerSource>, std::string>
    makePointerSource() override {
        return std::make_shared<RestingPointer>();
    }

    capture::ScreenStreamOutput* output = nullptr; ///< while the stream runs
    std::string startFailure;

  private:
    struct Stream final : capture::ScreenStream {
        explicit Stream(ScriptedPlatform& owner) : platform(owner) {}
        void startCapture(capture::ScreenStreamOutput& receiver) override {
            if (!platform.startFailure.empty())
                throw std::runtime_error(platform.startFailure);
            platform.output = &receiver;
        }
        void stopCapture() override { platform.output = nullptr; }
        ScriptedPlatform& platform;
    };

    struct RestingPointer final : capture::PointerSource {
        model::Point location() override { return {.x = 10, .y = 20}; }
        std::unique_ptr<capture::ClickMonitor> monitorPresses(capture::MouseButton,
                                                              std::function<void()>) override {
            return nullptr;
        }
    };
};

} // namespace vantro::test

#pragma once

#include "capture/CapturePlatform.h"

#include <stdexcept>

namespace vantro::test {

/// A desktop with one display of 320 × 240 points whose stream does what the test tells it to.
/// What the test decides.
struct StreamScript {
    capture::ScreenStreamOutput* output = nullptr; ///< while the stream runs
    std::string startFailure;
};

class ScriptedPlatform final : public capture::CapturePlatform {
  public:
    static constexpr std::uint32_t displayID = 5;

    explicit ScriptedPlatform(std::shared_ptr<StreamScript> script) : m_script(std::move(script)) {}

    capture::PlatformAbilities abilities() override { return {}; }
    std::expected<std::vector<capture::ShareableDisplay>, std::string> displays() override {
        return std::vector{
            capture::ShareableDisplay{displayID, "scripted", {0, 0, 320, 240}, 1.0, true}};
    }
    std::expected<capture::ShareableContent, std::string> shareableContent(WindowIcons) override {
        return capture::ShareableContent{.displays = *displays(), .windows = {}};
    }

    std::expected<std::unique_ptr<capture::ScreenStream>, std::string>
    makeScreenStream(const capture::RecordingTarget&) override {
        return std::make_unique<Stream>(m_script);
    }

    std::expected<std::shared_ptr<capture::PointerSource>, std::string>
    makePointerSource() override {
        return std::make_shared<RestingPointer>();
    }

  private:
    struct Stream final : capture::ScreenStream {
        explicit Stream(std::shared_ptr<StreamScript> owner) : script(std::move(owner)) {}
        void startCapture(capture::ScreenStreamOutput& receiver) override {
            if (!script->startFailure.empty())
                throw std::runtime_error(script->startFailure);
            script->output = &receiver;
        }
        void stopCapture() override { script->output = nullptr; }
        std::shared_ptr<StreamScript> script;
    };

    struct RestingPointer final : capture::PointerSource {
        model::Point location() override { return {.x = 10, .y = 20}; }
        std::unique_ptr<capture::ClickMonitor> monitorPresses(capture::MouseButton,
                                                              std::function<void()>) override {
            return nullptr;
        }
    };

    std::shared_ptr<StreamScript> m_script;
};

} // namespace vantro::test

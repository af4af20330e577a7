#pragma once

#include "capture/CapturePlatform.h"
#include "capture/SoundDevices.h"

#include <optional>
#include <stdexcept>

namespace vantro::test {

/// What the test decides and sees of a scripted desktop.
struct StreamScript {
    capture::ScreenStreamOutput* output = nullptr; ///< while the stream runs
    capture::PointerOutput* pointer = nullptr;     ///< while the pointer is watched
    capture::SoundOutput* sound = nullptr;         ///< while the microphone runs
    std::string startFailure;
    std::string microphoneFailure; ///< at its start
};

/// A desktop with one display of 320 × 240 points that does what the test tells it to.
class ScriptedPlatform final : public capture::CapturePlatform {
  public:
    static constexpr std::uint32_t displayID = 5;

    explicit ScriptedPlatform(std::shared_ptr<StreamScript> script) : m_script(std::move(script)) {}

    capture::PlatformAbilities abilities() override { return {}; }
    bool isConnected() override { return true; }
    std::expected<std::vector<capture::ShareableDisplay>, std::string> displays() override {
        return std::vector<capture::ShareableDisplay>{
            {displayID, "scripted", {0, 0, 320, 240}, 1.0, true}};
    }
    std::expected<capture::ShareableContent, std::string> shareableContent(WindowIcons) override {
        return capture::ShareableContent{.displays = *displays(), .windows = {}};
    }
    std::expected<std::unique_ptr<capture::ScreenStream>, std::string>
    makeScreenStream(const capture::RecordingTarget&) override {
        return std::make_unique<Stream>(m_script);
    }
    std::expected<std::unique_ptr<capture::PointerSource>, std::string>
    makePointerSource(const capture::RecordingTarget&) override {
        return std::make_unique<RestingPointer>(m_script);
    }

  private:
    struct Scripted {
        explicit Scripted(std::shared_ptr<StreamScript> given) : script(std::move(given)) {}
        std::shared_ptr<StreamScript> script;
    };
    struct Stream final : capture::ScreenStream, Scripted {
        using Scripted::Scripted;
        void startCapture(capture::ScreenStreamOutput& receiver) override {
            if (!script->startFailure.empty())
                throw std::runtime_error(script->startFailure);
            script->output = &receiver;
        }
        void stopCapture() override { script->output = nullptr; }
    };
    struct RestingPointer final : capture::PointerSource, Scripted {
        using Scripted::Scripted;
        void start(capture::PointerOutput& output) override {
            script->pointer = &output;
            output.pointerAt({.time = base::hostNow(), .place = {.x = 10, .y = 20}});
        }
        void stop() override { script->pointer = nullptr; }
    };
    std::shared_ptr<StreamScript> m_script;
};

/// A microphone, and no loudspeakers.
class ScriptedSound final : public capture::SoundDevices {
  public:
    explicit ScriptedSound(std::shared_ptr<StreamScript> script) : m_script(std::move(script)) {}

    std::expected<std::vector<capture::SoundDevice>, std::string> list() override { return {}; }
    std::expected<std::unique_ptr<capture::SoundSource>, capture::SoundRefusal>
    open(capture::SoundKind kind, const std::string&) override {
        if (kind == capture::SoundKind::system)
            return std::unexpected(capture::SoundRefusal{.reason = "there are no loudspeakers"});
        return std::make_unique<Microphone>(m_script);
    }
    std::unique_ptr<capture::SoundMeter> meter(capture::SoundKind, const std::string&) override {
        return nullptr;
    }

  private:
    struct Microphone final : capture::SoundSource {
        explicit Microphone(std::shared_ptr<StreamScript> given) : script(std::move(given)) {}
        void start(capture::SoundOutput& output) override {
            if (!script->microphoneFailure.empty())
                throw std::runtime_error(script->microphoneFailure);
            script->sound = &output;
        }
        void stop() override { script->sound = nullptr; }
        std::shared_ptr<StreamScript> script;
    };

    std::shared_ptr<StreamScript> m_script;
};

} // namespace vantro::test

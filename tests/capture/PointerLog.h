#pragma once

#include "base/Guarded.h"
#include "capture/CapturePlatform.h"
#include "support/Eventually.h"

#include <vector>

namespace vantro::test {

/// A pointer that is watched for as long as this lives, and what it tells. Any thread looks at it.
class PointerLog final : public capture::PointerOutput {
  public:
    /// While the target of `request` is recorded.
    explicit PointerLog(std::unique_ptr<capture::CapturePlatform> platform,
                        const capture::RecordingRequest& request = {})
        : m_source(platform
                       ->makePointerSource(
                           awaitTarget(*platform, request).value_or(capture::RecordingTarget()))
                       .value()) {
        m_source->start(*this);
    }
    ~PointerLog() override { m_source->stop(); }

    void pointerAt(const capture::PointerSample& sample) override {
        m_told.with([&](Told& told) { told.newest = sample; });
    }
    void pressed(const capture::PointerPress& press) override {
        m_told.with([&](Told& told) { told.presses.push_back(press); });
    }
    void pointerStopped(const std::string& error) override {
        m_told.with([&](Told& told) { told.error = error; });
    }

    std::vector<capture::PointerPress> presses() { return told().presses; }
    std::string error() { return told().error; }
    model::Point place() { return told().newest.place; }
    /// When the pointer was last told of.
    base::HostTime time() { return told().newest.time; }
    bool awaitPlace(model::Point wanted) {
        return eventually([&] { return place() == wanted; });
    }
    bool awaitPresses(std::size_t count) {
        return eventually([&] { return presses().size() >= count; });
    }

  private:
    struct Told {
        capture::PointerSample newest;
        std::vector<capture::PointerPress> presses;
        std::string error;
    };
    Told told() {
        return m_told.with([](const Told& told) { return told; });
    }

    base::Guarded<Told> m_told;
    std::unique_ptr<capture::PointerSource> m_source;
};

} // namespace vantro::test

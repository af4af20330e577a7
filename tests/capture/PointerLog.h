#pragma once

#include "capture/CapturePlatform.h"
#include "support/Eventually.h"

#include <mutex>
#include <optional>
#include <vector>

namespace vantro::test {

/// A pointer that is watched for as long as this lives, and what it tells. Any thread looks at it.
class PointerLog final : public capture::PointerOutput {
  public:
    /// While the target of `request` is recorded.
    explicit PointerLog(std::unique_ptr<capture::CapturePlatform> platform,
                        const capture::RecordingRequest& request = {})
        : m_source(platform->makePointerSource(awaitTarget(*platform, request).value()).value()) {
        m_source->start(*this);
    }
    ~PointerLog() override { m_source->stop(); }

    void pointerAt(const capture::PointerSample& sample) override {
        const std::lock_guard lock(m_mutex);
        m_newest = sample;
    }
    void pressed(const capture::PointerPress& press) override {
        const std::lock_guard lock(m_mutex);
        m_presses.push_back(press);
    }
    void pointerStopped(const std::string& error) override {
        const std::lock_guard lock(m_mutex);
        m_error = error;
    }

    std::vector<capture::PointerPress> presses() {
        const std::lock_guard lock(m_mutex);
        return m_presses;
    }
    std::string error() {
        const std::lock_guard lock(m_mutex);
        return m_error;
    }
    model::Point place() {
        const std::lock_guard lock(m_mutex);
        return m_newest.place;
    }
    /// When the pointer was last told of.
    base::HostTime time() {
        const std::lock_guard lock(m_mutex);
        return m_newest.time;
    }
    bool awaitPlace(model::Point wanted) {
        return eventually([&] { return place() == wanted; });
    }
    bool awaitPresses(std::size_t count) {
        return eventually([&] { return presses().size() >= count; });
    }

  private:
    std::mutex m_mutex;
    capture::PointerSample m_newest;
    std::vector<capture::PointerPress> m_presses;
    std::string m_error;
    std::unique_ptr<capture::PointerSource> m_source;
};

} // namespace vantro::test

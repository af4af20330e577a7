#pragma once

#include "capture/ScreenStream.h"
#include "support/Eventually.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vantro::test {

/// A stream's output that keeps what arrives. Any thread looks at it.
class SampleCollector final : public capture::ScreenStreamOutput {
  public:
    capture::SampleDisposition screenSample(const capture::ScreenSample& sample) override {
        const std::lock_guard lock(m_mutex);
        if (m_refusals > 0) {
            --m_refusals;
            return capture::SampleDisposition::refused;
        }
        m_samples.push_back(sample);
        return capture::SampleDisposition::taken;
    }
    void streamStopped(const std::string& error) override {
        const std::lock_guard lock(m_mutex);
        m_error = error;
    }

    void refuseNext(int count) {
        const std::lock_guard lock(m_mutex);
        m_refusals = count;
    }
    /// False when no sample fulfils it within ten seconds.
    bool awaitSample(const std::function<bool(const capture::ScreenSample&)>& condition) {
        return eventually([&] { return std::ranges::any_of(samples(), condition); });
    }
    std::optional<std::string> awaitError() {
        eventually([this] { return error().has_value(); });
        return error();
    }
    std::vector<capture::ScreenSample> samples() {
        const std::lock_guard lock(m_mutex);
        return m_samples;
    }

  private:
    std::optional<std::string> error() {
        const std::lock_guard lock(m_mutex);
        return m_error;
    }

    std::mutex m_mutex;
    std::vector<capture::ScreenSample> m_samples;
    std::optional<std::string> m_error;
    int m_refusals = 0;
};

} // namespace vantro::test

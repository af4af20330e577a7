#pragma once

#include "capture/ScreenStream.h"

#include <condition_variable>
#include <functional>
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
        m_changed.notify_all();
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
        m_changed.notify_all();
    }

    void refuseNext(int count) {
        const std::lock_guard lock(m_mutex);
        m_refusals = count;
    }

    /// False when no sample fulfils it within ten seconds.
    bool awaitSample(const std::function<bool(const capture::ScreenSample&)>& condition) {
        std::unique_lock lock(m_mutex);
        std::size_t seen = 0;
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] {
            for (; seen < m_samples.size(); ++seen)
                if (condition(m_samples[seen]))
                    return true;
            return false;
        });
    }

    std::optional<std::string> awaitError() {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_error.has_value(); });
        return m_error;
    }

    /// Null before the first.
    std::shared_ptr<const media::PixelBuffer> latest() {
        const std::lock_guard lock(m_mutex);
        return m_samples.empty() ? nullptr : m_samples.back().pixels;
    }

    std::vector<capture::ScreenSample> samples() {
        const std::lock_guard lock(m_mutex);
        return m_samples;
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<capture::ScreenSample> m_samples;
    std::optional<std::string> m_error;
    int m_refusals = 0;
};

} // namespace vantro::test

#pragma once

#include "media/strips/StripMaker.h"
#include "support/Eventually.h"

#include <map>
#include <mutex>

namespace vantro::test {

/// A movie's strip under way, and what it told so far.
class StripRig {
  public:
    struct Told {
        std::optional<media::strips::StripFormat> format;
        std::map<std::int64_t, media::strips::Thumbnail> thumbnails; ///< by tick
        std::vector<std::int64_t> order;                             ///< of the thumbnails
        std::vector<media::strips::PeakPiece> peaks;
    };

    explicit StripRig(const std::filesystem::path& movie)
        : m_maker({movie}, [this](auto news) { take(std::move(news)); }, false) {}

    media::strips::StripMaker& maker() { return m_maker; }
    Told told() {
        const std::lock_guard lock(m_mutex);
        return m_told;
    }
    bool becomes(const std::function<bool(const Told&)>& condition) {
        return eventually([&] { return condition(told()); });
    }

  private:
    void take(media::strips::StripNews news) {
        const std::lock_guard lock(m_mutex);
        if (const auto* format = std::get_if<media::strips::StripFormat>(&news))
            m_told.format = *format;
        if (const auto* thumbnail = std::get_if<media::strips::Thumbnail>(&news)) {
            m_told.thumbnails[thumbnail->tick] = *thumbnail;
            m_told.order.push_back(thumbnail->tick);
        }
        if (const auto* piece = std::get_if<media::strips::PeakPiece>(&news))
            m_told.peaks.push_back(*piece);
    }

    std::mutex m_mutex;
    Told m_told;
    media::strips::StripMaker m_maker; // goes first
};

} // namespace vantro::test

#include "media/strips/PeakReader.h"

#include "base/Log.h"
#include "media/values/AudioBuffer.h"
#include "media/values/MediaError.h"

#include <cmath>

namespace vantro::media::strips {
namespace {

/// Full scale is 127; what is not a number is silence.
std::int8_t quantized(float sample) {
    const float limited = std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0.0F;
    return static_cast<std::int8_t>(std::lround(limited * 127));
}

} // namespace

PeakReader::PeakReader(const Asset& asset) : m_asset(asset) {
    if (m_asset.tracks(MediaType::audio).empty())
        return;
    m_plan = BucketPlan::of(m_asset.duration().seconds());
    m_left = static_cast<std::size_t>((m_plan.buckets + bucketsOfPiece - 1) / bucketsOfPiece);
    m_read.resize(m_left);
}

void PeakReader::open() {
    if (!m_sources.empty())
        return;
    for (const auto& track : m_asset.tracks(MediaType::audio))
        m_sources.emplace_back(m_asset.movie(), track.id);
}

void PeakReader::prepare() try { open(); } catch (const MediaError&) {
    m_sources.clear(); // the first piece tells
}

std::int64_t PeakReader::choose(double from) const {
    const auto count = static_cast<std::int64_t>(m_read.size());
    const double pieceSeconds = m_plan.bucketSeconds() * static_cast<double>(bucketsOfPiece);
    const auto pieceAt = [&](double seconds) {
        return static_cast<std::int64_t>(
            std::clamp(seconds / pieceSeconds, 0.0, static_cast<double>(count - 1)));
    };
    const auto firstSeen = pieceAt(from);
    const auto unread = [this](std::int64_t piece) {
        return !m_read[static_cast<std::size_t>(piece)];
    };
    for (auto piece = firstSeen; piece < count; ++piece)
        if (unread(piece))
            return piece;
    for (auto piece = firstSeen - 1; piece >= 0; --piece)
        if (unread(piece))
            return piece;
    return 0;
}

Peak PeakReader::readBucket(std::int64_t position) {
    m_mix.assign(static_cast<std::size_t>(m_plan.bucketFrames * mixing::channelCount), 0);
    m_track.resize(m_mix.size());
    for (auto& source : m_sources) {
        source.read(position, m_track);
        for (std::size_t i = 0; i < m_mix.size(); ++i)
            m_mix[i] += m_track[i];
    }
    Peak peak;
    for (const float sample : m_mix)
        peak.include({quantized(sample), quantized(sample)});
    return peak;
}

std::optional<PeakPiece> PeakReader::next(double from, const std::stop_token& stop) {
    if (isDone())
        return {};
    const auto piece = choose(from);
    PeakPiece result{piece * bucketsOfPiece, {}};
    const auto count = std::min(bucketsOfPiece, m_plan.buckets - result.firstBucket);
    try {
        open();
        for (std::int64_t i = 0; i < count && !stop.stop_requested(); ++i)
            result.peaks.push_back(readBucket((result.firstBucket + i) * m_plan.bucketFrames));
    } catch (const MediaError& error) {
        base::logInfo("No waveform of a piece of {}: {}", m_asset.path().string(), error.what());
        m_sources.clear(); // they stand anywhere
    }
    if (stop.stop_requested())
        return {};
    result.peaks.resize(static_cast<std::size_t>(count), Peak{0, 0});
    m_read[static_cast<std::size_t>(piece)] = true;
    --m_left;
    return result;
}

} // namespace vantro::media::strips

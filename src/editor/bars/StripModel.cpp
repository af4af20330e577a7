#include "editor/bars/StripModel.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace vantro::editor::bars {
namespace {

using media::strips::PeakPiece;
using media::strips::StripFormat;
using media::strips::Thumbnail;

constexpr std::int64_t standInReach = 32; // tiles: what a view magnified that often still has
constexpr double soundStep = 10;          // seconds, by which a view's beginning is told

} // namespace

StripModel::StripModel(app::AppState& state, bool yields) : m_state(state), m_yields(yields) {
    // Two movies from elsewhere may have the same metadata.
    for (const auto signal :
         {&app::AppState::metadataChanged, &app::AppState::recordingPathChanged})
        connect(&state, signal, this, &StripModel::follow);
    follow();
}

StripModel::~StripModel() {
    for (const auto& maker : m_makers)
        maker->stop();
}

double StripModel::aspect() const {
    return hasPictures() ? static_cast<double>(m_format.thumbnailWidth) / m_format.thumbnailHeight
                         : 0;
}

void StripModel::follow() {
    const auto& recording = m_state.document().recording();
    if (recording && m_recording && recording->isSameAs(*m_recording))
        return;
    m_recording = recording;
    ++m_request;
    m_format = {};
    m_thumbnails = media::strips::ThumbnailCache();
    m_waveform = {};
    m_seen.clear();
    std::erase_if(m_makers, [](const auto& maker) { return maker->hasEnded(); });
    for (const auto& maker : m_makers)
        maker->stop();
    if (m_recording)
        begin(*m_recording);
    Q_EMIT changed();
}

void StripModel::begin(const model::Recording& recording) {
    m_makers.push_back(std::make_unique<media::strips::StripMaker>(
        media::MovieReference{recording.movie()},
        [this, request = m_request](auto news) {
            // The makers end before this does.
            QMetaObject::invokeMethod(
                this,
                [this, request, news = std::move(news)]() mutable {
                    if (request == m_request)
                        take(std::move(news));
                },
                Qt::QueuedConnection);
        },
        m_yields));
}

void StripModel::take(media::strips::StripNews news) {
    if (const auto* format = std::get_if<StripFormat>(&news)) {
        m_format = *format;
        if (m_format.hasSound)
            m_waveform = media::strips::Waveform(m_format.seconds);
    } else if (const auto* thumbnail = std::get_if<Thumbnail>(&news)) {
        m_thumbnails.add(*thumbnail);
    } else {
        m_waveform.add(std::get<PeakPiece>(news));
    }
    Q_EMIT changed();
}

void StripModel::look(const StripTiles& tiles, double from) {
    if (!hasPictures() && !hasSound())
        return;
    std::vector<std::int64_t> seen;
    std::ranges::transform(tiles.tiles, std::back_inserter(seen), &StripTile::tick);
    const double stepped = std::floor(from / soundStep) * soundStep;
    // What was asked for is not asked for again: that would give up the search for it.
    if (seen == m_seen && tiles.tolerance == m_tolerance && stepped == m_from)
        return;
    m_seen = seen;
    m_tolerance = tiles.tolerance;
    m_from = stepped;
    std::erase_if(seen, [&](auto tick) { return m_thumbnails.has(tick, tiles.tolerance); });
    m_makers.back()->look({std::move(seen), tiles.tolerance, stepped});
}

std::shared_ptr<const media::PixelBuffer> StripModel::picture(const StripTile& tile) {
    const auto within = [&](std::int64_t reach) {
        return m_thumbnails.nearest(tile.tick, tile.tick - reach, tile.tick + reach);
    };
    const auto close = within(tile.spread);
    return close ? close : within(tile.spread * standInReach);
}

} // namespace vantro::editor::bars

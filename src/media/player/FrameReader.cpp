#include "media/player/FrameReader.h"

#include "media/values/MediaError.h"

#include <utility>

namespace vantro::media::player {
namespace {

// Beside the pictures that wait to be shown, which cost nothing more here: to step back by some.
constexpr std::size_t keptBytes = 32'000'000;

FoundFrame found(FrameSource& source, const FrameReader::Request& request) {
    source.setSkipsUnreferenced(request.skipsUnreferenced);
    if (request.keyframesOnly)
        return source.keyframeAt(request.time);
    if (request.tolerance > MediaTime{})
        return source.frameNear(request.time, request.tolerance, request.givenUp);
    return source.frameAt(request.time, request.givenUp);
}

} // namespace

FrameReader::FrameReader(Asset asset, int trackID)
    : m_asset(std::move(asset)), m_trackID(trackID), m_queue("com.vantro.preview.reader") {}

void FrameReader::request(Request request, std::function<void(Answer)> done) {
    m_queue.async([this, request = std::move(request), done = std::move(done)] {
        done(request.givenUp.stop_requested() ? Answer{{}, true, {}} : find(request));
    });
}

FrameReader::Answer FrameReader::find(const Request& request) try {
    if (!m_source) {
        m_source.emplace(m_asset, m_trackID);
        m_source->setKeptBytes(keptBytes);
    }
    auto frame = found(*m_source, request);
    if (frame)
        return {std::move(*frame), false, {}};
    return {{}, frame.error() == NoFrame::givenUp, {}};
} catch (const std::exception& failure) {
    return {{}, false, failure.what()};
}

} // namespace vantro::media::player

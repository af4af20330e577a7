#include "media/proxy/ProxyReader.h"

#include "base/Log.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace vantro::media::proxy {
namespace {

/// A hand that drags crosses few pieces to and fro; each costs a file and a decoder.
constexpr std::size_t mostOpen = 3;
/// Of each, bytes: some pictures, to step back.
constexpr std::size_t keptBytes = 4'000'000;

} // namespace

ProxyReader::ProxyReader(std::shared_ptr<ProxyMovie> proxy, int width, int height)
    : m_proxy(std::move(proxy)), m_scaler(width, height), m_queue("com.vantro.preview.proxy") {}

bool ProxyReader::has(MediaTime t) const {
    m_proxy->want(t);
    return m_proxy->has(m_proxy->pieceAt(t));
}

void ProxyReader::request(MediaTime t, std::stop_token givenUp, Done done) {
    m_queue.async([this, t, givenUp = std::move(givenUp), done = std::move(done)] {
        done(find(t, givenUp));
    });
}

std::optional<VideoFrame> ProxyReader::find(MediaTime t, const std::stop_token& givenUp) {
    const int piece = m_proxy->pieceAt(t);
    if (givenUp.stop_requested() || !m_proxy->has(piece))
        return {};
    const auto start = m_proxy->range(piece).start;
    try {
        const auto found = open(piece).frameAt(t - start, givenUp);
        if (!found || givenUp.stop_requested())
            return {};
        return VideoFrame{m_scaler.scale(*found->pixels), found->presentationTime + start,
                          found->duration};
    } catch (const std::exception& error) {
        base::logInfo("A piece of a movie's small copy is of no use: {}", error.what());
        m_proxy->giveUp(piece);
        m_open.remove_if([piece](const OpenPiece& each) { return each.piece == piece; });
        std::error_code ignored;
        std::filesystem::remove(m_proxy->file(piece), ignored);
        return {};
    }
}

FrameSource& ProxyReader::open(int piece) {
    const auto found = std::ranges::find(m_open, piece, &OpenPiece::piece);
    if (found != m_open.end()) {
        m_open.splice(m_open.begin(), m_open, found);
        return m_open.front().source;
    }
    const auto asset = Asset::open(m_proxy->file(piece), TimeZero::fileZero);
    m_open.push_front({piece, FrameSource(asset, 0)});
    if (m_open.size() > mostOpen)
        m_open.pop_back();
    m_open.front().source.setKeptBytes(keptBytes);
    return m_open.front().source;
}

} // namespace vantro::media::proxy

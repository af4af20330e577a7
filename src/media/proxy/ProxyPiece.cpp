#include "media/proxy/ProxyPiece.h"

#include "base/OutputFile.h"
#include "media/av/encode/ProxyEncoder.h"
#include "media/av/movie/MovieMuxer.h"
#include "media/av/pictures/PictureScaler.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::proxy {
namespace {

/// Pixels. Larger ones take longer to find, smaller ones show no text.
constexpr int longestSide = 640;

/// An even length, as H.264 wants it.
int scaledLength(int length, double scale) {
    return std::max(2 * static_cast<int>(std::lround(length * scale / 2)), 2);
}

/// Of a file that rounds its times by half a tick.
std::int32_t timescaleOf(const VideoFrame& frame, MediaTime rounding) {
    const auto timescale = frame.presentationTime.timescale;
    return rounding > MediaTime{} ? 2 * timescale : timescale;
}

/// One piece under way. Removes what it has written unless it is finished.
class PieceWriter {
  public:
    /// Times are exact in the timescale of the first picture; those that the movie rounds are
    /// earlier by as much as its searches allow for.
    PieceWriter(const std::filesystem::path& target, const VideoFrame& first, MediaTime rounding)
        : m_scale(std::min(1.0, static_cast<double>(longestSide) /
                                    std::max(first.pixels->width(), first.pixels->height())))
        , m_width(scaledLength(first.pixels->width(), m_scale))
        , m_height(scaledLength(first.pixels->height(), m_scale))
        , m_file(target)
        , m_muxer(m_file.temporaryPath(), target, FileType::quickTimeMovie)
        , m_scaler(m_width, m_height)
        , m_rounding(rounding)
        , m_encoder(m_width, m_height, timescaleOf(first, rounding))
        , m_track(m_muxer.addTrack(m_encoder.context())) {
        m_muxer.begin();
    }

    void append(const PixelBuffer& pixels, MediaTimeRange shown) {
        const auto start = std::max(shown.start - m_rounding, MediaTime{});
        m_encoder.encode(m_scaler.scale(pixels), ticks(start), [&](av::EncodedPacket& packet) {
            packet.setDuration(std::max<std::int64_t>(ticks(shown.duration), 1));
            m_muxer.write(m_track, packet);
        });
    }
    bool finish(const base::Finishing& finishing) {
        m_muxer.finish(finishing);
        return m_file.commit(finishing);
    }

  private:
    std::int64_t ticks(MediaTime time) const {
        return time.rescaled(m_encoder.context().time_base.den).value;
    }

    double m_scale;
    int m_width;
    int m_height;
    base::OutputFile m_file;
    av::MovieMuxer m_muxer;
    av::PictureScaler m_scaler;
    MediaTime m_rounding;
    av::ProxyEncoder m_encoder;
    int m_track;
};

} // namespace

bool writePiece(FrameSource& source, MediaTimeRange range, const std::filesystem::path& target,
                const std::stop_token& givenUp) {
    std::optional<PieceWriter> writer;
    for (auto t = range.start; t < range.end();) {
        const auto found = source.frameAt(t, givenUp);
        if (!found && found.error() == NoFrame::givenUp)
            return false;
        if (!found)
            throw MediaError("The movie holds no picture");
        const auto end = found->presentationTime + found->duration;
        const bool isBehindAll = end <= t;
        if (writer && isBehindAll)
            break;
        if (!writer)
            writer.emplace(target, *found, source.rounding());
        writer->append(*found->pixels, {t - range.start, std::min(end, range.end()) - t});
        if (isBehindAll)
            break;
        t = end;
    }
    return writer && writer->finish({.cancelled = givenUp});
}

} // namespace vantro::media::proxy

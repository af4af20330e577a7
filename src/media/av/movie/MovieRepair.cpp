#include "media/av/movie/MovieRepair.h"

#include "base/OutputFile.h"
#include "media/av/Libraries.h"
#include "media/av/movie/MovieJournal.h"
#include "media/av/movie/MovieMuxer.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <span>
#include <system_error>
#include <vector>

namespace vantro::media::av {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t mostPacketBytes = 1 << 30;

/// Turns pictures as they lie in the file, each part behind its length, into what the encoder gave,
/// each part behind a start code. False when the lengths do not add up: this is no whole picture.
bool restoreStartCodes(std::span<std::uint8_t> picture) {
    constexpr std::array<std::uint8_t, 4> startCode{0, 0, 0, 1};
    while (!picture.empty()) {
        if (picture.size() <= startCode.size())
            return false;
        const std::size_t length = (std::size_t{picture[0]} << 24U) |
                                   (std::size_t{picture[1]} << 16U) |
                                   (std::size_t{picture[2]} << 8U) | std::size_t{picture[3]};
        if (length == 0 || length > picture.size() - startCode.size())
            return false;
        std::ranges::copy(startCode, picture.begin());
        picture = picture.subspan(startCode.size() + length);
    }
    return true;
}

/// The media of an interrupted movie.
class InterruptedMovie {
  public:
    explicit InterruptedMovie(const fs::path& path)
        : m_journalled(readMovieJournal(path)), m_file(path, std::ios::binary) {
        std::error_code error;
        m_size = static_cast<std::int64_t>(fs::file_size(path, error));
        if (error || !m_file)
            fail("Cannot recover", path, error ? error.message() : "It cannot be read");
    }

    const JournalledMovie& journalled() const { return m_journalled; }

    bool isVideo(const JournalledPacket& packet) const {
        return m_journalled.tracks[static_cast<std::size_t>(packet.track)]->codec_type ==
               AVMEDIA_TYPE_VIDEO;
    }

    /// The packets that the file can hold, the last picture's prolonged to `endTime`.
    std::vector<JournalledPacket> packets(std::optional<MediaTime> endTime) const {
        auto packets = m_journalled.packets;
        const auto fits = [this](const auto& packet) {
            return packet.size <= m_size && packet.offset <= m_size - packet.size &&
                   packet.size <= mostPacketBytes;
        };
        packets.erase(std::ranges::find_if_not(packets, fits), packets.end());
        const auto last = std::find_if(packets.rbegin(), packets.rend(),
                                       [this](const auto& packet) { return isVideo(packet); });
        if (last == packets.rend() || !endTime)
            return packets;
        const auto timescale =
            m_journalled.tracks[static_cast<std::size_t>(last->track)]->time_base.den;
        last->duration = std::max(last->duration, endTime->rescaled(timescale).value - last->pts);
        return packets;
    }

    /// False when the packet is damaged. It is one of `packets`.
    bool read(const JournalledPacket& source, AVPacket& packet) {
        if (av_new_packet(&packet, static_cast<int>(source.size)) < 0)
            throw std::bad_alloc();
        m_file.seekg(source.offset);
        m_file.read(reinterpret_cast<char*>(packet.data), source.size);
        packet.pts = source.pts;
        packet.dts = source.dts;
        packet.duration = source.duration;
        packet.flags = source.isKeyframe ? AV_PKT_FLAG_KEY : 0;
        const std::span bytes(packet.data, static_cast<std::size_t>(source.size));
        return m_file.good() && (!isVideo(source) || restoreStartCodes(bytes));
    }

  private:
    JournalledMovie m_journalled;
    std::ifstream m_file;
    std::int64_t m_size = 0;
};

} // namespace

void repairMovie(const fs::path& path, std::optional<MediaTime> endTime) try {
    InterruptedMovie movie(path);
    // The same muxer given the same packets makes the same bytes: it writes over each what is
    // there.
    MovieMuxer muxer(path, path, FileType::quickTimeMovie, MovieMuxer::Content::kept);
    for (const auto& track : movie.journalled().tracks)
        muxer.addTrack(*track);
    EncodedPacket packet;
    std::int64_t count = 0;
    for (const auto& source : movie.packets(endTime)) {
        if (!movie.read(source, packet.raw()))
            break;
        if (count++ == 0)
            muxer.begin();
        if (muxer.position() != source.offset)
            fail("Cannot recover", path, "its journal does not fit");
        muxer.write(source.track, packet);
    }
    if (count == 0)
        fail("Cannot recover", path, "No picture was recorded");
    muxer.finish();
    base::syncToDisk(path);
    fs::remove(movieJournalPath(path));
} catch (const fs::filesystem_error& error) {
    fail("Cannot write", path, error.code().message());
}

} // namespace vantro::media::av

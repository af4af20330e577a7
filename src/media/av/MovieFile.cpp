#include "media/av/MovieFile.h"

#include "archive/ArchiveError.h"
#include "archive/ArchivePath.h"
#include "media/av/Libraries.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>

#include <fmt/format.h>

extern "C" {
#include <libavutil/mathematics.h>
}

namespace vantro::media::av {
namespace {

constexpr AVRational microseconds{1, AV_TIME_BASE};
constexpr int largestSide = 32768; ///< of pictures that a PixelBuffer holds

/// What the file system alone can tell, in better words than a demuxer's.
archive::FilePart readableFile(const std::filesystem::path& path) try {
    auto part = archive::locate(path);
    const auto status = std::filesystem::status(part.file);
    if (std::filesystem::is_directory(status))
        fail("Cannot open", path, "Is a directory");
    if (std::filesystem::is_regular_file(status) && part.size == 0)
        fail("Cannot open", path, "The file is empty");
    return part;
} catch (const archive::ArchiveError& error) {
    throw MediaError(fmt::format("Cannot open {}", error.what()));
}

[[noreturn]] void failToOpen(const std::filesystem::path& path, int code) {
    const std::string detail = takeLastErrorLine();
    const auto reason = code == AVERROR_INVALIDDATA
                            ? std::string("It was never finished, is damaged, or is no movie")
                            : errorText(code);
    fail("Cannot open", path, detail.empty() ? reason : reason + " (" + detail + ")");
}

InputHandle openInput(const std::filesystem::path& path, const archive::FilePart& part) {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file,subfile",
                0); // play lists must not reach elsewhere
    AVFormatContext* context = nullptr;
    const int result = avformat_open_input(&context, fileUrl(part).c_str(), nullptr, &options);
    av_dict_free(&options);
    if (result < 0)
        failToOpen(path, result);
    return InputHandle(context);
}

bool isMedia(const AVStream& stream) {
    const auto type = stream.codecpar->codec_type;
    if (stream.disposition & AV_DISPOSITION_ATTACHED_PIC)
        return false;
    return type == AVMEDIA_TYPE_AUDIO ||
           (type == AVMEDIA_TYPE_VIDEO && stream.codecpar->width > 0 &&
            stream.codecpar->height > 0 && stream.codecpar->width <= largestSide &&
            stream.codecpar->height <= largestSide);
}

/// When the first stream starts. Sound may begin before zero with samples that only prime its
/// decoder: they do not count.
std::int64_t startOfPlayback(const std::vector<AVStream*>& streams) {
    std::int64_t earliest = INT64_MAX;
    for (const AVStream* stream : streams) {
        if (stream->start_time == AV_NOPTS_VALUE)
            continue;
        auto start = av_rescale_q(stream->start_time, stream->time_base, microseconds);
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            start = std::max<std::int64_t>(start, 0);
        earliest = std::min(earliest, start);
    }
    return earliest == INT64_MAX ? 0 : earliest;
}

} // namespace

MovieFile::MovieFile(const MovieReference& movie) : m_path(movie.path) {
    prepareLibraries();
    const auto part = readableFile(m_path);
    takeLastErrorLine();
    m_context = openInput(m_path, part);
    if (const int result = avformat_find_stream_info(m_context.get(), nullptr); result < 0)
        failToOpen(m_path, result);
    const auto streams = mediaStreams();
    if (streams.empty())
        fail("Cannot open", m_path, "The file holds neither pictures nor sound");
    if (movie.zero == TimeZero::firstSample)
        m_zero = startOfPlayback(streams);
}

std::vector<AVStream*> MovieFile::mediaStreams() const {
    std::vector<AVStream*> streams(m_context->streams, m_context->streams + m_context->nb_streams);
    std::erase_if(streams, [](const AVStream* stream) { return !isMedia(*stream); });
    return streams;
}

StreamClock MovieFile::clock(const AVStream& stream) const {
    return {stream.time_base, av_rescale_q(m_zero, microseconds, stream.time_base)};
}

MediaTime MovieFile::endTime(const AVStream& stream) const {
    const StreamClock streamClock = clock(stream);
    if (stream.duration != AV_NOPTS_VALUE) {
        const auto start =
            stream.start_time == AV_NOPTS_VALUE ? streamClock.zero() : stream.start_time;
        return std::max(streamClock.time(start + stream.duration), MediaTime{});
    }
    if (m_context->duration != AV_NOPTS_VALUE)
        return StreamClock(microseconds, 0).span(m_context->duration);
    return {};
}

PictureSize squarePixelSize(const AVStream& stream) {
    const int width = stream.codecpar->width;
    const int height = stream.codecpar->height;
    const AVRational aspect = stream.sample_aspect_ratio.num > 0
                                  ? stream.sample_aspect_ratio
                                  : stream.codecpar->sample_aspect_ratio;
    if (aspect.num <= 0 || aspect.den <= 0 || aspect.num == aspect.den)
        return {width, height};
    const auto stretched = av_rescale(width, aspect.num, aspect.den);
    return {static_cast<int>(std::clamp<std::int64_t>(stretched, 1, largestSide)), height};
}

} // namespace vantro::media::av

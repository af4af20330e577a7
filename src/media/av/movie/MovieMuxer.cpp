#include "media/av/movie/MovieMuxer.h"

#include "media/av/Libraries.h"

#include <algorithm>
#include <new>
#include <system_error>

extern "C" {
#include <libavutil/opt.h>
}

namespace vantro::media::av {
namespace {

// Divides every usual track timescale, so that the movie's length is as exact as the tracks'.
constexpr int movieTimescale = 60'000;

OutputHandle makeContext(FileType type, const std::string& url) {
    AVFormatContext* context = nullptr;
    const char* format = type == FileType::quickTimeMovie ? "mov" : "mp4";
    if (avformat_alloc_output_context2(&context, nullptr, format, url.c_str()) < 0)
        throw std::bad_alloc();
    return OutputHandle(context);
}

} // namespace

MovieMuxer::MovieMuxer(const std::filesystem::path& file, std::filesystem::path shownPath,
                       FileType type, Content content)
    : m_path(file), m_shownPath(std::move(shownPath)), m_type(type), m_content(content) {
    prepareLibraries();
    const std::string url = fileUrl(file);
    AVIOContext* io = nullptr;
    AVDictionary* options = nullptr;
    av_dict_set_int(&options, "truncate", content == Content::fresh ? 1 : 0, 0);
    const AVIOInterruptCB interrupt{&MovieMuxer::isInterrupted, this};
    const int result = avio_open2(&io, url.c_str(), AVIO_FLAG_WRITE, &interrupt, &options);
    av_dict_free(&options);
    check(result);
    m_file.reset(io);
    m_context = makeContext(type, url);
    m_context->pb = io;
    if (type == FileType::quickTimeMovie) // what was recorded is to survive the program
        m_context->flags |= AVFMT_FLAG_FLUSH_PACKETS;
}

void MovieMuxer::keepJournal() {
    try {
        m_journal.emplace(m_path);
    } catch (const std::filesystem::filesystem_error& error) {
        fail("Cannot write", movieJournalPath(m_path), error.code().message());
    }
}

int MovieMuxer::addTrack(const AVCodecContext& encoder) {
    AVStream* stream = avformat_new_stream(m_context.get(), nullptr);
    if (stream == nullptr || avcodec_parameters_from_context(stream->codecpar, &encoder) < 0)
        throw std::bad_alloc();
    stream->time_base = encoder.time_base;
    stream->avg_frame_rate = encoder.framerate;
    m_timeBases.push_back(encoder.time_base);
    if (m_journal)
        m_journal->add(encoder);
    return stream->index;
}

void MovieMuxer::begin() {
    AVDictionary* options = nullptr;
    av_dict_set_int(&options, "movie_timescale", movieTimescale, 0);
    const bool reordered = m_type == FileType::mpeg4; // the index moves to the front at the end
    av_dict_set(&options, "movflags", reordered ? "+write_colr+faststart" : "+write_colr", 0);
    const int result = avformat_write_header(m_context.get(), &options);
    av_dict_free(&options);
    check(result);
}

void MovieMuxer::write(int track, EncodedPacket& encoded) {
    AVPacket& packet = encoded.raw();
    const std::lock_guard lock(m_writing);
    const AVStream& stream = *m_context->streams[track];
    const JournalledPacket times{.track = track,
                                 .pts = packet.pts,
                                 .dts = packet.dts,
                                 .duration = packet.duration,
                                 .isKeyframe = (packet.flags & AV_PKT_FLAG_KEY) != 0};
    packet.stream_index = track;
    av_packet_rescale_ts(&packet, m_timeBases[static_cast<std::size_t>(track)], stream.time_base);
    if (m_type == FileType::mpeg4) {
        check(av_interleaved_write_frame(m_context.get(), &packet));
        return;
    }
    writeInPlace(packet, times);
}

/// Appends the packet to what the file holds; the journal tells of it once it is there.
void MovieMuxer::writeInPlace(AVPacket& packet, const JournalledPacket& times) {
    auto place = times;
    place.offset = position();
    const int result = av_write_frame(m_context.get(), &packet);
    av_packet_unref(&packet);
    check(result);
    place.size = position() - place.offset;
    if (m_journal)
        m_journal->add(place);
}

/// Called before each piece of the file is written. What follows goes through C: nothing is thrown.
int MovieMuxer::isInterrupted(void* muxer) noexcept {
    auto& self = *static_cast<MovieMuxer*>(muxer);
    if (self.m_finishing == nullptr)
        return 0;
    try {
        const auto moved = self.m_file->bytes_written - self.m_lengthBefore;
        const auto length = std::max<std::int64_t>(self.m_lengthBefore, 1);
        self.m_finishing->report(std::min(static_cast<double>(moved) / length, 1.0));
    } catch (...) {
        self.m_failure = std::current_exception();
    }
    return self.m_failure || self.m_finishing->cancelled.stop_requested() ? 1 : 0;
}

void MovieMuxer::finish(const base::Finishing& finishing) {
    m_lengthBefore = m_file->bytes_written;
    m_finishing = &finishing;
    const int result = av_write_trailer(m_context.get());
    m_finishing = nullptr;
    if (m_failure)
        std::rethrow_exception(m_failure);
    check(result);
    closeFile();
}

void MovieMuxer::closeFile() {
    avio_flush(m_file.get());
    check(0);
    const auto end = position();
    m_context->pb = nullptr;
    AVIOContext* io = m_file.release();
    check(avio_closep(&io));
    std::error_code error;
    if (m_content == Content::kept)
        std::filesystem::resize_file(m_path, static_cast<std::uintmax_t>(end), error);
    if (error)
        fail("Cannot write", m_shownPath, error.message());
    if (m_journal) {
        m_journal.reset();
        std::error_code ignored; // a journal that stays only offers to make whole what is whole
        std::filesystem::remove(movieJournalPath(m_path), ignored);
    }
}

/// The file's own error says more than the muxer's, and reaches some muxers' results late.
void MovieMuxer::check(int result) const {
    if (m_file && m_file->error < 0)
        fail("Cannot write", m_shownPath, errorText(m_file->error));
    if (result < 0)
        fail("Cannot write", m_shownPath, errorText(result));
}

} // namespace vantro::media::av

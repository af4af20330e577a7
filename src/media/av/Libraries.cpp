#include "media/av/Libraries.h"

#include "base/Log.h"
#include "media/av/Handles.h"
#include "media/values/MediaError.h"

#include <array>
#include <cstdarg>
#include <mutex>
#include <new>
#include <utility>

extern "C" {
#include <libavutil/error.h>
#include <libavutil/log.h>
}

namespace vantro::media::av {
namespace {

thread_local std::string lastErrorLine;

void receiveLogLine(void* object, int level, const char* format, std::va_list arguments) {
    if (level > AV_LOG_ERROR)
        return;
    std::array<char, 512> line{};
    int printPrefix = 1;
    av_log_format_line2(object, level, format, arguments, line.data(),
                        static_cast<int>(line.size()), &printPrefix);
    std::string_view text(line.data());
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.remove_suffix(1);
    if (text.empty())
        return;
    base::logInfo("libav: {}", text);
    // "[mov,mp4 @ 0x55…] moov atom not found": the prefix says nothing to a user.
    if (const auto prefix = text.rfind("] "); prefix != std::string_view::npos)
        text.remove_prefix(prefix + 2);
    lastErrorLine = text;
}

} // namespace

void prepareLibraries() {
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_callback(receiveLogLine); });
}

std::string errorText(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return text.data();
}

std::string takeLastErrorLine() {
    return std::exchange(lastErrorLine, {});
}

void fail(std::string_view what, const std::filesystem::path& path, std::string_view reason) {
    throw MediaError(fmt::format("{} {}: {}", what, path.string(), reason));
}

std::string fileUrl(const std::filesystem::path& path) {
    return "file:" + path.string();
}

std::string fileUrl(const archive::FilePart& part) {
    const auto whole = fileUrl(part.file);
    return part.isWholeFile() ? whole
                              : fmt::format("subfile,,start,{},end,{},,:{}", part.offset,
                                            part.offset + part.size, whole);
}

FrameHandle makeFrame() {
    FrameHandle frame(av_frame_alloc());
    if (!frame)
        throw std::bad_alloc();
    return frame;
}

PacketHandle makePacket() {
    PacketHandle packet(av_packet_alloc());
    if (!packet)
        throw std::bad_alloc();
    return packet;
}

} // namespace vantro::media::av

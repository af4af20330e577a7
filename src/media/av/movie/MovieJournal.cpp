#include "media/av/movie/MovieJournal.h"

#include "base/Log.h"
#include "media/av/CodecHeader.h"
#include "media/av/Libraries.h"

#include <new>
#include <optional>
#include <span>
#include <sstream>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace vantro::media::av {
namespace {

constexpr auto heading = "vantro movie journal 1";
constexpr auto nothing = "-"; // in the place of absent bytes

std::string inHexadecimal(std::span<const std::uint8_t> bytes) {
    return bytes.empty() ? nothing : fmt::format("{:02x}", fmt::join(bytes, ""));
}

std::optional<std::vector<std::uint8_t>> fromHexadecimal(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    if (text == nothing)
        return bytes;
    const auto digit = [](char c) {
        return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
    };
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        const int high = digit(text[i]);
        const int low = digit(text[i + 1]);
        if (high < 0 || low < 0)
            return {};
        bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    return text.size() % 2 == 0 ? std::optional(bytes) : std::nullopt;
}

void readColor(std::istream& fields, AVCodecContext& codec) {
    int primaries = 0;
    int transfer = 0;
    int space = 0;
    int range = 0;
    int location = 0;
    fields >> primaries >> transfer >> space >> range >> location;
    codec.color_primaries = static_cast<AVColorPrimaries>(primaries);
    codec.color_trc = static_cast<AVColorTransferCharacteristic>(transfer);
    codec.colorspace = static_cast<AVColorSpace>(space);
    codec.color_range = static_cast<AVColorRange>(range);
    codec.chroma_sample_location = static_cast<AVChromaLocation>(location);
}

/// Nothing when the line describes no track.
CodecHandle readTrack(std::istream& fields) {
    std::string codecName;
    fields >> codecName;
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get_by_name(codecName.c_str());
    CodecHandle codec(avcodec_alloc_context3(nullptr));
    if (!codec)
        throw std::bad_alloc();
    int channels = 0;
    std::string extradata;
    fields >> codec->time_base.num >> codec->time_base.den >> codec->profile >> codec->bit_rate >>
        codec->width >> codec->height >> codec->framerate.num >> codec->framerate.den;
    readColor(fields, *codec);
    fields >> codec->sample_rate >> channels >> codec->frame_size >> codec->initial_padding >>
        extradata;
    const auto bytes = fromHexadecimal(extradata);
    if (!fields || descriptor == nullptr || !bytes || codec->time_base.num <= 0 ||
        codec->time_base.den <= 0)
        return {};
    codec->codec_type = descriptor->type;
    codec->codec_id = descriptor->id;
    av_channel_layout_default(&codec->ch_layout, channels);
    setHeader(*codec, *bytes);
    return codec;
}

std::optional<JournalledPacket> readPacket(std::istream& fields, std::size_t trackCount) {
    JournalledPacket packet;
    fields >> packet.track >> packet.offset >> packet.size >> packet.pts >> packet.dts >>
        packet.duration >> packet.isKeyframe;
    const bool makesSense = fields && packet.track >= 0 &&
                            static_cast<std::size_t>(packet.track) < trackCount &&
                            packet.offset >= 0 && packet.size > 0;
    return makesSense ? std::optional(packet) : std::nullopt;
}

} // namespace

std::filesystem::path movieJournalPath(const std::filesystem::path& movie) {
    return std::filesystem::path(movie) += ".journal";
}

MovieJournal::MovieJournal(const std::filesystem::path& movie)
    : m_journal(movieJournalPath(movie)) {
    append(heading);
}

void MovieJournal::add(const AVCodecContext& track) {
    append(fmt::format("track {} {} {} {} {} {} {} {} {} {} {} {} {} {} {} {} {} {} {}",
                       avcodec_get_name(track.codec_id), track.time_base.num, track.time_base.den,
                       track.profile, track.bit_rate, track.width, track.height,
                       track.framerate.num, track.framerate.den,
                       static_cast<int>(track.color_primaries), static_cast<int>(track.color_trc),
                       static_cast<int>(track.colorspace), static_cast<int>(track.color_range),
                       static_cast<int>(track.chroma_sample_location), track.sample_rate,
                       track.ch_layout.nb_channels, track.frame_size, track.initial_padding,
                       inHexadecimal(headerOf(track))));
}

void MovieJournal::add(const JournalledPacket& packet) {
    append(fmt::format("packet {} {} {} {} {} {} {:d}", packet.track, packet.offset, packet.size,
                       packet.pts, packet.dts, packet.duration, packet.isKeyframe));
}

void MovieJournal::append(const std::string& line) {
    if (m_isGivenUp || m_journal.append(line))
        return;
    m_isGivenUp = true;
    base::logWarning("The recording's journal cannot be written; it would not survive the program");
}

JournalledMovie readMovieJournal(const std::filesystem::path& movie) {
    std::vector<std::string> lines;
    try {
        lines = base::readJournal(movieJournalPath(movie));
    } catch (const std::filesystem::filesystem_error& error) {
        fail("Cannot recover", movie, error.code().message());
    }
    if (lines.empty() || lines.front() != heading)
        fail("Cannot recover", movie, "its journal is damaged");
    JournalledMovie journalled;
    for (const auto& line : std::span(lines).subspan(1)) {
        std::istringstream fields(line);
        std::string kind;
        fields >> kind;
        if (auto track = kind == "track" ? readTrack(fields) : CodecHandle()) {
            journalled.tracks.push_back(std::move(track));
            continue;
        }
        const auto packet = kind == "packet" ? readPacket(fields, journalled.tracks.size())
                                             : std::optional<JournalledPacket>();
        if (!packet)
            break;
        journalled.packets.push_back(*packet);
    }
    return journalled;
}

} // namespace vantro::media::av

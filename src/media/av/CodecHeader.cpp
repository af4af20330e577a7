#include "media/av/CodecHeader.h"

#include <algorithm>
#include <new>

namespace vantro::media::av {

std::vector<std::uint8_t> headerOf(const AVCodecContext& codec) {
    return {codec.extradata, codec.extradata + codec.extradata_size};
}

void setHeader(AVCodecContext& codec, std::span<const std::uint8_t> header) {
    auto* bytes =
        static_cast<std::uint8_t*>(av_mallocz(header.size() + AV_INPUT_BUFFER_PADDING_SIZE));
    if (bytes == nullptr)
        throw std::bad_alloc();
    std::ranges::copy(header, bytes);
    av_freep(static_cast<void*>(&codec.extradata));
    codec.extradata = bytes;
    codec.extradata_size = static_cast<int>(header.size());
}

} // namespace vantro::media::av

#include "media/av/decode/DecoderSetup.h"

#include "media/av/Libraries.h"
#include "media/values/MediaError.h"

#include <new>

#include <fmt/format.h>

namespace vantro::media::av {

AVStream& selectStream(const MovieFile& file, int index, AVMediaType type) {
    AVStream* selected = nullptr;
    for (AVStream* stream : file.mediaStreams()) {
        if (stream->index == index && stream->codecpar->codec_type == type)
            selected = stream;
    }
    if (selected == nullptr)
        throw MediaError(fmt::format("No {} track found", av_get_media_type_string(type)));
    AVFormatContext& context = file.context();
    for (unsigned i = 0; i < context.nb_streams; ++i)
        context.streams[i]->discard =
            context.streams[i] == selected ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    return *selected;
}

CodecHandle openDecoder(const MovieFile& file, const AVStream& stream, unsigned threads) {
    const AVCodecParameters& parameters = *stream.codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (codec == nullptr)
        fail("Cannot decode", file.path(),
             fmt::format("No decoder for {}", avcodec_get_name(parameters.codec_id)));
    CodecHandle context(avcodec_alloc_context3(codec));
    if (!context || avcodec_parameters_to_context(context.get(), &parameters) < 0)
        throw std::bad_alloc();
    context->pkt_timebase = stream.time_base;
    context->thread_count = static_cast<int>(threads);
    context->thread_type = FF_THREAD_FRAME | FF_THREAD_SLICE;
    if (const int result = avcodec_open2(context.get(), codec, nullptr); result < 0)
        fail("Cannot decode", file.path(), errorText(result));
    return context;
}

} // namespace vantro::media::av

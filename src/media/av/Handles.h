#pragma once

#include <memory>
#include <type_traits>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

namespace vantro::media::av {

/// Releases a libav object with the library's own function, which takes the pointer or its address.
template <auto release>
struct HandleDeleter {
    template <typename Object>
    void operator()(Object* object) const {
        if constexpr (std::is_invocable_v<decltype(release), Object**>)
            release(&object);
        else
            release(object);
    }
};

template <typename Object, auto release>
using Handle = std::unique_ptr<Object, HandleDeleter<release>>;

using FrameHandle = Handle<AVFrame, av_frame_free>;
using PacketHandle = Handle<AVPacket, av_packet_free>;
using CodecHandle = Handle<AVCodecContext, avcodec_free_context>;
using InputHandle = Handle<AVFormatContext, avformat_close_input>;
using OutputHandle = Handle<AVFormatContext, avformat_free_context>;
using IoHandle = Handle<AVIOContext, avio_closep>;
using ScalerHandle = Handle<SwsContext, sws_freeContext>;
using FilterGraphHandle = Handle<AVFilterGraph, avfilter_graph_free>;
using ResamplerHandle = Handle<SwrContext, swr_free>;
using BufferHandle = Handle<AVBufferRef, av_buffer_unref>;

/// A new empty object of a kind that the library allocates; std::bad_alloc when it cannot.
FrameHandle makeFrame();
PacketHandle makePacket();

} // namespace vantro::media::av

#include "media/av/encode/HardwareEncoder.h"

#include "base/Fatal.h"
#include "media/av/Libraries.h"
#include "media/av/encode/RenderNodes.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <filesystem>
#include <new>

extern "C" {
#include <libavutil/hwcontext.h>
}

namespace vantro::media::av {
namespace {

/// Without B-frames, which many of these encoders lack and which win little at export bit rates:
/// then the movie can go on with another encoder after any picture.
CodecHandle makeHardwareEncoder(const char* codecName, const VideoSettings& settings) {
    auto codec = makeEncoder(codecName, settings);
    codec->max_b_frames = 0;
    codec->gop_size = framesBetweenKeyframes(settings);
    return codec;
}

/// Copies an i420 frame into an nv12 one of the same size.
void interleaveChroma(const AVFrame& from, AVFrame& to) {
    for (int y = 0; y < from.height; ++y)
        std::copy_n(from.data[0] + static_cast<std::ptrdiff_t>(y) * from.linesize[0], from.width,
                    to.data[0] + static_cast<std::ptrdiff_t>(y) * to.linesize[0]);
    for (int y = 0; y < from.height / 2; ++y) {
        const auto* u = from.data[1] + static_cast<std::ptrdiff_t>(y) * from.linesize[1];
        const auto* v = from.data[2] + static_cast<std::ptrdiff_t>(y) * from.linesize[2];
        auto* both = to.data[1] + static_cast<std::ptrdiff_t>(y) * to.linesize[1];
        for (int x = 0; x < from.width / 2; ++x, both += 2) {
            both[0] = u[x];
            both[1] = v[x];
        }
    }
}

/// The layout that drivers take; null when memory runs out.
FrameHandle asNv12(const AVFrame& i420) {
    auto frame = makeFrame();
    frame->format = AV_PIX_FMT_NV12;
    frame->width = i420.width;
    frame->height = i420.height;
    if (av_frame_get_buffer(frame.get(), 0) < 0 || av_frame_copy_props(frame.get(), &i420) < 0)
        return {};
    interleaveChroma(i420, *frame);
    return frame;
}

CodecSession openNvenc(const VideoSettings& settings) {
    auto codec = makeHardwareEncoder("h264_nvenc", settings);
    setOption(*codec, "preset", "p5");
    setOption(*codec, "tune", "hq");
    setOption(*codec, "rc", "vbr");
    openEncoder(*codec);
    return {"nvenc", std::move(codec)};
}

CodecSession openQsv(const VideoSettings& settings) {
    auto codec = makeHardwareEncoder("h264_qsv", settings);
    codec->pix_fmt = AV_PIX_FMT_NV12;
    // With a rate of its own for peaks it varies by content; else it asks for a mode that few have.
    codec->rc_max_rate = 2 * codec->bit_rate;
    openEncoder(*codec);
    return {"qsv", std::move(codec), [](AVCodecContext* context, const AVFrame* picture) {
                if (picture == nullptr)
                    return avcodec_send_frame(context, nullptr);
                const auto frame = asNv12(*picture);
                return frame ? avcodec_send_frame(context, frame.get()) : AVERROR(ENOMEM);
            }};
}

BufferHandle openDevice(const std::filesystem::path& node) {
    AVBufferRef* device = nullptr;
    takeLastErrorLine();
    const int result =
        av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, node.c_str(), nullptr, 0);
    if (result >= 0)
        return BufferHandle(device);
    const auto detail = takeLastErrorLine();
    fail("Cannot open", node, detail.empty() ? errorText(result) : detail);
}

/// Pictures of the movie's size in the device's memory.
BufferHandle makePictureStore(AVBufferRef& device, const VideoSettings& settings) {
    constexpr int picturesAtOnce = 16; // the encoder's own references and what waits
    BufferHandle store(av_hwframe_ctx_alloc(&device));
    if (!store)
        throw std::bad_alloc();
    auto& frames = *reinterpret_cast<AVHWFramesContext*>(store->data);
    frames.format = AV_PIX_FMT_VAAPI;
    frames.sw_format = AV_PIX_FMT_NV12;
    frames.width = settings.width;
    frames.height = settings.height;
    frames.initial_pool_size = picturesAtOnce;
    if (const int result = av_hwframe_ctx_init(store.get()); result < 0)
        throw MediaError("No room for pictures on the device: " + errorText(result));
    return store;
}

int submitUploaded(AVCodecContext* context, const AVFrame* picture) {
    if (picture == nullptr)
        return avcodec_send_frame(context, nullptr);
    const auto frame = asNv12(*picture);
    const auto uploaded = makeFrame();
    int result =
        frame ? av_hwframe_get_buffer(context->hw_frames_ctx, uploaded.get(), 0) : AVERROR(ENOMEM);
    if (result >= 0)
        result = av_hwframe_transfer_data(uploaded.get(), frame.get(), 0);
    if (result >= 0)
        result = av_frame_copy_props(uploaded.get(), frame.get());
    return result < 0 ? result : avcodec_send_frame(context, uploaded.get());
}

CodecSession openVaapiOn(const std::filesystem::path& node, const VideoSettings& settings) {
    const auto device = openDevice(node);
    auto codec = makeHardwareEncoder("h264_vaapi", settings);
    codec->pix_fmt = AV_PIX_FMT_VAAPI;
    codec->hw_frames_ctx = makePictureStore(*device, settings).release();
    openEncoder(*codec);
    return {"vaapi", std::move(codec), submitUploaded};
}

/// On the first device that encodes: a machine may have a second one that only draws.
CodecSession openVaapi(const VideoSettings& settings) {
    std::string reason = missingDevice(VideoEncoderChoice::vaapi);
    for (const auto& node : renderNodes()) {
        try {
            return openVaapiOn(node.path, settings);
        } catch (const MediaError& error) {
            reason = error.what();
        }
    }
    throw MediaError(reason);
}

bool hasNvidiaDevice() {
    std::error_code ignored;
    return std::filesystem::exists("/dev/nvidiactl", ignored) ||
           std::filesystem::exists("/dev/dxg", ignored); // inside of Windows
}

} // namespace

std::string missingDevice(VideoEncoderChoice hardware) {
    const auto nodes = renderNodes();
    if (hardware == VideoEncoderChoice::nvenc)
        return hasNvidiaDevice() ? "" : "no NVIDIA device";
    if (hardware == VideoEncoderChoice::qsv)
        return std::ranges::any_of(nodes, &RenderNode::isIntel) ? "" : "no Intel device";
    return nodes.empty() ? "no render device in /dev/dri" : "";
}

CodecSession openHardwareEncoder(VideoEncoderChoice hardware, const VideoSettings& settings) {
    switch (hardware) {
    case VideoEncoderChoice::nvenc:
        return openNvenc(settings);
    case VideoEncoderChoice::qsv:
        return openQsv(settings);
    case VideoEncoderChoice::vaapi:
        return openVaapi(settings);
    case VideoEncoderChoice::automatic:
    case VideoEncoderChoice::libx264:
        break;
    }
    base::fatal("not a hardware encoder");
}

} // namespace vantro::media::av

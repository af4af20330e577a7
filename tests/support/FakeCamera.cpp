#include "support/FakeCamera.h"

#include "support/LockedLoop.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <utility>

#include <spa/param/video/format-utils.h>

namespace vantro::test {
namespace {

using Layout = FakeCamera::Layout;

constexpr std::array<std::pair<Layout, spa_video_format>, 7> rawFormats{{
    {Layout::yuyv, SPA_VIDEO_FORMAT_YUY2},
    {Layout::uyvy, SPA_VIDEO_FORMAT_UYVY},
    {Layout::nv12, SPA_VIDEO_FORMAT_NV12},
    {Layout::i420, SPA_VIDEO_FORMAT_I420},
    {Layout::rgb, SPA_VIDEO_FORMAT_RGB},
    {Layout::bgrx, SPA_VIDEO_FORMAT_BGRx},
    {Layout::gray, SPA_VIDEO_FORMAT_GRAY8},
}};

struct Pods {
    std::vector<std::array<std::uint8_t, 512>> memory;
    std::vector<const spa_pod*> pods;
};

const spa_pod* writeFormat(std::array<std::uint8_t, 512>& memory,
                           const FakeCamera::Format& format) {
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    const spa_rectangle size{static_cast<std::uint32_t>(format.width),
                             static_cast<std::uint32_t>(format.height)};
    const spa_fraction rate{static_cast<std::uint32_t>(format.rate), 1};
    if (format.layout == Layout::mjpeg) {
        spa_video_info_mjpg info{};
        info.size = size;
        info.framerate = rate;
        return spa_format_video_mjpg_build(&builder, SPA_PARAM_EnumFormat, &info);
    }
    spa_video_info_raw info{};
    info.format =
        std::ranges::find(rawFormats, format.layout, [](auto& each) { return each.first; })->second;
    info.size = size;
    info.framerate = rate;
    return spa_format_video_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
}

Pods writeFormats(const std::vector<FakeCamera::Format>& formats) {
    Pods pods;
    pods.memory.resize(formats.size());
    for (std::size_t i = 0; i < formats.size(); ++i)
        pods.pods.push_back(writeFormat(pods.memory[i], formats[i]));
    return pods;
}

FakeCamera::Format readFormat(const spa_pod& pod) {
    std::uint32_t type = 0;
    std::uint32_t subtype = 0;
    spa_format_parse(&pod, &type, &subtype);
    FakeCamera::Format format;
    if (subtype == SPA_MEDIA_SUBTYPE_mjpg) {
        spa_video_info_mjpg info{};
        spa_format_video_mjpg_parse(&pod, &info);
        return {Layout::mjpeg, static_cast<int>(info.size.width),
                static_cast<int>(info.size.height), static_cast<int>(info.framerate.num)};
    }
    spa_video_info_raw info{};
    spa_format_video_raw_parse(&pod, &info);
    const auto* found =
        std::ranges::find(rawFormats, info.format, [](auto& each) { return each.second; });
    return {found->first, static_cast<int>(info.size.width), static_cast<int>(info.size.height),
            static_cast<int>(info.framerate.num)};
}

constexpr std::uint32_t bufferSize(const FakeCamera::Format& format) {
    return static_cast<std::uint32_t>(format.width * format.height * 4 + 4096);
}

} // namespace

/// All but the loop is for its thread, or with its lock.
struct FakeCamera::Node {
    FakeCamera& camera;
    pw_thread_loop* loop = nullptr;
    pw_stream* stream = nullptr;
    spa_source* timer = nullptr;
    Format format{};
    std::vector<double> times{};
    std::optional<std::string> outcome{}; ///< of plugging it in: what went wrong

    void stateChanged(pw_stream_state state, const char* error);
    void formatChanged(const spa_pod& pod);
    void send();
    void open();

    static const pw_stream_events events;
};

const pw_stream_events FakeCamera::Node::events = [] {
    pw_stream_events calls{};
    calls.version = PW_VERSION_STREAM_EVENTS;
    calls.state_changed = [](void* self, pw_stream_state, pw_stream_state state,
                             const char* error) {
        static_cast<Node*>(self)->stateChanged(state, error);
    };
    calls.param_changed = [](void* self, std::uint32_t id, const spa_pod* pod) {
        if (id == SPA_PARAM_Format && pod != nullptr)
            static_cast<Node*>(self)->formatChanged(*pod);
    };
    calls.process = [](void* self) { static_cast<Node*>(self)->send(); };
    return calls;
}();

void FakeCamera::Node::stateChanged(pw_stream_state state, const char* error) {
    camera.m_isUsed = state == PW_STREAM_STATE_STREAMING;
    const bool isThere = state == PW_STREAM_STATE_PAUSED || state == PW_STREAM_STATE_STREAMING;
    if ((isThere || state == PW_STREAM_STATE_ERROR) && !outcome) {
        outcome = isThere ? "" : error;
        pw_thread_loop_signal(loop, false);
    }
    const long period = 1'000'000'000L / std::max(format.rate, 1);
    timespec every{0, state == PW_STREAM_STATE_STREAMING ? period : 0};
    pw_loop_update_timer(pw_thread_loop_get_loop(loop), timer, &every, &every, false);
}

void FakeCamera::Node::formatChanged(const spa_pod& pod) {
    format = readFormat(pod);
    std::array<std::uint8_t, 512> memory{};
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory.data(), memory.size());
    std::vector<const spa_pod*> pods;
    const auto add = [&](void* made) { pods.push_back(static_cast<const spa_pod*>(made)); };
    add(spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers,
                                   SPA_PARAM_BUFFERS_buffers, SPA_POD_Int(4),
                                   SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_size,
                                   SPA_POD_Int(static_cast<int>(bufferSize(format))),
                                   SPA_PARAM_BUFFERS_stride, SPA_POD_Int(0)));
    if (camera.m_settings.stamps != Stamps::none)
        add(spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta,
                                       SPA_PARAM_META_type, SPA_POD_Id(SPA_META_Header),
                                       SPA_PARAM_META_size,
                                       SPA_POD_Int(static_cast<int>(sizeof(spa_meta_header)))));
    pw_stream_update_params(stream, pods.data(), static_cast<std::uint32_t>(pods.size()));
}

void FakeCamera::Node::send() {
    auto* buffer = pw_stream_dequeue_buffer(stream);
    if (!buffer)
        return;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    auto& data = buffer->buffer->datas[0];
    auto picture = fakePicture(format, camera.m_counter, camera.m_isWhite);
    if (camera.m_isDamaged)
        picture.resize(picture.size() / 3);
    std::memcpy(data.data, picture.data(), std::min<std::size_t>(picture.size(), data.maxsize));
    *data.chunk = {
        .offset = 0, .size = static_cast<std::uint32_t>(picture.size()), .stride = 0, .flags = 0};
    if (auto* header = static_cast<spa_meta_header*>(
            spa_buffer_find_meta_data(buffer->buffer, SPA_META_Header, sizeof(spa_meta_header))))
        *header = {.flags = 0,
                   .offset = 0,
                   .pts = camera.m_settings.stamps == Stamps::host
                              ? std::chrono::nanoseconds(now).count()
                              : 1 + camera.m_counter * 33'000'000L,
                   .dts_offset = 0,
                   .seq = camera.m_counter};
    times.push_back(std::chrono::duration<double>(now).count());
    ++camera.m_counter;
    pw_stream_queue_buffer(stream, buffer);
}

void FakeCamera::Node::open() {
    const auto& settings = camera.m_settings;
    auto* properties = pw_properties_new(nullptr, nullptr);
    for (const auto& [key, value] : std::initializer_list<std::pair<const char*, std::string>>{
             {PW_KEY_MEDIA_CLASS, "Video/Source"},
             {PW_KEY_MEDIA_ROLE, "Camera"},
             {PW_KEY_NODE_NAME, settings.name},
             {PW_KEY_NODE_DESCRIPTION, settings.description},
             {PW_KEY_PRIORITY_SESSION, std::to_string(settings.priority)}})
        pw_properties_set(properties, key, value.c_str());
    loop = pw_thread_loop_new("camera", nullptr);
    auto* loopHandle = pw_thread_loop_get_loop(loop);
    timer = pw_loop_add_timer(
        loopHandle,
        [](void* self, std::uint64_t) {
            auto& node = *static_cast<Node*>(self);
            if (!node.camera.m_isStalled)
                pw_stream_trigger_process(node.stream);
        },
        this);
    stream = pw_stream_new_simple(loopHandle, "fake camera", properties, &events, this);
    auto pods = writeFormats(settings.formats);
    if (!stream ||
        pw_stream_connect(
            stream, PW_DIRECTION_OUTPUT, PW_ID_ANY,
            static_cast<pw_stream_flags>(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_MAP_BUFFERS),
            pods.pods.data(), static_cast<std::uint32_t>(pods.pods.size())) < 0)
        throw std::runtime_error("PipeWire takes no camera");
    pw_thread_loop_start(loop);
    const LockedLoop lock(loop);
    while (!outcome)
        pw_thread_loop_wait(loop);
    if (!outcome->empty())
        throw std::runtime_error(*outcome);
}

FakeCamera::FakeCamera(Settings settings)
    : m_settings(std::move(settings)), m_node(new Node{*this}) {
    pw_init(nullptr, nullptr);
    m_node->open();
}

FakeCamera::~FakeCamera() {
    {
        const LockedLoop lock(m_node->loop);
        pw_stream_destroy(m_node->stream);
        pw_loop_destroy_source(pw_thread_loop_get_loop(m_node->loop), m_node->timer);
    }
    pw_thread_loop_stop(m_node->loop);
    pw_thread_loop_destroy(m_node->loop);
}

void FakeCamera::change(const Format& format) {
    const LockedLoop lock(m_node->loop);
    auto pods = writeFormats({format});
    pw_stream_update_params(m_node->stream, pods.pods.data(), 1);
}

std::vector<double> FakeCamera::times() const {
    const LockedLoop lock(m_node->loop);
    return m_node->times;
}

FakeCamera::Format FakeCamera::format() const {
    const LockedLoop lock(m_node->loop);
    return m_node->format;
}

} // namespace vantro::test

#include "support/FakeCamera.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <future>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

#include <pipewire/pipewire.h>
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

/// All but the loop's signal is for its thread.
struct FakeCamera::Node {
    FakeCamera& camera;
    pw_main_loop* loop = nullptr;
    pw_stream* stream = nullptr;
    spa_source* timer = nullptr;
    spa_source* wake = nullptr;
    spa_hook hook{};
    std::mutex mutex{};
    Format format{};                     // guarded by mutex
    std::optional<Format> wanted{};      // guarded by mutex
    std::vector<double> times{};         // guarded by mutex
    bool isEnding = false;               // guarded by mutex
    std::promise<std::string> started{}; // what went wrong
    bool isKnown = false;

    void stateChanged(pw_stream_state state, const char* error);
    void formatChanged(const spa_pod& pod);
    void send();
    void woken();
    std::string open();

    static const pw_stream_events events;
};

const pw_stream_events FakeCamera::Node::events{
    .version = PW_VERSION_STREAM_EVENTS,
    .destroy = nullptr,
    .state_changed =
        [](void* self, pw_stream_state, pw_stream_state state, const char* error) {
            static_cast<Node*>(self)->stateChanged(state, error);
        },
    .control_info = nullptr,
    .io_changed = nullptr,
    .param_changed =
        [](void* self, std::uint32_t id, const spa_pod* pod) {
            if (id == SPA_PARAM_Format && pod)
                static_cast<Node*>(self)->formatChanged(*pod);
        },
    .add_buffer = nullptr,
    .remove_buffer = nullptr,
    .process = [](void* self) { static_cast<Node*>(self)->send(); },
    .drained = nullptr,
    .command = nullptr,
    .trigger_done = nullptr,
};

void FakeCamera::Node::stateChanged(pw_stream_state state, const char* error) {
    camera.m_isUsed = state == PW_STREAM_STATE_STREAMING;
    const bool isThere = state == PW_STREAM_STATE_PAUSED || state == PW_STREAM_STATE_STREAMING;
    if ((isThere || state == PW_STREAM_STATE_ERROR) && !std::exchange(isKnown, true))
        started.set_value(isThere ? "" : error);
    const long period = 1'000'000'000L / std::max(camera.format().rate, 1);
    timespec every{0, state == PW_STREAM_STATE_STREAMING ? period : 0};
    pw_loop_update_timer(pw_main_loop_get_loop(loop), timer, &every, &every, false);
}

void FakeCamera::Node::formatChanged(const spa_pod& pod) {
    const auto now = readFormat(pod);
    {
        const std::lock_guard lock(mutex);
        format = now;
    }
    std::array<std::uint8_t, 512> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    std::array<const spa_pod*, 2> pods{};
    const auto put = [&](std::uint32_t type, std::uint32_t id,
                         std::initializer_list<std::pair<std::uint32_t, int>> values) {
        spa_pod_frame frame{};
        spa_pod_builder_push_object(&builder, &frame, type, id);
        for (const auto& [key, value] : values) {
            spa_pod_builder_prop(&builder, key, 0);
            if (key == SPA_PARAM_META_type && id == SPA_PARAM_Meta)
                spa_pod_builder_id(&builder, static_cast<std::uint32_t>(value));
            else
                spa_pod_builder_int(&builder, value);
        }
        return static_cast<const spa_pod*>(spa_pod_builder_pop(&builder, &frame));
    };
    pods[0] = put(SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers,
                  {{SPA_PARAM_BUFFERS_buffers, 4},
                   {SPA_PARAM_BUFFERS_blocks, 1},
                   {SPA_PARAM_BUFFERS_size, static_cast<int>(bufferSize(now))},
                   {SPA_PARAM_BUFFERS_stride, 0}});
    pods[1] = put(SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta,
                  {{SPA_PARAM_META_type, SPA_META_Header},
                   {SPA_PARAM_META_size, static_cast<int>(sizeof(spa_meta_header))}});
    pw_stream_update_params(stream, pods.data(), camera.m_settings.stamps == Stamps::none ? 1 : 2);
}

void FakeCamera::Node::send() {
    auto* buffer = pw_stream_dequeue_buffer(stream);
    if (!buffer)
        return;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    auto& data = buffer->buffer->datas[0];
    auto picture = fakePicture(camera.format(), camera.m_counter, camera.m_isWhite);
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
    {
        const std::lock_guard lock(mutex);
        times.push_back(std::chrono::duration<double>(now).count());
    }
    ++camera.m_counter;
    pw_stream_queue_buffer(stream, buffer);
}

void FakeCamera::Node::woken() {
    const std::lock_guard lock(mutex);
    if (isEnding)
        pw_main_loop_quit(loop);
    if (const auto next = std::exchange(wanted, {})) {
        auto pods = writeFormats({*next});
        pw_stream_update_params(stream, pods.pods.data(), 1);
    }
}

std::string FakeCamera::Node::open() {
    const auto& settings = camera.m_settings;
    auto* properties = pw_properties_new(nullptr, nullptr);
    for (const auto& [key, value] : std::initializer_list<std::pair<const char*, std::string>>{
             {PW_KEY_MEDIA_CLASS, "Video/Source"},
             {PW_KEY_MEDIA_ROLE, "Camera"},
             {PW_KEY_NODE_NAME, settings.name},
             {PW_KEY_NODE_DESCRIPTION, settings.description},
             {PW_KEY_PRIORITY_SESSION, std::to_string(settings.priority)}})
        pw_properties_set(properties, key, value.c_str());
    auto* loopHandle = pw_main_loop_get_loop(loop);
    timer = pw_loop_add_timer(
        loopHandle,
        [](void* self, std::uint64_t) {
            auto& node = *static_cast<Node*>(self);
            if (!node.camera.m_isStalled)
                pw_stream_trigger_process(node.stream);
        },
        this);
    wake = pw_loop_add_event(
        loopHandle, [](void* self, std::uint64_t) { static_cast<Node*>(self)->woken(); }, this);
    stream = pw_stream_new_simple(loopHandle, "fake camera", properties, &events, this);
    auto pods = writeFormats(settings.formats);
    if (!stream ||
        pw_stream_connect(
            stream, PW_DIRECTION_OUTPUT, PW_ID_ANY,
            static_cast<pw_stream_flags>(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_MAP_BUFFERS),
            pods.pods.data(), static_cast<std::uint32_t>(pods.pods.size())) < 0)
        return "PipeWire takes no camera";
    return {};
}

FakeCamera::FakeCamera(Settings settings)
    : m_settings(std::move(settings)), m_node(new Node{*this}) {
    pw_init(nullptr, nullptr);
    m_node->loop = pw_main_loop_new(nullptr);
    auto started = m_node->started.get_future();
    if (const auto error = m_node->open(); !error.empty())
        throw std::runtime_error(error);
    m_thread = std::thread([this] { pw_main_loop_run(m_node->loop); });
    if (const auto error = started.get(); !error.empty())
        throw std::runtime_error(error);
}

FakeCamera::~FakeCamera() {
    {
        const std::lock_guard lock(m_node->mutex);
        m_node->isEnding = true;
    }
    pw_loop_signal_event(pw_main_loop_get_loop(m_node->loop), m_node->wake);
    m_thread.join();
    pw_stream_destroy(m_node->stream);
    pw_main_loop_destroy(m_node->loop);
}

void FakeCamera::change(const Format& format) {
    {
        const std::lock_guard lock(m_node->mutex);
        m_node->wanted = format;
    }
    pw_loop_signal_event(pw_main_loop_get_loop(m_node->loop), m_node->wake);
}

std::vector<double> FakeCamera::times() const {
    const std::lock_guard lock(m_node->mutex);
    return m_node->times;
}

FakeCamera::Format FakeCamera::format() const {
    const std::lock_guard lock(m_node->mutex);
    return m_node->format;
}

} // namespace vantro::test

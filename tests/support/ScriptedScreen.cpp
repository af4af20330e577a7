#include "support/ScriptedScreen.h"

#include "support/Eventually.h"
#include "support/LockedLoop.h"

#include <array>
#include <atomic>
#include <chrono>
#include <deque>
#include <stdexcept>

#include <spa/param/video/format-utils.h>

namespace vantro::test {
namespace {

using Format = ScreenProfile::Format;

struct Layout {
    Format format;
    spa_video_format spa;
    int size;
    int red;
    int green;
    int blue;
};
constexpr std::array<Layout, 7> layouts{{
    {Format::bgrx, SPA_VIDEO_FORMAT_BGRx, 4, 2, 1, 0},
    {Format::bgra, SPA_VIDEO_FORMAT_BGRA, 4, 2, 1, 0},
    {Format::rgbx, SPA_VIDEO_FORMAT_RGBx, 4, 0, 1, 2},
    {Format::xrgb, SPA_VIDEO_FORMAT_xRGB, 4, 1, 2, 3},
    {Format::xbgr, SPA_VIDEO_FORMAT_xBGR, 4, 3, 2, 1},
    {Format::rgb, SPA_VIDEO_FORMAT_RGB, 3, 0, 1, 2},
    {Format::bgr, SPA_VIDEO_FORMAT_BGR, 3, 2, 1, 0},
}};

std::int64_t nanosecondsNow() {
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

} // namespace

struct ScriptedScreen::Implementation {
    ScreenProfile profile;
    Layout layout{};
    pw_thread_loop* loop = nullptr;
    pw_stream* stream = nullptr;
    spa_source* timer = nullptr;
    spa_hook hook{};
    std::atomic<std::uint32_t> node = 0;
    std::atomic<int> sent = 0;
    // On the loop's thread, or with its lock:
    ScreenFrame current;
    std::deque<ScreenFrame> waiting;
    std::function<ScreenFrame(int)> animation;
    bool isMute = false;
    bool losesNext = false;
    bool isAgreed = true; // upon the profile's size
    int number = 0;
    std::int64_t staleTime = 0;

    void connect();
    const spa_pod* format(spa_pod_builder& builder) const;
    void stateChanged(pw_stream_state state);
    void agree(const spa_pod* pod);
    void tick();
    void fill();
    void draw(const ScreenFrame& frame, std::uint8_t* pixels, int stride) const;
    void describe(const ScreenFrame& frame, const spa_buffer& buffer);

    static const pw_stream_events events;
};

const pw_stream_events ScriptedScreen::Implementation::events = [] {
    using Self = ScriptedScreen::Implementation;
    pw_stream_events calls{};
    calls.version = PW_VERSION_STREAM_EVENTS;
    calls.state_changed = [](void* self, pw_stream_state, pw_stream_state state, const char*) {
        static_cast<Self*>(self)->stateChanged(state);
    };
    calls.param_changed = [](void* self, std::uint32_t id, const spa_pod* pod) {
        if (id == SPA_PARAM_Format && pod != nullptr)
            static_cast<Self*>(self)->agree(pod);
    };
    calls.process = [](void* self) { static_cast<Self*>(self)->fill(); };
    return calls;
}();

void ScriptedScreen::Implementation::connect() {
    pw_init(nullptr, nullptr);
    loop = pw_thread_loop_new("screen", nullptr);
    timer = pw_loop_add_timer(
        pw_thread_loop_get_loop(loop),
        [](void* self, std::uint64_t) { static_cast<Implementation*>(self)->tick(); }, this);
    stream = pw_stream_new_simple(
        pw_thread_loop_get_loop(loop), "scripted screen",
        pw_properties_new(PW_KEY_MEDIA_CLASS, "Video/Source", PW_KEY_MEDIA_ROLE, "Screen", nullptr),
        &events, this);
    std::array<std::uint8_t, 1024> bytes{};
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(bytes.data(), bytes.size());
    const spa_pod* offer = format(builder);
    if (stream == nullptr ||
        pw_stream_connect(
            stream, PW_DIRECTION_OUTPUT, PW_ID_ANY,
            static_cast<pw_stream_flags>(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_MAP_BUFFERS),
            &offer, 1) < 0)
        throw std::runtime_error("no PipeWire for a scripted screen");
    pw_thread_loop_start(loop);
    if (!eventually([this] { return node != 0; }))
        throw std::runtime_error("the scripted screen gets no node");
}

const spa_pod* ScriptedScreen::Implementation::format(spa_pod_builder& builder) const {
    const spa_rectangle size{static_cast<std::uint32_t>(profile.width),
                             static_cast<std::uint32_t>(profile.height)};
    const spa_fraction asItChanges{0, 1};
    const spa_fraction most{static_cast<std::uint32_t>(profile.rate), 1};
    const spa_fraction least{1, 1};
    return static_cast<const spa_pod*>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
        SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype,
        SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw), SPA_FORMAT_VIDEO_format, SPA_POD_Id(layout.spa),
        SPA_FORMAT_VIDEO_size, SPA_POD_Rectangle(&size), SPA_FORMAT_VIDEO_framerate,
        SPA_POD_Fraction(&asItChanges), SPA_FORMAT_VIDEO_maxFramerate,
        SPA_POD_CHOICE_RANGE_Fraction(&most, &least, &most)));
}

void ScriptedScreen::Implementation::stateChanged(pw_stream_state state) {
    if (state == PW_STREAM_STATE_PAUSED)
        node = pw_stream_get_node_id(stream);
    const bool isStreaming = state == PW_STREAM_STATE_STREAMING;
    if (isStreaming && waiting.empty())
        waiting.push_back(current);
    const long interval = isStreaming ? 1'000'000'000L / profile.rate : 0;
    // Not at once: the graph needs a moment until everybody takes part.
    timespec first{0, interval};
    timespec every{0, interval};
    pw_loop_update_timer(pw_thread_loop_get_loop(loop), timer, &first, &every, false);
}

void ScriptedScreen::Implementation::agree(const spa_pod* pod) {
    spa_video_info_raw info{};
    if (spa_format_video_raw_parse(pod, &info) < 0)
        return;
    isAgreed = static_cast<int>(info.size.width) == profile.width &&
               static_cast<int>(info.size.height) == profile.height;
    const int stride = (profile.width * layout.size + 3) / 4 * 4;
    std::array<std::uint8_t, 2048> bytes{};
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(bytes.data(), bytes.size());
    std::vector<const spa_pod*> params;
    const auto add = [&](void* made) { params.push_back(static_cast<const spa_pod*>(made)); };
    add(spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers,
                                   SPA_PARAM_BUFFERS_buffers, SPA_POD_CHOICE_RANGE_Int(4, 2, 8),
                                   SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_size,
                                   SPA_POD_Int(stride * profile.height), SPA_PARAM_BUFFERS_stride,
                                   SPA_POD_Int(stride), SPA_PARAM_BUFFERS_dataType,
                                   SPA_POD_CHOICE_FLAGS_Int(1 << SPA_DATA_MemFd)));
    const auto addMeta = [&](std::uint32_t kind, std::size_t size) {
        add(spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta,
                                       SPA_PARAM_META_type, SPA_POD_Id(kind), SPA_PARAM_META_size,
                                       SPA_POD_Int(static_cast<int>(size))));
    };
    addMeta(SPA_META_Header, sizeof(spa_meta_header));
    addMeta(SPA_META_VideoCrop, sizeof(spa_meta_region));
    addMeta(SPA_META_VideoTransform, sizeof(spa_meta_videotransform));
    if (profile.tellsPointer)
        addMeta(SPA_META_Cursor,
                sizeof(spa_meta_cursor) + sizeof(spa_meta_bitmap) + std::size_t{64} * 64 * 4);
    pw_stream_update_params(stream, params.data(), static_cast<std::uint32_t>(params.size()));
}

void ScriptedScreen::Implementation::tick() {
    if (isMute)
        return;
    if (animation) { // what could not be sent is old now
        waiting.clear();
        waiting.push_back(current = animation(number++));
    }
    if (std::exchange(losesNext, losesNext && waiting.empty()))
        waiting.clear();
    if (!waiting.empty())
        pw_stream_trigger_process(stream);
}

void ScriptedScreen::Implementation::fill() {
    if (waiting.empty() || !isAgreed)
        return;
    pw_buffer* buffer = pw_stream_dequeue_buffer(stream);
    if (buffer == nullptr)
        return; // the next tick tries again
    const ScreenFrame frame = waiting.front();
    waiting.pop_front();
    spa_data& data = buffer->buffer->datas[0];
    const int stride = (profile.width * layout.size + 3) / 4 * 4;
    data.chunk->offset = 0;
    data.chunk->stride = frame.claimedStride != 0 ? frame.claimedStride : stride;
    data.chunk->size = frame.hasPicture ? static_cast<std::uint32_t>(stride * profile.height) : 0;
    data.chunk->flags =
        !frame.hasPicture && profile.emptyIsCorrupted ? SPA_CHUNK_FLAG_CORRUPTED : 0;
    if (frame.hasPicture && data.maxsize >= data.chunk->size)
        draw(frame, static_cast<std::uint8_t*>(data.data), stride);
    describe(frame, *buffer->buffer);
    pw_stream_queue_buffer(stream, buffer);
    ++sent;
}

void ScriptedScreen::Implementation::draw(const ScreenFrame& frame, std::uint8_t* pixels,
                                          int stride) const {
    std::fill_n(pixels, stride * profile.height, std::uint8_t{0});
    for (const Patch& patch : frame.patches) {
        const int left = std::max(patch.x, 0);
        const int top = std::max(patch.y, 0);
        const int width = std::min(patch.x + patch.width, profile.width) - left;
        const int height = std::min(patch.y + patch.height, profile.height) - top;
        if (width <= 0 || height <= 0)
            continue;
        auto* first = pixels + std::ptrdiff_t{top} * stride + std::ptrdiff_t{left} * layout.size;
        for (int x = 0; x < width; ++x) {
            auto* pixel = first + std::ptrdiff_t{x} * layout.size;
            pixel[layout.red] = static_cast<std::uint8_t>(patch.color >> 16);
            pixel[layout.green] = static_cast<std::uint8_t>(patch.color >> 8);
            pixel[layout.blue] = static_cast<std::uint8_t>(patch.color);
            if (layout.size == 4) // opaque
                pixel[6 - layout.red - layout.green - layout.blue] = 255;
        }
        for (int y = 1; y < height; ++y)
            std::copy_n(first, width * layout.size, first + std::ptrdiff_t{y} * stride);
    }
}

void ScriptedScreen::Implementation::describe(const ScreenFrame& frame, const spa_buffer& buffer) {
    const auto find = [&]<typename Meta>(std::type_identity<Meta>, std::uint32_t kind) {
        return static_cast<Meta*>(spa_buffer_find_meta_data(&buffer, kind, sizeof(Meta)));
    };
    if (auto* header = find(std::type_identity<spa_meta_header>(), SPA_META_Header)) {
        if (staleTime == 0)
            staleTime = nanosecondsNow();
        header->flags = 0;
        header->pts = frame.time == ScreenFrame::Time::now     ? nanosecondsNow()
                      : frame.time == ScreenFrame::Time::stale ? staleTime
                                                               : -1;
    }
    if (auto* cursor = find(std::type_identity<spa_meta_cursor>(), SPA_META_Cursor)) {
        *cursor = {};
        cursor->id = frame.pointer ? 1 : 0;
        if (frame.pointer)
            cursor->position = {frame.pointer->first, frame.pointer->second};
    }
    if (auto* crop = find(std::type_identity<spa_meta_region>(), SPA_META_VideoCrop)) {
        crop->region = {};
        if (frame.crop)
            crop->region = {{frame.crop->x, frame.crop->y},
                            {static_cast<std::uint32_t>(frame.crop->width),
                             static_cast<std::uint32_t>(frame.crop->height)}};
    }
    if (auto* turn = find(std::type_identity<spa_meta_videotransform>(), SPA_META_VideoTransform))
        turn->transform = frame.transform;
}

ScriptedScreen::ScriptedScreen(const ScreenProfile& profile)
    : m_implementation(std::make_unique<Implementation>()) {
    m_implementation->profile = profile;
    for (const Layout& each : layouts)
        if (each.format == profile.format)
            m_implementation->layout = each;
    m_implementation->connect();
}

ScriptedScreen::~ScriptedScreen() {
    vanish();
    pw_thread_loop_stop(m_implementation->loop);
    pw_thread_loop_destroy(m_implementation->loop);
}

std::uint32_t ScriptedScreen::node() const {
    return m_implementation->node;
}

int ScriptedScreen::sent() const {
    return m_implementation->sent;
}

void ScriptedScreen::show(const ScreenFrame& frame) {
    const LockedLoop lock(m_implementation->loop);
    m_implementation->animation = nullptr;
    m_implementation->current = frame;
    if (pw_stream_get_state(m_implementation->stream, nullptr) == PW_STREAM_STATE_STREAMING)
        m_implementation->waiting.push_back(frame);
}

void ScriptedScreen::loseNext() {
    const LockedLoop lock(m_implementation->loop);
    m_implementation->losesNext = true;
}

void ScriptedScreen::stayMute() {
    const LockedLoop lock(m_implementation->loop);
    m_implementation->isMute = true;
}

void ScriptedScreen::animate(std::function<ScreenFrame(int number)> make) {
    const LockedLoop lock(m_implementation->loop);
    m_implementation->animation = std::move(make);
}

void ScriptedScreen::resize(int width, int height, const std::optional<ScreenFrame>& frame) {
    const LockedLoop lock(m_implementation->loop);
    if (frame)
        m_implementation->waiting.push_back(m_implementation->current = *frame);
    auto& profile = m_implementation->profile;
    m_implementation->isAgreed = profile.width == width && profile.height == height;
    profile.width = width;
    profile.height = height;
    std::array<std::uint8_t, 1024> bytes{};
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(bytes.data(), bytes.size());
    const spa_pod* offer = m_implementation->format(builder);
    pw_stream_update_params(m_implementation->stream, &offer, 1);
}

void ScriptedScreen::sleep(bool isAsleep) {
    const LockedLoop lock(m_implementation->loop);
    pw_stream_set_active(m_implementation->stream, !isAsleep);
}

void ScriptedScreen::vanish() {
    const LockedLoop lock(m_implementation->loop);
    if (m_implementation->stream == nullptr)
        return;
    pw_stream_destroy(m_implementation->stream);
    m_implementation->stream = nullptr;
    pw_loop_destroy_source(pw_thread_loop_get_loop(m_implementation->loop),
                           m_implementation->timer);
}

} // namespace vantro::test

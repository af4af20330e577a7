#include "pipewire/VideoStream.h"

#include "pipewire/BufferReader.h"
#include "pipewire/Handles.h"
#include "pipewire/VideoPods.h"

#include <cerrno>

#include <spa/buffer/meta.h>
#include <spa/param/param.h>
#include <spa/utils/result.h>

namespace vantro::pipewire {
namespace {

// An endless supply must not keep the loop from everything else.
constexpr int mostBuffersAtOnce = 8;
constexpr int regionSize = sizeof(spa_meta_region);

StreamState stateOf(pw_stream_state state) {
    switch (state) {
    case PW_STREAM_STATE_CONNECTING:
        return StreamState::connecting;
    case PW_STREAM_STATE_PAUSED:
        return StreamState::paused;
    case PW_STREAM_STATE_STREAMING:
        return StreamState::streaming;
    default:
        return StreamState::failed;
    }
}

std::vector<const spa_pod*> pointersTo(const std::vector<Pod>& pods) {
    std::vector<const spa_pod*> pointers;
    pointers.reserve(pods.size());
    for (const auto& each : pods)
        pointers.push_back(each.get());
    return pointers;
}

std::vector<Pod> podsOf(const std::vector<FormatOffer>& offers) {
    std::vector<Pod> pods;
    pods.reserve(offers.size());
    for (const auto& each : offers)
        pods.push_back(writeOffer(each));
    return pods;
}

} // namespace

// Later members use earlier ones and go first.
struct VideoStream::Implementation {
    StreamRequest request;
    VideoStreamListener& listener;
    BufferReader reader{};

    std::optional<VideoFormat> format{};
    Handle<pw_stream> stream{};
    Hook hook{};

    void connect(Connection& connection);
    void formatChanged(const spa_pod& pod);
    void agreeOnBuffers();
    void process();

    static const pw_stream_events events;
};

const pw_stream_events VideoStream::Implementation::events{
    .version = PW_VERSION_STREAM_EVENTS,
    .destroy = nullptr,
    .state_changed =
        [](void* self, pw_stream_state, pw_stream_state state, const char* error) {
            static_cast<Implementation*>(self)->listener.stateChanged(stateOf(state),
                                                                      error ? error : "");
        },
    .control_info = nullptr,
    .io_changed = nullptr,
    .param_changed =
        [](void* self, std::uint32_t id, const spa_pod* pod) {
            if (id == SPA_PARAM_Format && pod)
                static_cast<Implementation*>(self)->formatChanged(*pod);
        },
    .add_buffer = nullptr,
    .remove_buffer = nullptr,
    .process = [](void* self) { static_cast<Implementation*>(self)->process(); },
    .drained = nullptr,
    .command = nullptr,
    .trigger_done = nullptr,
};

void VideoStream::Implementation::connect(Connection& connection) {
    Handle<pw_properties> properties(pw_properties_new(nullptr, nullptr));
    const auto set = [&](const char* key, const std::string& value) {
        pw_properties_set(properties.get(), key, value.c_str());
    };
    set(PW_KEY_MEDIA_TYPE, "Video");
    set(PW_KEY_MEDIA_CATEGORY, "Capture");
    set(PW_KEY_MEDIA_ROLE, request.role);
    set(PW_KEY_APP_NAME, "Vantro");
    set(PW_KEY_NODE_DONT_RECONNECT, "true");
    if (!request.node && !request.target.empty())
        set(PW_KEY_TARGET_OBJECT, request.target);
    stream.reset(pw_stream_new(&connection.core(), request.name.c_str(), properties.release()));
    if (!stream)
        return listener.stateChanged(StreamState::failed, "there is no room for a stream");
    pw_stream_add_listener(stream.get(), hook.get(), &events, this);
    const auto offers = podsOf(request.offers);
    auto pointers = pointersTo(offers);
    const int result = pw_stream_connect(
        stream.get(), PW_DIRECTION_INPUT, request.node.value_or(PW_ID_ANY),
        static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                     PW_STREAM_FLAG_DONT_RECONNECT),
        pointers.data(), static_cast<std::uint32_t>(pointers.size()));
    if (result < 0)
        listener.stateChanged(StreamState::failed, spa_strerror(result));
}

void VideoStream::Implementation::formatChanged(const spa_pod& pod) {
    format = readFormat(pod);
    if (!format) {
        pw_stream_set_error(stream.get(), -EINVAL, "no picture format");
        return;
    }
    agreeOnBuffers();
    listener.formatChanged(*format);
}

void VideoStream::Implementation::agreeOnBuffers() {
    constexpr int header = sizeof(spa_meta_header);
    std::vector<Pod> pods{writeBuffers(), writeMeta(SPA_META_Header, header, header, header)};
    // Senders differ in what they have room for, so a range is essential.
    if (request.wantsCursor)
        pods.push_back(writeMeta(SPA_META_Cursor, cursorMetaSize(64), cursorMetaSize(1),
                                 cursorMetaSize(1024)));
    if (request.wantsCrop)
        pods.push_back(writeMeta(SPA_META_VideoCrop, regionSize, regionSize, regionSize));
    if (request.wantsDamage)
        pods.push_back(
            writeMeta(SPA_META_VideoDamage, regionSize * 16, regionSize, regionSize * 16));
    if (request.wantsTransform) {
        constexpr int turn = sizeof(spa_meta_videotransform);
        pods.push_back(writeMeta(SPA_META_VideoTransform, turn, turn, turn));
    }
    auto pointers = pointersTo(pods);
    pw_stream_update_params(stream.get(), pointers.data(),
                            static_cast<std::uint32_t>(pointers.size()));
}

void VideoStream::Implementation::process() {
    for (int i = 0; i < mostBuffersAtOnce; ++i) {
        auto* buffer = pw_stream_dequeue_buffer(stream.get());
        if (!buffer)
            return;
        if (format)
            listener.arrived(reader.read(*buffer->buffer, *format, base::hostNow()));
        pw_stream_queue_buffer(stream.get(), buffer);
    }
}

VideoStream::VideoStream(Connection& connection, StreamRequest request,
                         VideoStreamListener& listener)
    : m_implementation(new Implementation{std::move(request), listener}) {
    m_implementation->connect(connection);
}

VideoStream::~VideoStream() = default;

void VideoStream::setActive(bool isActive) {
    pw_stream_set_active(m_implementation->stream.get(), isActive);
}

void VideoStream::offer(const std::vector<FormatOffer>& offers) {
    const auto pods = podsOf(offers);
    auto pointers = pointersTo(pods);
    pw_stream_update_params(m_implementation->stream.get(), pointers.data(),
                            static_cast<std::uint32_t>(pointers.size()));
}

} // namespace vantro::pipewire

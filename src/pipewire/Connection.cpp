#include "pipewire/Connection.h"

#include "pipewire/Handles.h"

#include <cerrno>
#include <utility>

namespace vantro::pipewire {
namespace {

Refusal refusalOf(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
        return {.kind = Refusal::Kind::denied, .reason = "PipeWire denies access"};
    case EPIPE:
    case ECONNRESET:
        return {.reason = "PipeWire has gone"};
    default:
        return {.reason = "PipeWire is not running"};
    }
}

} // namespace

// Later members use earlier ones and go first.
struct Connection::Implementation {
    Handle<pw_context> context;
    Handle<pw_core> core;
    Hook hook;
    int answered = 0;
    std::optional<Refusal> loss;

    static const pw_core_events events;
};

const pw_core_events Connection::Implementation::events{
    .version = PW_VERSION_CORE_EVENTS,
    .info = nullptr,
    .done =
        [](void* self, std::uint32_t id, int sequence) {
            if (id == PW_ID_CORE)
                static_cast<Implementation*>(self)->answered = sequence;
        },
    .ping = nullptr,
    .error =
        [](void* self, std::uint32_t id, int, int result, const char*) {
            // Of what is asked for and has gone meanwhile, the one who asked learns otherwise.
            if (id == PW_ID_CORE && result != -ENOENT)
                static_cast<Implementation*>(self)->loss = refusalOf(-result);
        },
    .remove_id = nullptr,
    .bound_id = nullptr,
    .add_mem = nullptr,
    .remove_mem = nullptr,
};

std::expected<std::unique_ptr<Connection>, Refusal> Connection::open(Loop& loop,
                                                                     base::FileDescriptor remote) {
    std::unique_ptr<Connection> connection(new Connection(loop));
    auto& parts = *connection->m_implementation;
    parts.context.reset(pw_context_new(&loop.handle(), nullptr, 0));
    if (!parts.context)
        return std::unexpected(refusalOf(errno));
    parts.core.reset(remote
                         ? pw_context_connect_fd(parts.context.get(), remote.release(), nullptr, 0)
                         : pw_context_connect(parts.context.get(), nullptr, 0));
    if (!parts.core)
        return std::unexpected(refusalOf(errno));
    pw_core_add_listener(parts.core.get(), parts.hook.get(), &Implementation::events, &parts);
    return connection;
}

Connection::Connection(Loop& loop)
    : m_loop(loop), m_implementation(std::make_unique<Implementation>()) {}

Connection::~Connection() = default;

bool Connection::awaitAnswers(base::HostDuration longestWait) {
    const int sequence = pw_core_sync(&core(), PW_ID_CORE, 0);
    const auto& parts = *m_implementation;
    return m_loop.turnUntil([&] { return parts.loss || parts.answered == sequence; },
                            longestWait) &&
           !parts.loss;
}

const std::optional<Refusal>& Connection::loss() const {
    return m_implementation->loss;
}

pw_core& Connection::core() const {
    return *m_implementation->core;
}

} // namespace vantro::pipewire

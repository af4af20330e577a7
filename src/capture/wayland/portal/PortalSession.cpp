#include "capture/wayland/portal/PortalSession.h"

#include "base/Fatal.h"
#include "base/Log.h"

#include <chrono>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>

namespace vantro::capture::wayland {
namespace {

constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* sessionToken = "vantro";

// For the portal itself, which may have to be started first; the user's answer comes apart from
// that and may take any time.
constexpr std::chrono::seconds longestReply{15};
// A recording's end waits for this.
constexpr std::chrono::milliseconds longestGoodbye{500};

// As the portal's interface has them.
constexpr std::uint32_t granted = 0;
constexpr std::uint32_t takenBack = 1;
constexpr std::uint32_t monitorSource = 1;
constexpr std::uint32_t windowSource = 2;
constexpr std::uint32_t untilRevoked = 2;

using Properties = std::map<std::string, sdbus::Variant>;
using Stream = sdbus::Struct<std::uint32_t, Properties>;
template <typename Number>
using Pair = sdbus::Struct<Number, Number>;

PortalRefusal failure(std::string reason) {
    return {.kind = PortalRefusal::Kind::failed, .reason = std::move(reason)};
}

PortalRefusal failure(const sdbus::Error& error) {
    for (const auto* missing : {"ServiceUnknown", "NameHasNoOwner", "UnknownInterface",
                                "UnknownMethod", "UnknownObject", "Spawn"})
        if (error.getName().contains(missing))
            return failure(noPortalText);
    return failure(fmt::format("the desktop's screen-sharing service fails: {}",
                               error.getMessage().empty() ? error.getName() : error.getMessage()));
}

template <typename Value>
std::optional<Value> find(const Properties& properties, const char* name) {
    const auto found = properties.find(name);
    if (found == properties.end() || !found->second.containsValueOfType<Value>())
        return {};
    return found->second.get<Value>();
}

const char* methodOf(int step) {
    constexpr const char* names[] = {"CreateSession", "SelectSources", "Start"};
    return names[step];
}

std::expected<PortalStream, PortalRefusal> streamOf(const Properties& results,
                                                    const PortalRequest& wanted) {
    const auto streams = find<std::vector<Stream>>(results, "streams");
    if (!streams || streams->empty())
        return std::unexpected(failure("the desktop has granted nothing to record"));
    // Where there are several although one is asked for, the last one is what was chosen.
    const auto& [node, properties] =
        static_cast<const std::tuple<std::uint32_t, Properties>&>(streams->back());
    PortalStream stream{.node = node,
                        .serial = find<std::uint64_t>(properties, "pipewire-serial"),
                        .mode = wanted.mode,
                        .cursor = wanted.cursor,
                        .isRestored = false,
                        .id = find<std::string>(properties, "id").value_or(""),
                        .position = {},
                        .size = {}};
    if (const auto at = find<Pair<std::int32_t>>(properties, "position"))
        stream.position = {static_cast<double>(at->get<0>()), static_cast<double>(at->get<1>())};
    if (const auto size = find<Pair<std::int32_t>>(properties, "size");
        size && size->get<0>() > 0 && size->get<1>() > 0)
        stream.size = {static_cast<double>(size->get<0>()), static_cast<double>(size->get<1>())};
    return stream;
}

Properties selection(const PortalRequest& request) {
    const bool isWindow = request.mode == model::CaptureMode::window;
    Properties options{{"types", sdbus::Variant(isWindow ? windowSource : monitorSource)},
                       {"multiple", sdbus::Variant(false)},
                       {"cursor_mode", sdbus::Variant(static_cast<std::uint32_t>(request.cursor))},
                       {"persist_mode", sdbus::Variant(untilRevoked)}};
    if (!request.restoreToken.empty())
        options.emplace("restore_token", sdbus::Variant(request.restoreToken));
    return options;
}

} // namespace

PortalSession::PortalSession()
    : m_portal(sdbus::createProxy(m_bus.connection(), portalName, portalPath)) {
    // Everything is listened to before anything is asked, so that no answer comes too early.
    for (const auto step : {Step::create, Step::select, Step::start})
        m_requests.emplace(step, makeRequest(step));
    const auto path = m_bus.handle("session", sessionToken);
    m_session = sdbus::createProxy(m_bus.connection(), portalName, path);
    m_closedWatch = m_bus.connection().addMatch(
        fmt::format("type='signal',interface='{}',member='Closed',path='{}'", sessionInterface,
                    path),
        [this](sdbus::Message&) { closed(); });
    m_bus.watchPortal([this](bool isThere) {
        if (!isThere)
            closed();
    });
    m_bus.start([this] { closed(); });
}

PortalSession::~PortalSession() {
    bool isOpen = false;
    {
        const std::lock_guard lock(m_mutex);
        m_onClosed = nullptr;
        isOpen = m_state == State::asking || m_state == State::granted;
    }
    if (isOpen) {
        try {
            // Answered once the desktop has ended it: some send a session that begins before that
            // no picture.
            m_session->callMethod("Close")
                .onInterface(sessionInterface)
                .withTimeout(longestGoodbye);
        } catch (const sdbus::Error& error) {
            base::logInfo("The portal's session cannot be closed: {}", error.getMessage());
        }
    }
    m_bus.stop(); // before what its thread calls
}

std::unique_ptr<sdbus::IProxy> PortalSession::makeRequest(Step step) {
    auto request = sdbus::createProxy(m_bus.connection(), portalName,
                                      m_bus.handle("request", methodOf(static_cast<int>(step))));
    request->uponSignal("Response")
        .onInterface(requestInterface)
        .call([this, step](std::uint32_t code, Results results) {
            const std::lock_guard lock(m_mutex);
            m_responses.insert_or_assign(step, Response{code, std::move(results)});
            m_news.notify_all();
        });
    request->finishRegistration();
    return request;
}

void PortalSession::advance(State to) {
    const bool isAllowed = to == State::closed || (m_state == State::idle && to == State::asking) ||
                           (m_state == State::asking && to == State::granted);
    base::require(isAllowed, "a portal session is out of order");
    m_state = to;
}

void PortalSession::closed() {
    std::function<void()> told;
    {
        const std::lock_guard lock(m_mutex);
        advance(State::closed);
        told = std::exchange(m_onClosed, nullptr);
        m_news.notify_all();
    }
    if (told)
        told();
}

void PortalSession::onClosed(std::function<void()> told) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_state != State::closed) {
            m_onClosed = std::move(told);
            return;
        }
    }
    told();
}

std::expected<PortalGrant, PortalRefusal> PortalSession::ask(const PortalRequest& request,
                                                             const std::stop_token& cancelled) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_state == State::closed)
            return std::unexpected(failure(noPortalText));
        advance(State::asking);
    }
    try {
        auto grant = negotiate(request, cancelled);
        const std::lock_guard lock(m_mutex);
        if (grant && m_state == State::asking)
            advance(State::granted);
        return grant;
    } catch (const sdbus::Error& error) {
        return std::unexpected(failure(error));
    }
}

std::expected<PortalGrant, PortalRefusal>
PortalSession::negotiate(const PortalRequest& request, const std::stop_token& cancelled) {
    const auto created =
        call(Step::create, cancelled,
             Properties{{"session_handle_token", sdbus::Variant(std::string(sessionToken))}});
    if (!created)
        return std::unexpected(created.error());
    const sdbus::ObjectPath session = m_session->getObjectPath();
    if (const auto selected = call(Step::select, cancelled, session, selection(request)); !selected)
        return std::unexpected(selected.error());
    const auto started = call(Step::start, cancelled, session, std::string(), Properties());
    if (!started)
        return std::unexpected(started.error());
    auto stream = streamOf(*started, request);
    if (!stream)
        return std::unexpected(stream.error());
    return PortalGrant{.stream = std::move(*stream),
                       .restoreToken = find<std::string>(*started, "restore_token").value_or(""),
                       .pipeWire = openPipeWire()};
}

template <typename... Arguments>
std::expected<PortalSession::Results, PortalRefusal>
PortalSession::call(Step step, const std::stop_token& cancelled, const Arguments&... arguments) {
    const char* method = methodOf(static_cast<int>(step));
    // The options come last, and the token that names the request is one of them.
    auto all = std::make_tuple(arguments...);
    std::get<sizeof...(Arguments) - 1>(all).insert_or_assign("handle_token",
                                                             sdbus::Variant(std::string(method)));
    std::apply(
        [&](const auto&... each) {
            sdbus::ObjectPath request;
            m_portal->callMethod(method)
                .onInterface(screenCastInterface)
                .withTimeout(longestReply)
                .withArguments(each...)
                .storeResultsTo(request);
        },
        all);
    return await(step, cancelled);
}

std::expected<PortalSession::Results, PortalRefusal>
PortalSession::await(Step step, const std::stop_token& cancelled) {
    std::optional<Response> response;
    bool isClosed = false;
    {
        std::unique_lock lock(m_mutex);
        m_news.wait(lock, cancelled,
                    [&] { return m_responses.contains(step) || m_state == State::closed; });
        if (m_responses.contains(step))
            response = std::move(m_responses[step]);
        isClosed = m_state == State::closed;
    }
    if (response && response->code == granted)
        return std::move(response->results);
    if (response && response->code == takenBack)
        return std::unexpected(PortalRefusal{PortalRefusal::Kind::takenBack, {}});
    if (response)
        return std::unexpected(failure(
            fmt::format("the desktop cannot share what was asked for (it answers {} with {})",
                        methodOf(static_cast<int>(step)), response->code)));
    if (isClosed)
        return std::unexpected(failure("the desktop's screen-sharing service has ended"));
    m_requests.at(step)->callMethod("Close").onInterface(requestInterface).dontExpectReply();
    return std::unexpected(PortalRefusal{PortalRefusal::Kind::takenBack, {}});
}

base::FileDescriptor PortalSession::openPipeWire() {
    sdbus::UnixFd remote;
    m_portal->callMethod("OpenPipeWireRemote")
        .onInterface(screenCastInterface)
        .withTimeout(longestReply)
        .withArguments(sdbus::ObjectPath(m_session->getObjectPath()), Properties())
        .storeResultsTo(remote);
    // A program that we start must not keep the desktop's stream alive.
    return base::FileDescriptor(::fcntl(remote.get(), F_DUPFD_CLOEXEC, 0));
}

} // namespace vantro::capture::wayland

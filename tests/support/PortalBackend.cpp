#include "support/PortalBackend.h"

namespace vantro::test {
namespace {

constexpr const char* castInterface = "org.freedesktop.impl.portal.ScreenCast";
constexpr const char* accessInterface = "org.freedesktop.impl.portal.Access";
constexpr const char* sessionInterface = "org.freedesktop.impl.portal.Session";
constexpr const char* requestInterface = "org.freedesktop.impl.portal.Request";

std::uint32_t number(const std::map<std::string, sdbus::Variant>& options, const char* key) {
    const auto found = options.find(key);
    return found == options.end() ? 0 : found->second.get<std::uint32_t>();
}

} // namespace

PortalBackend::PortalBackend(const PortalScript& script)
    : m_connection(sdbus::createSessionBusConnection()), m_script(script) {
    offerScreenCast();
    m_connection->requestName(name);
    m_connection->enterEventLoopAsync();
}

PortalBackend::~PortalBackend() {
    m_connection->leaveEventLoop();
}

void PortalBackend::offerScreenCast() {
    using Path = sdbus::ObjectPath;
    m_object = sdbus::createObject(*m_connection, "/org/freedesktop/portal/desktop");
    const auto property = [this](const char* key, std::uint32_t value) {
        m_object->registerProperty(key).onInterface(castInterface).withGetter([value] {
            return value;
        });
    };
    property("version", 4);
    property("AvailableSourceTypes", m_script.sourceTypes);
    property("AvailableCursorModes", m_script.cursorModes);
    m_object->registerMethod("CreateSession")
        .onInterface(castInterface)
        .implementedAs(
            [this](const Path&, const Path& session, const std::string&, const Options&) {
                openSession(session);
                return std::tuple(std::uint32_t{0}, Options());
            });
    m_object->registerMethod("SelectSources")
        .onInterface(castInterface)
        .implementedAs(
            [this](const Path&, const Path& session, const std::string&, const Options& options) {
                const std::lock_guard lock(m_mutex);
                m_selected[session] = options;
                m_log.types = number(options, "types");
                m_log.cursorMode = number(options, "cursor_mode");
                return std::tuple(std::uint32_t{0}, Options());
            });
    m_object->registerMethod("Start")
        .onInterface(castInterface)
        .implementedAs([this](Answer&& answer, const Path& request, const Path& session,
                              const std::string&, const std::string&, const Options&) {
            const std::lock_guard lock(m_mutex);
            start(std::move(answer), request, m_selected[session]);
        });
    offerAccess();
    if (m_script.hasKeys)
        m_keys = std::make_unique<KeysBackend>(*m_connection, *m_object);
    m_object->finishRegistration();
}

void PortalBackend::offerAccess() {
    using Path = sdbus::ObjectPath;
    using Text = std::string;
    m_object->registerMethod("AccessDialog")
        .onInterface(accessInterface)
        .implementedAs([this](Answer&& answer, const Path& request, const Text&, const Text&,
                              const Text&, const Text&, const Text&, const Options&) {
            const std::lock_guard lock(m_mutex);
            ++m_log.started;
            if (m_script.cameraAnswer == PortalScript::never)
                putOff(std::move(answer), request);
            else
                answer.returnResults(m_script.cameraAnswer, Options());
        });
}

void PortalBackend::openSession(const std::string& path) {
    auto session = makePortalSession(*m_connection, path, [this] {
        const std::lock_guard lock(m_mutex);
        ++m_log.closed;
    });
    const std::lock_guard lock(m_mutex);
    m_sessions.insert_or_assign(path, std::move(session));
}

void PortalBackend::start(Answer&& answer, const std::string& request, const Options& selected) {
    ++m_log.started;
    m_log.restored += selected.contains("restore_data") ? 1 : 0;
    if (m_script.answer == PortalScript::grants)
        return answer.returnResults(0, grant(selected));
    if (m_script.answer != PortalScript::never)
        return answer.returnResults(m_script.answer, Options());
    putOff(std::move(answer), request);
}

void PortalBackend::putOff(Answer&& answer, const std::string& request) {
    auto pending = sdbus::createObject(*m_connection, request);
    pending->registerMethod("Close").onInterface(requestInterface).implementedAs([this] {
        const std::lock_guard lock(m_mutex);
        ++m_log.withdrawn;
    });
    pending->finishRegistration();
    m_requests.push_back(std::move(pending));
    m_unanswered.push_back(std::move(answer));
}

PortalBackend::Options PortalBackend::grant(const Options& selected) const {
    using Pair = sdbus::Struct<std::int32_t, std::int32_t>;
    Options stream{{"source_type", sdbus::Variant(m_script.sourceType)}};
    if (!m_script.id.empty())
        stream.emplace("id", sdbus::Variant(m_script.id));
    if (m_script.position)
        stream.emplace("position",
                       sdbus::Variant(Pair(m_script.position->first, m_script.position->second)));
    if (m_script.size)
        stream.emplace("size", sdbus::Variant(Pair(m_script.size->first, m_script.size->second)));
    Options results{{"streams", sdbus::Variant(std::vector{sdbus::Struct<std::uint32_t, Options>(
                                    m_script.node, stream)})}};
    if (const auto persistence = number(selected, "persist_mode")) {
        results.emplace("persist_mode", sdbus::Variant(persistence));
        results.emplace("restore_data",
                        sdbus::Variant(sdbus::Struct<std::string, std::uint32_t, sdbus::Variant>(
                            "scripted", 1, sdbus::Variant(m_script.id))));
    }
    return results;
}

void PortalBackend::setScript(const PortalScript& script) {
    const std::lock_guard lock(m_mutex);
    m_script = script;
}

PortalLog PortalBackend::log() const {
    const std::lock_guard lock(m_mutex);
    return m_log;
}

void PortalBackend::stopSharing() {
    const std::lock_guard lock(m_mutex);
    for (const auto& [path, session] : m_sessions)
        session->emitSignal("Closed").onInterface(sessionInterface);
}

} // namespace vantro::test

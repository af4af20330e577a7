#include "support/KeysBackend.h"

namespace vantro::test {
namespace {

constexpr const char* keysInterface = "org.freedesktop.impl.portal.GlobalShortcuts";
constexpr const char* sessionInterface = "org.freedesktop.impl.portal.Session";
constexpr std::uint32_t never = 3;

} // namespace

KeysBackend::KeysBackend(sdbus::IConnection& connection, sdbus::IObject& object)
    : m_connection(connection), m_object(object) {
    using Path = sdbus::ObjectPath;
    using Text = std::string;
    object.registerProperty("version").onInterface(keysInterface).withGetter([] {
        return std::uint32_t{1};
    });
    object.registerMethod("CreateSession")
        .onInterface(keysInterface)
        .implementedAs([this](const Path&, const Path& session, const Text&, const Options&) {
            openSession(session);
            return std::tuple(std::uint32_t{0}, Options());
        });
    object.registerMethod("BindShortcuts")
        .onInterface(keysInterface)
        .implementedAs([this](Answer&& answer, const Path&, const Path&,
                              const std::vector<Shortcut>& shortcuts, const Text&,
                              const Options&) { bind(std::move(answer), shortcuts); });
    object.registerSignal("Activated")
        .onInterface(keysInterface)
        .withParameters<Path, Text, std::uint64_t, Options>();
    object.registerSignal("ShortcutsChanged")
        .onInterface(keysInterface)
        .withParameters<Path, std::vector<Shortcut>>();
}

std::unique_ptr<sdbus::IObject> makePortalSession(sdbus::IConnection& connection,
                                                  const std::string& path,
                                                  const std::function<void()>& onClose) {
    auto session = sdbus::createObject(connection, path);
    session->registerMethod("Close").onInterface(sessionInterface).implementedAs(onClose);
    session->registerSignal("Closed").onInterface(sessionInterface);
    session->registerProperty("version").onInterface(sessionInterface).withGetter([] {
        return std::uint32_t{1};
    });
    session->finishRegistration();
    return session;
}

void KeysBackend::openSession(const std::string& path) {
    auto session = makePortalSession(m_connection, path, [this] {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
    });
    const std::lock_guard lock(m_mutex);
    m_session = std::move(session);
    m_isClosed = false;
}

void KeysBackend::bind(Answer&& answer, const std::vector<Shortcut>& shortcuts) {
    const std::lock_guard lock(m_mutex);
    ++m_asked;
    m_wished.clear();
    std::vector<Shortcut> given;
    for (const auto& shortcut : shortcuts) {
        const auto& id = shortcut.get<0>();
        const auto trigger = shortcut.get<1>().at("preferred_trigger").get<std::string>();
        m_wished.push_back(id + " " + trigger);
        given.emplace_back(id, Options{{"trigger_description", sdbus::Variant("Press " + trigger)},
                                       {"description", shortcut.get<1>().at("description")}});
    }
    if (m_answer == never)
        m_unanswered.push_back(std::move(answer));
    else
        answer.returnResults(m_answer, m_answer == 0 ? Options{{"shortcuts", sdbus::Variant(given)}}
                                                     : Options());
}

void KeysBackend::setAnswer(std::uint32_t answer) {
    const std::lock_guard lock(m_mutex);
    m_answer = answer;
}

int KeysBackend::asked() const {
    const std::lock_guard lock(m_mutex);
    return m_asked;
}

std::vector<std::string> KeysBackend::wished() const {
    const std::lock_guard lock(m_mutex);
    return m_wished;
}

bool KeysBackend::isClosed() const {
    const std::lock_guard lock(m_mutex);
    return m_isClosed;
}

void KeysBackend::press(const std::string& shortcut) {
    const std::lock_guard lock(m_mutex);
    m_object.emitSignal("Activated")
        .onInterface(keysInterface)
        .withArguments(sdbus::ObjectPath(m_session->getObjectPath()), shortcut, std::uint64_t{1},
                       Options());
}

void KeysBackend::rename(const std::string& shortcut, const std::string& trigger) {
    const std::lock_guard lock(m_mutex);
    const std::vector<Shortcut> changed{
        Shortcut(shortcut, Options{{"trigger_description", sdbus::Variant(trigger)},
                                   {"description", sdbus::Variant(std::string("it"))}})};
    m_object.emitSignal("ShortcutsChanged")
        .onInterface(keysInterface)
        .withArguments(sdbus::ObjectPath(m_session->getObjectPath()), changed);
}

void KeysBackend::closeSession() {
    const std::lock_guard lock(m_mutex);
    m_session->emitSignal("Closed").onInterface(sessionInterface);
}

} // namespace vantro::test

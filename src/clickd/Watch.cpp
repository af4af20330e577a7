#include "clickd/Watch.h"

#include "clicks/PressRecord.h"

#include <array>
#include <cstdio>
#include <exception>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace vantro::clickd {
namespace {

// A page, 256 records: minutes of clicking. A caller that takes none for longer has no use for
// them, and more would only keep what nobody wants.
constexpr int pipeSize = 4096; // bytes

} // namespace

Watch::Watch(sdbus::IConnection& bus, Caller caller, const clicks::PointerSettings& settings,
             Answer&& answer)
    : m_bus(bus)
    , m_caller(std::move(caller))
    , m_settings(settings)
    , m_answer(std::move(answer))
    , m_authority(bus)
    , m_callerGone(bus.addMatch("type='signal',sender='org.freedesktop.DBus',"
                                "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
                                "arg0='" +
                                    m_caller.name + "'",
                                [this](sdbus::Message&) { end(); })) {
    m_authority.ask(m_caller.name, [this](const std::string& whyNot) { decided(whyNot); });
}

void Watch::end() {
    m_state = State::over;
    m_devices.reset();
}

void Watch::decided(const std::string& whyNot) {
    if (isOver())
        return;
    if (whyNot.empty())
        m_session.emplace(m_bus, m_caller.user, [this] { sessionChanged(); });
    else
        refuse(whyNot);
}

void Watch::refuse(const std::string& why) {
    m_answer.returnError({clicks::service::notAllowed, why});
    end();
}

void Watch::sessionChanged() {
    const bool isNew = m_state == State::asking;
    if (!isOver())
        followSession();
    if (isNew && !isOver())
        handOut();
}

void Watch::handOut() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return refuse("there is no pipe left");
    m_pipe = base::FileDescriptor(ends[1]);
    fcntl(m_pipe.get(), F_SETPIPE_SZ, pipeSize);
    m_answer.returnResults(sdbus::UnixFd(ends[0], sdbus::adopt_fd));
}

/// Only whoever sees the screen learns what is pressed: a session that has lost it, or shows who
/// may unlock it, is told nothing.
void Watch::followSession() {
    if (!m_session)
        return;
    const auto wanted = m_session->isInUse() ? State::watching : State::silent;
    if (m_state == wanted)
        return;
    m_state = wanted;
    m_devices.reset();
    if (m_state == State::silent)
        return;
    try {
        m_devices.emplace(m_settings, m_session->seat());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        end();
    }
}

void Watch::takePresses() {
    if (!m_devices)
        return;
    for (const auto& press : m_devices->take())
        write(press);
}

void Watch::write(clicks::PressRecord press) {
    press.sequence = m_sequence++;
    press.flags = m_hasLost ? clicks::PressRecord::lost : 0;
    m_hasLost = ::write(m_pipe.get(), &press, sizeof press) != sizeof press;
}

} // namespace vantro::clickd

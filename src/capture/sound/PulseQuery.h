#pragma once

#include "capture/sound/SoundCatalog.h"
#include "pulse/Pulse.h"

#include <functional>

namespace vantro::capture::sound {

/// Why the last call on that connection has failed, for the user.
SoundRefusal refusalOf(const pa_context& context);

/// Asks a server what it offers. All on the thread of the connection's loop, by which it is called
/// back; it outlives the connection.
class PulseQuery {
  public:
    /// Nothing arrives while the connection is lost.
    using Answer = std::function<void(const SoundCatalog&)>;

    explicit PulseQuery(Answer answer) : m_answer(std::move(answer)) {}
    PulseQuery(const PulseQuery&) = delete;
    PulseQuery& operator=(const PulseQuery&) = delete;

    /// A question under way is followed by another one, as it may have been too early.
    void ask(pa_context& context);
    /// Asks now and whenever the server has news of its devices.
    void follow(pa_context& context);
    /// The connection is gone, and with it the answer.
    void forget() { m_isAsking = m_isAskedAgain = false; }

  private:
    void takeDefaults(pa_context& context, const pa_server_info* info);
    void takeSource(pa_context& context, const pa_source_info* info, int end);
    void finish(pa_context& context);

    Answer m_answer;
    bool m_isAsking = false;
    bool m_isAskedAgain = false;
    SoundCatalog m_catalog;
};

} // namespace vantro::capture::sound

#pragma once

#include "capture/GlobalKeys.h"

#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace vantro::ui {
class Preferences;
} // namespace vantro::ui

namespace vantro::window {

/// The desktop's way of giving keys to a program. Plain functions of the surroundings.
struct KeysService {
    std::function<std::unique_ptr<capture::GlobalKeys>(const std::vector<capture::GlobalKey>&,
                                                       capture::GlobalKeys::Listener)>
        bind;
    bool desktopChooses = false; ///< asks the user itself which keys they are
};

/// Keys that start, pause and stop recordings and mark zooms whatever program has the keyboard.
/// Bound only once the user has set them up, and from then on at each start. Main thread.
class KeysFromAnywhere : public QObject {
    Q_OBJECT

  public:
    using Act = std::function<void(capture::GlobalAction)>;

    /// Binds what was set up before. `act` is called on the main thread.
    KeysFromAnywhere(ui::Preferences& preferences, KeysService service, Act act);
    ~KeysFromAnywhere() override;

    bool desktopChooses() const { return m_service.desktopChooses; }
    /// Nothing while none are bound or asked for.
    const std::optional<capture::GlobalKeysState>& state() const { return m_state; }
    /// As they were set up last.
    std::vector<capture::GlobalKey> wished() const;
    /// Binds these from now on, once the desktop has given them.
    void setUp(const std::vector<capture::GlobalKey>& wished);
    /// Gives the keys back and forgets them.
    void turnOff();
    /// What the key for a mark is called now; empty where there is none.
    QString markKey() const;

  Q_SIGNALS:
    void changed();

  private:
    void take(capture::GlobalKeysState state);

    ui::Preferences& m_preferences;
    const KeysService m_service;
    const Act m_act;
    int m_request = 0; ///< news of earlier ones are dropped
    std::vector<capture::GlobalKey> m_wished;
    std::optional<capture::GlobalKeysState> m_state;
    std::unique_ptr<capture::GlobalKeys> m_keys;
};

} // namespace vantro::window

#pragma once

#include "window/platform/KeysFromAnywhere.h"

#include <QWidget>
#include <map>

class QKeySequenceEdit;
class QLabel;
class QPushButton;

namespace vantro::window {

/// Where keys from anywhere are set up, changed and turned off: on a desktop that chooses them a
/// button that leads to its dialog, else a field for each. A part of the settings. Main thread.
class KeysSheet : public QWidget {
    Q_OBJECT

  public:
    /// `keys` outlives this.
    explicit KeysSheet(KeysFromAnywhere& keys);

  private:
    void addRow(capture::GlobalAction action, const QString& name);
    void setUp();
    void tell(const std::optional<capture::GlobalKeysState>& state);

    struct Row {
        QKeySequenceEdit* field = nullptr; ///< null where the desktop chooses
        QLabel* bound = nullptr;           ///< null elsewhere
    };

    KeysFromAnywhere& m_keys;
    std::map<capture::GlobalAction, Row> m_rows;
    QLabel* m_status = nullptr;
    QPushButton* m_setUp = nullptr;
    QPushButton* m_turnOff = nullptr;
};

} // namespace vantro::window

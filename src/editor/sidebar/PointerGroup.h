#pragma once

#include "editor/sidebar/SettingsGroup.h"

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// How the pointer is drawn.
class PointerGroup : public SettingsGroup {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    /// 0.5 to 10; while the pointer is hidden what it had before.
    Q_PROPERTY(double scale READ scale WRITE setScale NOTIFY changed)
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY changed)

  public:
    PointerGroup(app::AppState& state, EditSteps& steps);

    double scale() const { return isShown() ? edit().cursorScale : m_scaleShown; }
    void setScale(double scale);
    bool isShown() const { return edit().cursorScale > 0; }
    void setShown(bool shown);

    Q_INVOKABLE void reset();

  private:
    double m_scaleShown = model::Edit().cursorScale; ///< to come back to
};

} // namespace vantro::editor::sidebar

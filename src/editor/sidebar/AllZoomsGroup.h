#pragma once

#include "editor/sidebar/SettingsGroup.h"
#include "timeline/ZoomRules.h"

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// All zooms at once. Shows the values of the first; each change is one of all.
class AllZoomsGroup : public SettingsGroup {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(int count READ count NOTIFY changed) ///< silenced ones are none
    Q_PROPERTY(double level READ level WRITE setLevel NOTIFY changed)
    Q_PROPERTY(double leadIn READ leadIn WRITE setLeadIn NOTIFY changed)    ///< seconds
    Q_PROPERTY(double leadOut READ leadOut WRITE setLeadOut NOTIFY changed) ///< seconds
    /// Whether the others differ from the first.
    Q_PROPERTY(bool mixed READ isMixed NOTIFY changed)

  public:
    AllZoomsGroup(app::AppState& state, EditSteps& steps);

    int count() const;
    double level() const { return first().zoomLevel; }
    void setLevel(double level);
    double leadIn() const { return first().startOffset; }
    void setLeadIn(double seconds);
    double leadOut() const { return first().endOffset; }
    void setLeadOut(double seconds);
    bool isMixed() const;

    Q_INVOKABLE void removeAll();
    Q_INVOKABLE void reset();

  private:
    model::ClickEvent first() const;
    void set(std::string name, const timeline::ZoomValues& values);
};

} // namespace vantro::editor::sidebar

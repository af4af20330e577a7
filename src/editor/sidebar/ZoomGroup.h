#pragma once

#include "editor/sidebar/SettingsGroup.h"
#include "timeline/ZoomRules.h"

#include <QString>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// The zoom that is selected.
class ZoomGroup : public SettingsGroup {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool present READ isPresent NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed) ///< "Zoom at 0:02.5"
    Q_PROPERTY(double level READ level WRITE setLevel NOTIFY changed)
    Q_PROPERTY(double leadIn READ leadIn WRITE setLeadIn NOTIFY changed)    ///< seconds
    Q_PROPERTY(double leadOut READ leadOut WRITE setLeadOut NOTIFY changed) ///< seconds
    /// Its center, in points of the recording, whose size is `width` × `height`.
    Q_PROPERTY(double x READ x WRITE setX NOTIFY changed)
    Q_PROPERTY(double y READ y WRITE setY NOTIFY changed)
    Q_PROPERTY(double width READ width NOTIFY changed)
    Q_PROPERTY(double height READ height NOTIFY changed)

  public:
    ZoomGroup(app::AppState& state, EditSteps& steps);

    bool isPresent() const { return selected() != nullptr; }
    QString title() const;
    double level() const { return shown().zoomLevel; }
    void setLevel(double level);
    double leadIn() const { return shown().startOffset; }
    void setLeadIn(double seconds);
    double leadOut() const { return shown().endOffset; }
    void setLeadOut(double seconds);
    double x() const { return shown().x; }
    void setX(double x);
    double y() const { return shown().y; }
    void setY(double y);
    double width() const;
    double height() const;

    /// With the silenced clicks that belong to it.
    Q_INVOKABLE void remove();
    /// As it was recorded, as far as the neighbors leave room.
    Q_INVOKABLE void reset();

  private:
    const model::ClickEvent* selected() const;
    /// Any, where nothing is selected.
    model::ClickEvent shown() const;
    void set(std::string name, const timeline::ZoomValues& values);
    void setCenter(model::Point center);
};

} // namespace vantro::editor::sidebar

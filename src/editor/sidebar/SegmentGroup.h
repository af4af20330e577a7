#pragma once

#include "editor/sidebar/SettingsGroup.h"

#include <QString>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// The segment that is selected.
class SegmentGroup : public SettingsGroup {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool present READ isPresent NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed) ///< "Segment 2 of 5"
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY changed)
    /// The film's only segment stays.
    Q_PROPERTY(bool removable READ isRemovable NOTIFY changed)

  public:
    SegmentGroup(app::AppState& state, EditSteps& steps);

    bool isPresent() const { return selected() != nullptr; }
    QString title() const;
    double speed() const;
    void setSpeed(double speed);
    bool isRemovable() const { return edit().segments.size() > 1; }

    Q_INVOKABLE void remove();
    Q_INVOKABLE void reset();

  private:
    const model::TimelineSegment* selected() const;
};

} // namespace vantro::editor::sidebar

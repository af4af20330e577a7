#pragma once

#include "editor/sidebar/SettingsGroup.h"

#include <QStringList>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// How the recording stands on the canvas, and the canvas's shape.
class FrameGroup : public SettingsGroup {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    /// Fraction of the canvas left free on each side, 0 to 0.45.
    Q_PROPERTY(double padding READ padding WRITE setPadding NOTIFY changed)
    /// Pixels of the canvas, 0 to 400.
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY changed)
    /// Index into canvasNames.
    Q_PROPERTY(int canvas READ canvas WRITE setCanvas NOTIFY changed)
    Q_PROPERTY(QStringList canvasNames READ canvasNames CONSTANT)

  public:
    FrameGroup(app::AppState& state, EditSteps& steps);

    double padding() const { return edit().background.padding; }
    void setPadding(double padding);
    double cornerRadius() const { return edit().background.cornerRadius; }
    void setCornerRadius(double radius);
    int canvas() const { return static_cast<int>(edit().canvasAspectRatio); }
    void setCanvas(int canvas);
    QStringList canvasNames() const;

    Q_INVOKABLE void reset();
    /// The look of this film, its background as well.
    Q_INVOKABLE void useForNewRecordings() { Q_EMIT lookChosen(model::lookOf(edit())); }

  Q_SIGNALS:
    /// New recordings are to look like this.
    void lookChosen(const vantro::model::Look& look);
};

} // namespace vantro::editor::sidebar

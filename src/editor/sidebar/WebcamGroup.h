#pragma once

#include "editor/sidebar/SettingsGroup.h"

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// The webcam's picture over the film.
class WebcamGroup : public SettingsGroup {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool present READ isPresent NOTIFY changed) ///< the recording has one
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY changed)
    Q_PROPERTY(bool mirrored READ isMirrored WRITE setMirrored NOTIFY changed)
    /// Top left, top right, bottom left, bottom right.
    Q_PROPERTY(int corner READ corner WRITE setCorner NOTIFY changed)
    /// Fraction of the canvas's width, 0.05 to 0.5.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY changed)

  public:
    WebcamGroup(app::AppState& state, EditSteps& steps);

    bool isPresent() const;
    bool isShown() const { return !edit().webcamHidden; }
    void setShown(bool shown);
    bool isMirrored() const { return edit().webcamMirrored; }
    void setMirrored(bool mirrored);
    int corner() const { return static_cast<int>(edit().webcamPosition); }
    void setCorner(int corner);
    double size() const { return edit().webcamSize; }
    void setSize(double size);

    Q_INVOKABLE void reset();
};

} // namespace vantro::editor::sidebar

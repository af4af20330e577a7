#pragma once

#include "editor/EditorPreview.h"
#include "editor/sidebar/EditSteps.h"
#include "render/scene/Scene.h"
#include "render/scene/SourceMotion.h"

#include <QPointF>

#include <QtQml/qqmlregistration.h>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::editor {

/// The center of the selected zoom, on the picture that the preview shows while it is paused.
///
/// Places are fractions of the picture's width and height; beyond 0 to 1 the camera looks
/// elsewhere. While the target is moved the picture follows it, so all places of one gesture are
/// taken on the picture that it began with. Main thread.
class ZoomTarget : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool shown READ isShown NOTIFY changed)
    Q_PROPERTY(QPointF place READ place NOTIFY changed)
    /// Where it is in the recording, in points: "640, 360".
    Q_PROPERTY(QString text READ text NOTIFY changed)

  public:
    ZoomTarget(app::AppState& state, EditorPreview& preview);

    bool isShown() const { return m_place.has_value(); }
    QPointF place() const { return m_place.value_or(QPointF()); }
    QString text() const;

    /// A gesture, which is one step.
    Q_INVOKABLE void begin();
    Q_INVOKABLE void moveTo(QPointF place);
    /// In points of the recording.
    Q_INVOKABLE void moveBy(double x, double y);
    Q_INVOKABLE void end();

  Q_SIGNALS:
    void changed();

  private:
    void follow();
    const model::ClickEvent* selected() const;
    /// Of the picture that is shown now; nothing where none is.
    std::optional<render::RecordingLayout> layoutNow();
    std::optional<QPointF> placeNow();
    void moveCenter(model::Point center);

    app::AppState& m_state;
    EditorPreview& m_preview;
    sidebar::EditSteps m_steps;
    std::optional<QPointF> m_place;
    QString m_text;
    std::optional<render::RecordingLayout> m_held; ///< while it is moved
    render::PixelSize m_canvas;                    ///< of the layout
    // The camera of these clicks.
    std::optional<render::SourceMotion> m_motion;
    std::optional<model::Recording> m_recording;
    model::SharedList<model::ClickEvent> m_clicks;
};

} // namespace vantro::editor

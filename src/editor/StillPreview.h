#pragma once

#include "app/flows/TaskRunner.h"
#include "model/Edit.h"
#include "model/Recording.h"

#include <QImage>
#include <QObject>
#include <functional>

namespace vantro::media {
class PixelBuffer;
} // namespace vantro::media

namespace vantro::editor {

/// A composed picture, bgra, and the film's length in seconds.
struct Still {
    double duration = 0;
    std::shared_ptr<const media::PixelBuffer> picture;
};
/// Draws a recording's film under an edit at a second of it, or as near to that as it goes. Called
/// on one worker thread at a time; throws std::exception.
using StillSource = std::function<Still(const model::Edit& edit, double seconds)>;
/// Gives what draws the stills of a recording, until it is destroyed. Takes no time.
using OpenStills = std::function<StillSource(const model::Recording& recording)>;

/// The composed picture of an edit at one position, drawn away from the main thread.
///
/// One picture is drawn at a time; positions asked for meanwhile give way to the latest. A picture
/// of an earlier edit is dropped. Main thread.
class StillPreview : public QObject {
    Q_OBJECT

  public:
    StillPreview(app::flows::TaskRunner& tasks, OpenStills open);

    /// A changed edit keeps the position; no recording clears the picture.
    void show(std::optional<model::Recording> recording, model::Edit edit = {});
    /// Seconds of output, clamped to its duration.
    void setPosition(double seconds);

    double position() const { return m_position; }
    double duration() const { return m_duration; }
    /// Null until the first picture is there.
    const QImage& picture() const { return m_picture; }
    /// Why there is no picture; empty when there is one or it is still being drawn.
    const QString& problem() const { return m_problem; }

  Q_SIGNALS:
    void positionChanged();
    void durationChanged();
    void pictureChanged();

  private:
    struct Drawn {
        Still still;
        std::string problem;
    };

    void draw();
    void drawn(int version, const Drawn& result);
    static Drawn work(const StillSource& stills, const model::Edit& edit, double position);

    app::flows::TaskRunner& m_tasks;
    OpenStills m_open;
    StillSource m_stills; ///< of m_recording
    std::optional<model::Recording> m_recording;
    model::Edit m_edit;
    int m_version = 0; ///< tells apart the edits that pictures are of
    double m_position = 0;
    double m_duration = 0;
    bool m_drawing = false;
    bool m_drawAgain = false;
    QImage m_picture;
    QString m_problem;
};

} // namespace vantro::editor

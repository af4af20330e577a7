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

/// What a preview is drawn with; called on one worker thread, throws std::exception.
struct PreviewSource {
    /// Seconds of output.
    std::function<double(const model::Recording&, const model::Edit&)> duration;
    /// The composed picture at an output second, bgra.
    std::function<std::shared_ptr<const media::PixelBuffer>(const model::Recording&,
                                                            const model::Edit&, double time)>
        picture;
};

/// The composed picture of an edit at one position, drawn away from the main thread.
///
/// One picture is drawn at a time; positions asked for meanwhile give way to the latest. A picture
/// of an earlier edit is dropped. Main thread.
class StillPreview : public QObject {
    Q_OBJECT

  public:
    StillPreview(app::flows::TaskRunner& tasks, PreviewSource source);

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
        double duration = 0;
        std::shared_ptr<const media::PixelBuffer> pixels;
        std::string problem;
    };

    void draw();
    void drawn(int version, const Drawn& result);
    static Drawn work(const PreviewSource& source, const model::Recording& recording,
                      const model::Edit& edit, double position);

    app::flows::TaskRunner& m_tasks;
    PreviewSource m_source;
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

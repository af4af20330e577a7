#pragma once

#include "app/flows/FilePanels.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"
#include "editor/EditorPreview.h"

namespace vantro::editor {

/// Takes single pictures of the film as an export would show them, in the canvas's full size: onto
/// the clipboard or into a file. They are drawn on the worker thread of `tasks`. Main thread.
class FrameExport : public QObject {
    Q_OBJECT

  public:
    FrameExport(app::AppState& state, app::flows::FilePanels& panels, app::flows::TaskRunner& tasks,
                OpenMovie openMovie);

    /// The picture at a second of the recording, under the edit of now.
    void copy(double sourceTime);
    /// Asks where to first.
    void save(double sourceTime);

  Q_SIGNALS:
    /// Done: what the user is told.
    void done(const QString& notice);

  private:
    using Pixels = std::shared_ptr<const media::PixelBuffer>;
    /// What becomes of the picture, on the worker, and then on the main thread.
    using Use = std::function<std::function<void()>(const Pixels&)>;

    void draw(double sourceTime, Use use);

    app::AppState& m_state;
    app::flows::FilePanels& m_panels;
    app::flows::TaskRunner& m_tasks;
    OpenMovie m_openMovie;
};

} // namespace vantro::editor

#include "editor/FrameExport.h"

#include "app/files/FileNames.h"
#include "app/flows/ErrorText.h"
#include "media/PictureFile.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPointer>
#include <algorithm>

namespace vantro::editor {

using app::flows::TaskRunner;

FrameExport::FrameExport(app::AppState& state, app::flows::FilePanels& panels, TaskRunner& tasks,
                         OpenMovie openMovie)
    : m_state(state), m_panels(panels), m_tasks(tasks), m_openMovie(std::move(openMovie)) {}

void FrameExport::draw(double sourceTime, Use use) {
    const auto& document = m_state.document();
    const auto& shown = document.recording();
    if (!shown)
        return;
    m_tasks.run([self = QPointer(this), openMovie = m_openMovie, recording = *shown,
                 edit = document.edit(), sourceTime,
                 use = std::move(use)]() -> TaskRunner::Continuation {
        try {
            const auto movie = openMovie(recording, edit);
            const double time = std::clamp(sourceTime, 0.0, movie->duration().seconds());
            return [self, finish = use(movie->still(time, movie->canvas(movie->videoSize())))] {
                if (self)
                    finish();
            };
        } catch (const std::exception& failure) {
            constexpr auto kind = model::VantroError::Kind::exportFailed;
            return [self, problem = app::flows::failureText(failure, kind)] {
                if (self)
                    self->m_state.setError(problem, kind);
            };
        }
    });
}

void FrameExport::copy(double sourceTime) {
    draw(sourceTime, [this](const Pixels& pixels) {
        const QImage whole(pixels->plane(0), pixels->width(), pixels->height(), pixels->stride(0),
                           QImage::Format_RGB32);
        return [this, image = whole.copy()] {
            QGuiApplication::clipboard()->setImage(image);
            Q_EMIT done(tr("Copied the frame"));
        };
    });
}

void FrameExport::save(double sourceTime) {
    m_panels.ask(app::flows::PanelKind::saveFrame,
                 app::files::safeFileName(m_state.recordingName()) + ".png",
                 [this, sourceTime](const auto& chosen) {
                     if (!chosen)
                         return;
                     draw(sourceTime, [this, path = chosen->path](const Pixels& pixels) {
                         media::writePng(path, *pixels);
                         return [this, path] {
                             Q_EMIT done(
                                 tr("Saved %1").arg(QString::fromStdString(path.filename())));
                         };
                     });
                 });
}

} // namespace vantro::editor

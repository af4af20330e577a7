#pragma once

#include "app/flows/TaskRunner.h"
#include "editor/PlayerTimeObserver.h"
#include "media/player/Player.h"
#include "media/proxy/ProxyMaker.h"
#include "render/MovieSession.h"
#include "ui/PictureStream.h"

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor {

/// Opens a recording's movie to be played as a whole. On a worker thread; throws std::exception.
using OpenMovie = std::function<std::unique_ptr<render::MovieSession>(
    const model::Recording& recording, const model::Edit& edit)>;
/// What a movie is heard through; null for silence.
using MakeSound =
    std::function<std::unique_ptr<media::player::PlayerSound>(const media::Composition&)>;

/// Plays one recording under its edit, and shows at once what changes of it.
///
/// The player plays the whole movie at its own times; the transport enforces the segments. Movies
/// are opened away from the main thread; those that are slow to search get a small copy while the
/// processor is idle, from which pictures are shown until the movie's own are found. Pictures are
/// composed at the smallest scale of the canvas that covers the stream's area, and fitted to it.
/// Main thread.
class EditorPreview : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(vantro::editor::PlayerTimeObserver* transport READ transport CONSTANT)
    Q_PROPERTY(vantro::ui::PictureStream* pictures READ pictures CONSTANT)
    Q_PROPERTY(bool ready READ isReady NOTIFY statusChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY statusChanged)
    Q_PROPERTY(bool hasSound READ hasSound NOTIFY statusChanged)
    /// What the picture takes of the screen, device pixels; it stands in the middle.
    Q_PROPERTY(QSize pictureSize READ pictureSize NOTIFY pictureSizeChanged)
    Q_PROPERTY(bool muted READ isMuted WRITE setMuted NOTIFY mutedChanged)

  public:
    /// `proxies` says where small copies of movies lie; by default there are none.
    EditorPreview(app::flows::TaskRunner& tasks, OpenMovie open, MakeSound makeSound,
                  media::proxy::ProxySettings proxies = {});
    ~EditorPreview() override;

    /// What is to be seen. Another edit keeps place and rate; so does a recording whose files were
    /// saved elsewhere. Another recording begins anew, and none ends the player.
    void show(std::optional<model::Recording> recording, model::Edit edit = {});

    /// Drives the player; without one it does nothing.
    PlayerTimeObserver* transport() { return &m_transport; }
    /// Shows its pictures.
    ui::PictureStream* pictures() { return &m_pictures; }
    /// Null while there is none. Tells what it did; it is driven through the transport.
    const media::player::Player* player() const { return m_player.get(); }

    /// There are pictures. Without a problem they are being waited for.
    bool isReady() const;
    /// Why there are none: one sentence; empty while nothing is wrong.
    QString problem() const;
    bool hasSound() const;
    QSize pictureSize() const { return m_pictureSize; }
    /// The recording's picture and the film's canvas, pixels; nothing while there is no player.
    struct Sizes {
        render::PixelSize recording;
        render::PixelSize canvas;
    };
    std::optional<Sizes> sizes() const;
    /// Never part of the edit.
    bool isMuted() const { return m_muted; }
    void setMuted(bool muted);

  Q_SIGNALS:
    void statusChanged();
    void mutedChanged();
    void pictureSizeChanged();

  private:
    struct Opened {
        std::shared_ptr<render::MovieSession> movie;
        std::string problem;
    };

    void discard();
    void open(const model::Recording& recording);
    void opened(const Opened& result);
    void startPlayer();
    void makeProxy();
    void followEdit();
    void followArea();
    /// How the player is to draw now; fails for canvases that cannot be drawn.
    media::VideoComposition video() const;
    QSize outputSize() const;
    void tellOutputSize();
    void fail(const std::exception& reason);

    app::flows::TaskRunner& m_tasks;
    OpenMovie m_open;
    MakeSound m_makeSound;
    media::proxy::ProxySettings m_proxies;
    std::optional<model::Recording> m_recording;
    model::Edit m_edit;
    int m_request = 0; ///< the newest movie to be opened; those of others are dropped
    std::string m_problem;
    bool m_muted = false;
    QSize m_pictureSize; ///< that the player was told last

    ui::PictureStream m_pictures; ///< outlives the player
    PlayerTimeObserver m_transport;
    std::shared_ptr<render::MovieSession> m_movie; ///< drawn by the player's thread
    media::VideoComposition m_video;               ///< the player's
    std::shared_ptr<media::player::Player> m_player;
    media::player::Observation m_status; ///< ends before the player
    /// Of the movie, and of those before it that have yet to end: waiting for their idle threads
    /// would stall the window.
    std::vector<std::unique_ptr<media::proxy::ProxyMaker>> m_proxyMakers;
};

} // namespace vantro::editor

#pragma once

#include "base/Guarded.h"
#include "media/player/Player.h"

#include <QObject>
#include <QSize>
#include <optional>

#include <QtQml/qqmlregistration.h>

namespace vantro::ui {

/// Is told what became of each picture of a stream. Called on the threads that deliver and draw,
/// with no lock held; must return at once.
class PictureWatcher {
  public:
    virtual ~PictureWatcher() = default;

    /// A newer one came before it was drawn.
    virtual void pictureReplaced(const media::player::PlayerPicture& picture) = 0;
    /// It was on the window at `at`.
    virtual void pictureShown(const media::player::PlayerPicture& picture, base::HostTime at) = 0;
};

/// A player's pictures on their way to the item that shows them. Holds one: a newer picture takes
/// the place of one that has not been drawn yet.
///
/// Main thread, save where a member says otherwise. Outlives what delivers to it.
class PictureStream : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

  public:
    using Picture = media::player::PlayerPicture;

    /// Before the first picture; outlives the deliveries.
    void setWatcher(PictureWatcher& watcher) { m_watcher = &watcher; }

    /// The pixels of the screen that a picture may cover; empty while nothing shows them.
    QSize area() const { return m_area; }
    void setArea(QSize pixels);

    /// Any thread.
    void deliver(Picture picture);
    /// Forgets the pictures of a movie that is no longer shown. Nothing may deliver meanwhile.
    void clear();

    /// The newest picture, which is about to be drawn. On the thread that draws.
    std::optional<Picture> draw();
    /// What was drawn last is on the window now. On the thread that draws.
    void shown();

  Q_SIGNALS:
    /// There is something else to draw.
    void changed();
    void areaChanged();

  private:
    struct Pictures {
        std::optional<Picture> newest;
        bool isWaiting = false;       ///< the newest, to be drawn
        std::optional<Picture> drawn; ///< but not on the window yet
        bool isAnnounced = false;     ///< `changed` is on its way
    };

    void announce();

    base::Guarded<Pictures> m_pictures;
    PictureWatcher* m_watcher = nullptr;
    QSize m_area;
};

} // namespace vantro::ui

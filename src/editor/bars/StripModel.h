#pragma once

#include "app/state/AppState.h"
#include "editor/bars/StripTiles.h"
#include "media/strips/StripMaker.h"
#include "media/strips/ThumbnailCache.h"
#include "media/strips/Waveform.h"

#include <QObject>
#include <memory>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// The pictures and the sound of the recording in the editor, as far as they are known. They are
/// made away from the main thread and kept within media::strips::mostBytes. Main thread.
class StripModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

  public:
    /// `yields`: has it made only while a processor is idle.
    explicit StripModel(app::AppState& state, bool yields = true);
    ~StripModel() override;

    bool hasPictures() const { return m_format.thumbnailWidth > 0; }
    bool hasSound() const { return m_format.hasSound; }
    /// Width by height, of a thumbnail.
    double aspect() const;

    /// What is seen now; has made what is missing of it. `from`: seconds, its beginning.
    void look(const StripTiles& tiles, double from);
    /// The tile's picture; until there is one, that of a time near by, or null.
    std::shared_ptr<const media::PixelBuffer> picture(const StripTile& tile);
    /// What all of it takes.
    std::size_t bytes() const { return m_thumbnails.bytes() + m_waveform.bytes(); }
    media::strips::Peak peak(double from, double to) const { return m_waveform.over(from, to); }

  Q_SIGNALS:
    /// There is more, or something else, to draw.
    void changed();

  private:
    void follow();
    void begin(const model::Recording& recording);
    void take(media::strips::StripNews news);

    app::AppState& m_state;
    const bool m_yields;
    std::optional<model::Recording> m_recording;
    int m_request = 0; ///< the newest recording; news of others are dropped
    media::strips::StripFormat m_format;
    media::strips::ThumbnailCache m_thumbnails;
    media::strips::Waveform m_waveform;
    std::vector<std::int64_t> m_seen; ///< the view that was told last
    std::int64_t m_tolerance = 0;
    double m_from = 0;
    /// Of the recording, the last; and of those before it that have yet to end: waiting for their
    /// idle threads would stall the window.
    std::vector<std::unique_ptr<media::strips::StripMaker>> m_makers;
};

} // namespace vantro::editor::bars

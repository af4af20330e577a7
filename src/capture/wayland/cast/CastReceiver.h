#pragma once

#include "capture/PointerSource.h"
#include "capture/wayland/cast/CastPicture.h"
#include "pipewire/VideoStream.h"

#include <optional>
#include <string>

namespace vantro::capture::wayland {

/// How places in a cast's picture become those in a recording.
struct PointerScale {
    int width = 0; ///< of the movie, pixels
    int height = 0;
    double pixelsPerPoint = 1;
};

/// Takes in what a cast sends: its picture, and beside that where the pointer is. On the thread of
/// its stream.
class CastReceiver final : public pipewire::VideoStreamListener {
  public:
    CastPicture& picture() { return m_picture; }
    /// A picture has come since this was last asked.
    bool takeNews();
    bool hasNews() const { return m_hasNews; }
    /// Since when a picture of the agreed format has been waited for; nothing once it has come.
    const std::optional<base::HostTime>& awaitedSince() const { return m_awaitedSince; }
    struct Failure {
        base::HostTime since;
        std::string reason; ///< for the user
    };
    const std::optional<Failure>& failure() const { return m_failure; }
    void fail(const std::string& reason);

    /// Whether places come from elsewhere, through `pointerAt`; the stream then tells none.
    void setPointerElsewhere() { m_isElsewhere = true; }
    /// A place in the whole upright picture.
    void pointerAt(model::Point place, base::HostTime time);
    void pointerLost();
    /// Places go to `output` from now on, at first the newest one; to nobody where it is null.
    void setPointerOutput(PointerOutput* output, PointerScale scale = {});

  private:
    void arrived(const pipewire::VideoBuffer& buffer) override;
    void formatChanged(const pipewire::VideoFormat& format) override;
    void stateChanged(pipewire::StreamState state, const std::string& error) override;

    void countWithoutPointer(base::HostTime now);
    void tellUnknown(const char* why);
    PointerSample sampleOf(model::Point upright, base::HostTime time) const;

    CastPicture m_picture;
    bool m_hasNews = false;
    std::optional<base::HostTime> m_awaitedSince = base::hostNow();
    bool m_hasBroken = false; // pictures that cannot be shown have come
    std::optional<Failure> m_failure;
    PointerOutput* m_output = nullptr;
    PointerScale m_scale;
    int m_firstWidth = 0; // of the recording's first picture
    int m_firstHeight = 0;
    bool m_isElsewhere = false;
    bool m_isLost = false;                 // and not returned
    std::optional<model::Point> m_pointer; // the newest place, in the upright picture
    // How long the pointer has been unknown to its output:
    base::HostTime m_followedSince;
    int m_picturesWithout = 0;
    bool m_isUnknownTold = false;
};

} // namespace vantro::capture::wayland

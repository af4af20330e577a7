#include "capture/wayland/cast/CastReceiver.h"

#include "base/Log.h"

#include <utility>

namespace vantro::capture::wayland {
namespace {

// A desktop that tells of the pointer does so with its first pictures. Later than this the user had
// better know; sooner a pointer that comes from another screen would be called missing.
constexpr int mostPicturesWithout = 60;
constexpr base::HostDuration longestWithout = std::chrono::seconds(2);

} // namespace

bool CastReceiver::takeNews() {
    return std::exchange(m_hasNews, false);
}

void CastReceiver::fail(const std::string& reason) {
    if (!m_failure)
        m_failure = Failure{base::hostNow(), reason};
}

void CastReceiver::formatChanged(const pipewire::VideoFormat&) {
    m_awaitedSince = base::hostNow();
}

void CastReceiver::stateChanged(pipewire::StreamState state, const std::string& error) {
    if (state == pipewire::StreamState::failed)
        fail(error.empty() ? "the desktop has stopped sending pictures"
                           : "the desktop has stopped sending pictures: " + error);
}

void CastReceiver::arrived(const pipewire::VideoBuffer& buffer) {
    if (!buffer.planes.empty()) {
        const bool isTaken = m_picture.take(buffer);
        m_hasNews |= isTaken;
        m_awaitedSince.reset();
        if (!isTaken && !std::exchange(m_hasBroken, true))
            base::logWarning("The desktop sends pictures that are not what it says");
    }
    if (m_isElsewhere || m_picture.isEmpty()) // else one cannot say where in the picture
        return;
    // By the time of arrival: the sender's is that of the screen's last picture, or none.
    if (buffer.cursor && buffer.cursor->id != 0)
        pointerAt(m_picture.uprightPlaceOf({static_cast<double>(buffer.cursor->x),
                                            static_cast<double>(buffer.cursor->y)}),
                  buffer.arrival);
    else if (m_output != nullptr)
        countWithoutPointer(buffer.arrival);
}

void CastReceiver::pointerAt(model::Point place, base::HostTime time) {
    m_pointer = place;
    if (m_output != nullptr)
        m_output->pointerAt(sampleOf(place, time));
}

void CastReceiver::pointerLost() {
    m_isLost = true;
    if (m_output != nullptr)
        tellUnknown("this desktop does not tell any more where it is");
}

void CastReceiver::countWithoutPointer(base::HostTime now) {
    if (m_pointer || m_isUnknownTold)
        return;
    ++m_picturesWithout;
    if (m_picturesWithout < mostPicturesWithout && now - m_followedSince < longestWithout)
        return;
    tellUnknown("this desktop does not tell where it is");
}

void CastReceiver::tellUnknown(const char* why) {
    m_isUnknownTold = true;
    m_output->pointerUnknown(why);
}

void CastReceiver::setPointerOutput(PointerOutput* output, PointerScale scale) {
    m_output = output;
    m_scale = scale;
    m_firstWidth = m_picture.view().width;
    m_firstHeight = m_picture.view().height;
    m_followedSince = base::hostNow();
    m_picturesWithout = 0;
    m_isUnknownTold = false;
    if (output != nullptr && m_pointer)
        output->pointerAt(sampleOf(*m_pointer, m_followedSince));
    if (output != nullptr && m_isLost)
        pointerLost();
}

/// A picture of another size than the recording's first is fitted into the movie; so are places in
/// it.
PointerSample CastReceiver::sampleOf(model::Point upright, base::HostTime time) const {
    const pictures::PictureView& picture = m_picture.view();
    model::Point place = m_picture.placeOf(upright);
    if (picture.width != m_firstWidth || picture.height != m_firstHeight) {
        const auto fit =
            pictures::fitting(picture.width, picture.height, m_scale.width, m_scale.height);
        place.x = fit.x + place.x * fit.width / picture.width;
        place.y = fit.y + place.y * fit.height / picture.height;
    }
    return {.time = time,
            .place = {place.x / m_scale.pixelsPerPoint, place.y / m_scale.pixelsPerPoint}};
}

} // namespace vantro::capture::wayland

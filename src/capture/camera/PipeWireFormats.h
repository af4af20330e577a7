#pragma once

#include "capture/camera/CameraFormat.h"
#include "pipewire/VideoBuffer.h"
#include "pipewire/VideoFormat.h"

#include <vector>

namespace vantro::capture::camera {

/// What we ask a camera for that offers this: the best of it, and behind that whatever else it may
/// be able to send.
std::vector<pipewire::FormatOffer> wantedFormats(const std::vector<pipewire::FormatOffer>& offered);

/// The picture in a buffer that has one.
media::RawPicture rawPicture(const pipewire::VideoBuffer& buffer);

} // namespace vantro::capture::camera

#pragma once

#include "capture/CapturePlatform.h"
#include "capture/wayland/portal/RestoreTokens.h"

#include <expected>
#include <memory>
#include <string>

namespace vantro::capture::wayland {

class ClickAccess;

/// Recording on a desktop whose screen-cast portal asks the user what to share. What has been
/// chosen is live from the answer on; the stream made for it takes it over. There need not be a
/// portal yet: abilities tell. Without `clicks` they are accessed as in all of this run. The error
/// is for the user.
std::expected<std::unique_ptr<CapturePlatform>, std::string>
connectPortal(RestoreTokens tokens = RestoreTokens::usual(),
              std::shared_ptr<ClickAccess> clicks = nullptr);

} // namespace vantro::capture::wayland

#pragma once

#include "capture/PointerSource.h"
#include "capture/ScreenStream.h"
#include "capture/ShareableContent.h"

#include <expected>
#include <memory>
#include <string>

namespace vantro::capture {

/// Everything that a recording needs from one desktop. Failures carry a text for the user. One
/// thread at a time; what it hands out is independent of it and of each other.
class CapturePlatform {
  public:
    virtual ~CapturePlatform() = default;

    virtual std::expected<ShareableContent, std::string> shareableContent() = 0;
    virtual std::expected<std::unique_ptr<ScreenStream>, std::string>
    makeScreenStream(const ContentFilter& filter,
                     const ScreenStreamConfiguration& configuration) = 0;
    virtual std::expected<std::shared_ptr<PointerSource>, std::string> makePointerSource() = 0;
};

} // namespace vantro::capture

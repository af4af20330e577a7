#pragma once

#include "capture/CameraSource.h"
#include "capture/PlatformAbilities.h"

#include <expected>
#include <memory>
#include <string>
#include <vector>

namespace vantro::capture {

/// A camera. A plain record.
struct CameraDevice {
    std::string name;        ///< tells it from others, also tomorrow
    std::string description; ///< for people
    bool isDefault = false;
    bool operator==(const CameraDevice&) const = default;
};

/// The cameras of a desktop. One thread at a time; what it hands out is independent of it. Each
/// call takes a moment, and at most a few seconds, unless the user has to be asked.
class CameraDevices {
  public:
    virtual ~CameraDevices() = default;

    /// What there is now, the default one first; the error is for the user.
    virtual std::expected<std::vector<CameraDevice>, std::string> list() = 0;
    /// `device`: a camera's name or description; empty for the default one. Returns as soon as it
    /// is known that there is such a camera; its pictures may come later.
    virtual std::expected<std::unique_ptr<CameraSource>, CameraRefusal>
    open(const std::string& device) = 0;
};

/// Whether any can be recorded.
Ability abilityOf(const std::expected<std::vector<CameraDevice>, std::string>& cameras);

} // namespace vantro::capture

#include "app/Desktop.h"

#include "capture/x11/X11CapturePlatform.h"
#include "model/VantroError.h"

namespace vantro {
namespace {

template <typename Value>
Value valueOrThrow(std::expected<Value, std::string> result) {
    if (!result)
        throw VantroError(VantroError::Kind::captureStartFailed, result.error());
    return *std::move(result);
}

} // namespace

std::unique_ptr<CapturePlatform> connectDesktop() {
    return valueOrThrow(connectX11());
}

ShareableContent shareableContent(CapturePlatform& platform) {
    return valueOrThrow(platform.shareableContent());
}

} // namespace vantro

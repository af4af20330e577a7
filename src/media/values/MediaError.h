#pragma once

#include <stdexcept>

namespace vantro::media {

/// A media file or codec that fails. The text says what, on which path, and why; a flow wraps it
/// into the VantroError of what the user started.
class MediaError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace vantro::media

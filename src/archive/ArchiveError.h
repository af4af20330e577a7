#pragma once

#include <stdexcept>

namespace vantro::archive {

/// What is wrong with an archive or cannot be done to it; the text names the file and is for the
/// user.
class ArchiveError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace vantro::archive

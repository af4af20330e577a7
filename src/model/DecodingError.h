#pragma once

#include <stdexcept>
#include <string>

namespace vantro::model {

/// A document that cannot be read. The text names the key by its path and says what is wrong with
/// it, for example: metadata.clickEvents[3].x: expected a number, found a string
class DecodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace vantro::model

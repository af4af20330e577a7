#pragma once

#include "model/VantroError.h"

#include <exception>
#include <string>

namespace vantro::app::flows {

/// The text of a failure for an error of `kind`. A failure that already is of that kind gives its
/// message alone, so that the kind's prefix stands only once.
std::string failureText(const std::exception& failure, model::VantroError::Kind kind);

} // namespace vantro::app::flows

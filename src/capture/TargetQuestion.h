#pragma once

#include "capture/RecordingTarget.h"
#include "model/VantroError.h"

#include <expected>
#include <functional>
#include <optional>

namespace vantro::capture {

/// Nothing where the user has thought better of it.
using TargetResult = std::expected<std::optional<RecordingTarget>, model::VantroError>;
using TargetAnswer = std::function<void(TargetResult)>;

/// A request that is being looked up, perhaps by asking the user. Destroying it takes it back: the
/// answer is not called after that. Not destroyed inside of the answer.
class TargetQuestion {
  public:
    virtual ~TargetQuestion() = default;
};

} // namespace vantro::capture

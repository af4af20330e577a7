#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace vantro::model {

/// The corner that the webcam picture stands in.
enum class WebcamPosition { topLeft, topRight, bottomLeft, bottomRight };

/// What a recording captures.
enum class CaptureMode { screen, window, area };

inline constexpr std::array allWebcamPositions{WebcamPosition::topLeft, WebcamPosition::topRight,
                                               WebcamPosition::bottomLeft,
                                               WebcamPosition::bottomRight};
inline constexpr std::array allCaptureModes{CaptureMode::screen, CaptureMode::window,
                                            CaptureMode::area};

/// The JSON and command-line form: the case's own name.
std::string_view rawValue(WebcamPosition position);
std::string_view rawValue(CaptureMode mode);
std::optional<CaptureMode> captureModeFrom(std::string_view rawValue);

} // namespace vantro::model

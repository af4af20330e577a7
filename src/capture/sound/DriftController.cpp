#include "capture/sound/DriftController.h"

#include <algorithm>

namespace vantro::capture::sound {
namespace {

constexpr double speed = 0.05; // per second
constexpr double proportional = 2 * speed;
constexpr double integral = speed * speed;
// Clocks of sound devices are off by less than 200 ppm; a virtual device's may be worse.
constexpr double largestDifference = 5e-4;
constexpr double largestStretch = 1e-3;

} // namespace

double DriftController::stretch(double error, double elapsed) {
    m_integral =
        std::clamp(m_integral + integral * error * elapsed, -largestDifference, largestDifference);
    return std::clamp(proportional * error + m_integral, -largestStretch, largestStretch);
}

} // namespace vantro::capture::sound

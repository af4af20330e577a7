#pragma once

namespace vantro::capture::sound {

/// Says how much to stretch what a device records, so that it keeps step with the host clock.
///
/// A proportional-integral controller on the error e, in seconds, by which the device's next sample
/// belongs later than where the output stands: stretch = Kp · e + Ki · ∫e dt, with Kp = 2w and
/// Ki = w² (critically damped: it does not overshoot). w = 0.05/s, so that an error is gone after
/// about a minute. Faster, the jitter of arrivals would be heard as a changing pitch; slower, a
/// clock that is off by 200 ppm would lead away by more than the 1.5 ms that it does at first. The
/// integral ends as the difference of the two clocks.
///
/// A value, not thread-safe.
class DriftController {
  public:
    /// `elapsed` seconds after the call before. Parts of one, within ±1e-3, which is a fiftieth of
    /// a semitone.
    double stretch(double error, double elapsed);

  private:
    double m_integral = 0; ///< parts of one: the difference of the clocks
};

} // namespace vantro::capture::sound

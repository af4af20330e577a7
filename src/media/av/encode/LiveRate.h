#pragma once

#include <cstddef>

namespace vantro::media::av {

/// Chooses the quantizer of each picture of a live recording: the finest, or a coarser one where
/// that would take more than the rate for longer than a moment.
///
/// Six quantizers more halve the bits of a picture, so bits at one quantizer tell those at another.
/// What the pictures of about the last second would have taken gives the quantizer that meets the
/// rate; what was spent above or below the rate until now moves it. Calm moments save up for busy
/// ones, but no more than two seconds' worth. A value; times in seconds.
class LiveRate {
  public:
    explicit LiveRate(double bitsPerSecond) : m_rate(bitsPerSecond) {}

    /// For the next picture, shown from `time` on; times ascend.
    int quantizer(double time);
    /// What that picture has become.
    void encoded(std::size_t bytes);

  private:
    double m_rate;
    double m_time = 0;     // of the newest picture
    double m_work = 0;     // bits of the last second's pictures at quantizer 0, older ones less
    double m_surplus = 0;  // bits spent above the rate, less than 0 when below
    double m_duration = 0; // seconds since the first picture
    int m_quantizer = 0;   // of the newest picture
    bool m_isFirst = true;
};

} // namespace vantro::media::av

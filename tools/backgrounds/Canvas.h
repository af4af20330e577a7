#pragma once

#include "backgrounds/Palette.h"
#include "base/WorkerPool.h"

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

namespace vantro::backgrounds {

/// The geometry of a picture. Its coordinates run from 0 at the top to 1 at the bottom and from 0
/// at the left to `aspect()` at the right.
struct Frame {
    int width = 0;
    int height = 0;
    float aspect() const { return static_cast<float>(width) / static_cast<float>(height); }
    /// The side of a pixel.
    float pixel() const { return 1 / static_cast<float>(height); }
    /// The middle of the pixel in `column` and `row`.
    Vec2 place(int column, int row) const {
        return {(static_cast<float>(column) + 0.5F) * pixel(),
                (static_cast<float>(row) + 0.5F) * pixel()};
    }
};

/// The light at a place of the picture. A pure function, called from many threads at once.
using Painter = std::function<Rgb(Vec2)>;

/// Rows of 8-bit sRGB pixels, without padding.
struct ByteImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// A picture in linear light. One thread uses it; the pool's threads help inside a call.
class Canvas {
  public:
    explicit Canvas(Frame frame);

    const Frame& frame() const { return m_frame; }
    Rgb at(int column, int row) const { return m_pixels[index(column, row)]; }

    /// The light at a place of the picture, blended from the pixels around it.
    Rgb sampled(Vec2 p) const;

    void paint(const Painter& painter, base::WorkerPool& pool);
    /// Lets light spill softly around bright places, as lenses do. `share` of the light takes
    /// part, and `radius` is how far it gets, in picture heights.
    void addBloom(float share, float radius, base::WorkerPool& pool);
    /// Darkens the corners by the share `vignette`.
    void addVignette(float vignette, base::WorkerPool& pool);
    /// Applies film's response to light.
    void develop(base::WorkerPool& pool);
    /// The same picture with each pixel the mean of those it covers. `frame` is no larger.
    Canvas reduced(Frame frame, base::WorkerPool& pool) const;
    /// The same picture with smooth curves through its pixels.
    Canvas enlarged(Frame frame, base::WorkerPool& pool) const;
    /// Rounds to 8 bits after adding noise, so that slow gradients do not break into bands.
    /// `grain` is the noise's standard deviation in code values, on top of the rounding's own.
    ByteImage toBytes(float grain, base::WorkerPool& pool) const;

  private:
    std::size_t index(int column, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_frame.width) +
               static_cast<std::size_t>(column);
    }
    void forEachRow(base::WorkerPool& pool, const std::function<void(int)>& work) const;
    void blur(int radius, base::WorkerPool& pool);
    Rgb interpolated(float column, float row) const;
    Rgb onCurve(int column, int row, const std::array<float, 4>& x,
                const std::array<float, 4>& y) const;

    Frame m_frame;
    std::vector<Rgb> m_pixels;
};

} // namespace vantro::backgrounds

#pragma once

#include "render/scene/Renderer.h"

#include <cstdint>

namespace vantro::test {

/// A picture like a screen's: soft gradients, hard-edged blocks and fine lines; `seed` varies it.
/// Planar ones hold the same kind of content, of the given color description.
std::shared_ptr<media::PixelBuffer> screenPicture(media::PixelFormat format, int width, int height,
                                                  std::uint32_t seed,
                                                  media::ColorDescription color = {});
/// Lines of small dark strokes on white, bgra: what a page of text is to a filter.
std::shared_ptr<media::PixelBuffer> textPicture(int width, int height);
/// Every pixel holds these samples: the channels of a bgra picture, the planes of a planar one.
std::shared_ptr<media::PixelBuffer> flatPicture(media::PixelFormat format, int width, int height,
                                                std::array<std::uint8_t, 4> samples,
                                                media::ColorDescription color = {});

/// The built-in arrow.
const render::CursorTextures& arrow();

/// A scene to draw, made up from a seed: the same seed gives the same scene. Every way to compose,
/// corner, format and kind of background comes up; sizes from one pixel on, odd and even.
struct GeneratedFrame {
    render::Scene scene;
    media::PixelFormat outputFormat = media::PixelFormat::bgra;
};
GeneratedFrame generateFrame(std::uint32_t seed);

/// Draws into memory that was gray before.
std::shared_ptr<media::PixelBuffer> drawn(render::Renderer& renderer, const render::Scene& scene,
                                          media::PixelFormat format = media::PixelFormat::bgra);
/// A bgra picture shrunk in exact arithmetic: each pixel is the average of what it covers.
std::shared_ptr<media::PixelBuffer> averaged(const media::PixelBuffer& picture,
                                             render::PixelSize size);
/// How far two pictures lie apart in a channel or sample, at most.
int largestDifference(const media::PixelBuffer& a, const media::PixelBuffer& b);
/// The same on average.
double meanDifference(const media::PixelBuffer& a, const media::PixelBuffer& b);

} // namespace vantro::test

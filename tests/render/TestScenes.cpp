#include "render/TestScenes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

namespace vantro::test {
namespace {

using media::PixelFormat;

class Dice {
  public:
    explicit Dice(std::uint32_t seed) : m_engine(seed) {}

    double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(m_engine()) / 4294967295.0);
    }
    bool chance(double share) { return between(0, 1) < share; }
    template <typename Value, std::size_t count>
    Value oneOf(const std::array<Value, count>& values) {
        return values[m_engine() % count];
    }
    std::uint32_t seed() { return static_cast<std::uint32_t>(m_engine()); }

  private:
    std::mt19937 m_engine;
};

render::PixelSize anySize(Dice& dice) {
    constexpr std::array sides{1, 2, 3, 17, 64, 101, 160, 255, 256, 333, 400};
    if (dice.chance(0.02))
        return {4000, 11};
    if (dice.chance(0.02))
        return {9, 3001};
    return {dice.oneOf(sides), dice.oneOf(sides)};
}

/// One channel of a screen's picture at a pixel: a gradient, broken up by blocks with a fine
/// pattern.
std::uint8_t sampleAt(int x, int y, std::uint32_t seed) {
    const auto block = static_cast<std::uint32_t>((x / 23) * 7 + (y / 17) * 13) + seed;
    if (((block * 2654435761U) >> 24U) % 3 == 0)
        return static_cast<std::uint8_t>((x + static_cast<int>(seed)) % 4 == 0 ? 20 : 235);
    const int gradient = (x * 2 + y + static_cast<int>(seed)) & 511;
    return static_cast<std::uint8_t>(gradient < 256 ? gradient : 511 - gradient);
}

/// A bgra picture with soft transparency, its color multiplied by alpha.
std::shared_ptr<media::PixelBuffer> translucentPicture(int width, int height, std::uint32_t seed) {
    auto picture = screenPicture(PixelFormat::bgra, width, height, seed);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel = picture->mutableRow(0, y) + std::ptrdiff_t{x} * 4;
            pixel[3] = static_cast<std::uint8_t>((x * 3 + y * 2) % 256);
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>(pixel[channel] * pixel[3] / 255);
        }
    return picture;
}

render::ImagePointer anyPicture(Dice& dice, int width, int height, double opaqueShare) {
    return dice.chance(opaqueShare) ? screenPicture(PixelFormat::bgra, width, height, dice.seed())
                                    : translucentPicture(width, height, dice.seed());
}

int bytesInRow(const media::PixelBuffer& picture, int plane) {
    if (picture.format() == PixelFormat::bgra)
        return picture.width() * 4;
    return plane == 0 ? picture.width() : (picture.width() + 1) / 2;
}

} // namespace

std::shared_ptr<media::PixelBuffer> screenPicture(PixelFormat format, int width, int height,
                                                  std::uint32_t seed,
                                                  media::ColorDescription color) {
    auto picture = media::PixelBuffer::allocate(format, width, height, color);
    const bool isColor = format == PixelFormat::bgra;
    for (int plane = 0; plane < picture->planeCount(); ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            for (int i = 0; i < bytesInRow(*picture, plane); ++i) {
                const auto channel = static_cast<std::uint32_t>(isColor ? i % 4 : plane);
                picture->mutableRow(plane, y)[i] =
                    channel == 3 ? 255 : sampleAt(isColor ? i / 4 : i, y, seed + channel * 31);
            }
    return picture;
}

std::shared_ptr<media::PixelBuffer> textPicture(int width, int height) {
    auto picture = flatPicture(PixelFormat::bgra, width, height, {255, 255, 255, 255});
    Dice dice(1);
    for (int line = height / 10; line + 10 < height; line += 18) {
        const int end = static_cast<int>(width * dice.between(0.5, 0.9));
        for (int x = width / 10; x < end;
             x += dice.chance(0.2) ? 14 : 7) // a letter, or a word's end
            for (int stroke = 0; stroke < 3; ++stroke) {
                const int at = static_cast<int>(dice.between(0, 5));
                const int length = static_cast<int>(dice.between(3, 10));
                const bool upright = dice.chance(0.5);
                const int gray = static_cast<int>(dice.between(40, 160));
                for (int i = 0; i < (upright ? length : 5); ++i)
                    std::memset(picture->mutableRow(0, line + (upright ? i : 2 * at)) +
                                    std::ptrdiff_t{x + (upright ? at : i)} * 4,
                                gray, 3);
            }
    }
    return picture;
}

std::shared_ptr<media::PixelBuffer> flatPicture(PixelFormat format, int width, int height,
                                                std::array<std::uint8_t, 4> samples,
                                                media::ColorDescription color) {
    auto picture = media::PixelBuffer::allocate(format, width, height, color);
    for (int plane = 0; plane < picture->planeCount(); ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            for (int i = 0; i < bytesInRow(*picture, plane); ++i)
                picture->mutableRow(plane, y)[i] =
                    samples[static_cast<std::size_t>(format == PixelFormat::bgra ? i % 4 : plane)];
    return picture;
}

const render::CursorTextures& arrow() {
    static const render::CursorTextures textures(
        render::standardCursor(render::CursorStyle::builtIn));
    return textures;
}

GeneratedFrame generateFrame(std::uint32_t seed) {
    Dice dice(seed);
    constexpr std::array formats{PixelFormat::bgra, PixelFormat::i420};
    constexpr std::array scales{1.0, 1.001, 1.0011, 1.25, 1.5, 2.0, 4.0};
    constexpr std::array webcams{render::PixelSize{128, 72}, render::PixelSize{72, 128},
                                 render::PixelSize{90, 90}};
    const render::PixelSize canvas = anySize(dice);
    const render::PixelSize source = dice.chance(0.3) ? canvas : anySize(dice);
    const media::ColorDescription standard{
        dice.chance(0.5) ? media::ColorMatrix::bt709 : media::ColorMatrix::bt601, dice.chance(0.3)};
    const std::array radii{0.0, 1.0, 12.5, 32.0, 0.3 * canvas.width, 2.0 * canvas.width};
    const model::BackgroundSettings background{
        .type = model::BackgroundColor{dice.between(0, 1), dice.between(0, 1), dice.between(0, 1)},
        .padding = dice.between(0, 0.4),
        .cornerRadius = dice.oneOf(radii)};

    render::SceneContent content;
    content.recording =
        screenPicture(dice.oneOf(formats), source.width, source.height, dice.seed(), standard);
    content.camera = {dice.oneOf(scales), dice.between(0, source.width),
                      dice.between(0, source.height)};
    content.background = dice.chance(0.65) ? &background : nullptr;
    if (dice.chance(0.3))
        content.backgroundPicture = anyPicture(dice, 97, 64, 0.5);
    if (dice.chance(0.7))
        content.pointer =
            render::PixelPoint{dice.between(0, source.width), dice.between(0, source.height)};
    content.cursorScale = dice.between(0.5, 4);
    content.cursor = &arrow();
    if (dice.chance(0.5)) {
        const auto size = dice.oneOf(webcams);
        content.webcam = anyPicture(dice, size.width, size.height, 0.8);
    }
    content.webcamPosition = dice.oneOf(model::allWebcamPositions);
    content.webcamSize = dice.between(0.1, 0.4);

    constexpr std::array outputScales{1.0, 1.0, 0.75, 0.5, 1.0 / 3};
    content.scale = dice.oneOf(outputScales);

    GeneratedFrame frame{render::makeScene(canvas, content), dice.oneOf(formats)};
    // A planar source that ends up pixel for pixel in a planar output may be copied there, with
    // colors that RGB, which the GPU goes through, has no room for.
    if (!frame.scene.background && source == canvas &&
        content.recording->format() == PixelFormat::i420)
        frame.outputFormat = PixelFormat::bgra;
    return frame;
}

std::shared_ptr<media::PixelBuffer> drawn(render::Renderer& renderer, const render::Scene& scene,
                                          PixelFormat format) {
    auto output = flatPicture(format, scene.canvas.width, scene.canvas.height, {77, 77, 77, 77});
    EXPECT_TRUE(renderer.render(scene, *output));
    return output;
}

std::shared_ptr<media::PixelBuffer> averaged(const media::PixelBuffer& picture,
                                             render::PixelSize size) {
    auto out = media::PixelBuffer::allocate(PixelFormat::bgra, size.width, size.height);
    const double across = static_cast<double>(picture.width()) / size.width;
    const double down = static_cast<double>(picture.height()) / size.height;
    const auto share = [](int texel, int pixel, double step) {
        return (std::min(texel + 1.0, (pixel + 1) * step) - std::max(1.0 * texel, pixel * step)) /
               step;
    };
    for (int i = 0; i < size.width * size.height * 4; ++i) {
        const int x = i / 4 % size.width;
        const int y = i / 4 / size.width;
        double sum = 0;
        for (int v = static_cast<int>(y * down);
             v < std::min((y + 1) * down, 1.0 * picture.height()); ++v)
            for (int u = static_cast<int>(x * across);
                 u < std::min((x + 1) * across, 1.0 * picture.width()); ++u)
                sum += std::max(share(u, x, across), 0.0) * std::max(share(v, y, down), 0.0) *
                       picture.row(0, v)[u * 4 + i % 4];
        out->mutableRow(0, y)[x * 4 + i % 4] = static_cast<std::uint8_t>(std::lround(sum));
    }
    return out;
}

namespace {

/// Calls `compare(difference)` for every sample.
template <typename Function>
void forEachDifference(const media::PixelBuffer& a, const media::PixelBuffer& b,
                       const Function& compare) {
    for (int plane = 0; plane < a.planeCount(); ++plane)
        for (int y = 0; y < a.planeHeight(plane); ++y)
            for (int i = 0; i < bytesInRow(a, plane); ++i)
                compare(std::abs(a.row(plane, y)[i] - b.row(plane, y)[i]));
}

} // namespace

int largestDifference(const media::PixelBuffer& a, const media::PixelBuffer& b) {
    int largest = 0;
    forEachDifference(a, b, [&](int difference) { largest = std::max(largest, difference); });
    return largest;
}

double meanDifference(const media::PixelBuffer& a, const media::PixelBuffer& b) {
    double sum = 0;
    double count = 0;
    forEachDifference(a, b, [&](int difference) {
        sum += difference;
        ++count;
    });
    return sum / count;
}

} // namespace vantro::test

#include "backgrounds/Canvas.h"

#include "backgrounds/Noise.h"
#include "base/Fatal.h"

#include <algorithm>
#include <array>

namespace vantro::backgrounds {
namespace {

/// sRGB code values by the square root of the light, which spreads the shadows out enough for
/// straight lines between the entries.
class Encoder {
  public:
    Encoder() {
        for (std::size_t i = 0; i < m_table.size(); ++i)
            m_table[i] = 255 * encoded(square(static_cast<float>(i) / (size - 1)));
    }
    float operator()(float linear) const {
        const float position = std::sqrt(saturate(linear)) * (size - 1.001F);
        const auto index = static_cast<std::size_t>(position);
        return mix(m_table[index], m_table[index + 1], position - static_cast<float>(index));
    }

  private:
    static constexpr int size = 8192;
    std::array<float, size> m_table{};
};

/// Noise to add before rounding, in code values: a tile that repeats, too faint for the eye to
/// find it again.
class DitherTile {
  public:
    explicit DitherTile(float grain) : m_noise(static_cast<std::size_t>(size) * size) {
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                Dice dice(hashOf(x, y, 0x6a41U));
                const float shared = dice.bell() * grain;
                m_noise[indexOf(x, y)] = {shared + triangle(x, y, 1), shared + triangle(x, y, 2),
                                          shared + triangle(x, y, 3)};
            }
        }
    }
    const Vec3& at(int x, int y) const { return m_noise[indexOf(x, y)]; }

  private:
    static constexpr int size = 512;
    static std::size_t indexOf(int x, int y) {
        return static_cast<std::size_t>(y % size) * size + static_cast<std::size_t>(x % size);
    }
    /// Triangular over two code values; neighbors in a row differ, since the eye sees fine noise
    /// least.
    static float triangle(int x, int y, std::uint32_t channel) {
        return unitOf(hashOf(x, y, channel)) - unitOf(hashOf((x + 1) % size, y, channel));
    }
    std::vector<Vec3> m_noise;
};

std::uint8_t rounded(float value) {
    return static_cast<std::uint8_t>(clamp(value + 0.5F, 0, 255));
}

/// Box blur of `count` pixels that lie `stride` apart, ends repeated.
void blurLine(Rgb* line, std::size_t stride, int count, int radius, std::vector<Rgb>& scratch) {
    scratch.resize(static_cast<std::size_t>(count));
    const auto at = [&](int i) {
        return line[static_cast<std::size_t>(std::clamp(i, 0, count - 1)) * stride];
    };
    Rgb sum{};
    for (int i = -radius; i <= radius; ++i)
        sum = sum + at(i);
    const float share = 1 / static_cast<float>(2 * radius + 1);
    for (int i = 0; i < count; ++i) {
        scratch[static_cast<std::size_t>(i)] = sum * share;
        sum = sum + at(i + radius + 1) - at(i - radius);
    }
    for (int i = 0; i < count; ++i)
        line[static_cast<std::size_t>(i) * stride] = scratch[static_cast<std::size_t>(i)];
}

/// Weights of four neighbors for a place `t` after the second: a cubic through the points, with
/// slopes from the neighbors.
std::array<float, 4> splineWeights(float t) {
    return {t * (t * (1 - 0.5F * t) - 0.5F), 1 + t * t * (1.5F * t - 2.5F),
            t * (0.5F + t * (2 - 1.5F * t)), t * t * (0.5F * t - 0.5F)};
}

} // namespace

Canvas::Canvas(Frame frame)
    : m_frame(frame)
    , m_pixels(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height)) {
    base::require(frame.width > 0 && frame.height > 0, "a canvas needs pixels");
}

void Canvas::forEachRow(base::WorkerPool& pool, const std::function<void(int)>& work) const {
    pool.forEach(static_cast<std::size_t>(m_frame.height),
                 [&work](std::size_t row, unsigned) { work(static_cast<int>(row)); });
}

void Canvas::paint(const Painter& painter, base::WorkerPool& pool) {
    forEachRow(pool, [&](int row) {
        for (int column = 0; column < m_frame.width; ++column)
            m_pixels[index(column, row)] = painter(m_frame.place(column, row));
    });
}

void Canvas::blur(int radius, base::WorkerPool& pool) {
    const auto width = static_cast<std::size_t>(m_frame.width);
    const auto height = static_cast<std::size_t>(m_frame.height);
    // Three boxes are close to a bell.
    for (int round = 0; round < 3; ++round) {
        pool.forEach(height, [&](std::size_t row, unsigned) {
            std::vector<Rgb> scratch;
            blurLine(&m_pixels[row * width], 1, m_frame.width, radius, scratch);
        });
        pool.forEach(width, [&](std::size_t column, unsigned) {
            std::vector<Rgb> scratch;
            blurLine(&m_pixels[column], width, m_frame.height, radius, scratch);
        });
    }
}

Rgb Canvas::interpolated(float column, float row) const {
    column = clamp(column, 0, static_cast<float>(m_frame.width - 1));
    row = clamp(row, 0, static_cast<float>(m_frame.height - 1));
    const int x = static_cast<int>(column);
    const int y = static_cast<int>(row);
    const int right = std::min(x + 1, m_frame.width - 1);
    const int below = std::min(y + 1, m_frame.height - 1);
    const float fx = column - static_cast<float>(x);
    return mix(mix(at(x, y), at(right, y), fx), mix(at(x, below), at(right, below), fx),
               row - static_cast<float>(y));
}

Rgb Canvas::sampled(Vec2 p) const {
    const auto height = static_cast<float>(m_frame.height);
    return interpolated(p.x * height - 0.5F, p.y * height - 0.5F);
}

void Canvas::addBloom(float share, float radius, base::WorkerPool& pool) {
    // The glow is soft: an eighth of the resolution holds it.
    const int factor = std::clamp(m_frame.height / 135, 1, 8);
    Canvas glow =
        reduced({std::max(1, m_frame.width / factor), std::max(1, m_frame.height / factor)}, pool);
    const float pixels = radius * static_cast<float>(glow.m_frame.height);
    glow.blur(std::max(1, static_cast<int>(pixels / 3 + 0.5F)), pool);
    const float scaleX = static_cast<float>(glow.m_frame.width) / static_cast<float>(m_frame.width);
    const float scaleY =
        static_cast<float>(glow.m_frame.height) / static_cast<float>(m_frame.height);
    forEachRow(pool, [&](int row) {
        for (int column = 0; column < m_frame.width; ++column) {
            auto& pixel = m_pixels[index(column, row)];
            const Rgb light = glow.interpolated((static_cast<float>(column) + 0.5F) * scaleX - 0.5F,
                                                (static_cast<float>(row) + 0.5F) * scaleY - 0.5F);
            pixel = mix(pixel, light, share);
        }
    });
}

void Canvas::addVignette(float vignette, base::WorkerPool& pool) {
    const Vec2 middle{m_frame.aspect() / 2, 0.5F};
    const float corner = dot(middle, middle);
    forEachRow(pool, [&](int row) {
        for (int column = 0; column < m_frame.width; ++column) {
            const Vec2 away = m_frame.place(column, row) - middle;
            const float share = dot(away, away) / corner;
            auto& pixel = m_pixels[index(column, row)];
            pixel = pixel * (1 - vignette * square(share));
        }
    });
}

void Canvas::develop(base::WorkerPool& pool) {
    forEachRow(pool, [&](int row) {
        for (int column = 0; column < m_frame.width; ++column) {
            auto& pixel = m_pixels[index(column, row)];
            pixel = developed(pixel);
        }
    });
}

Canvas Canvas::reduced(Frame frame, base::WorkerPool& pool) const {
    base::require(frame.width <= m_frame.width && frame.height <= m_frame.height,
                  "reducing cannot enlarge");
    Canvas result(frame);
    // Integer bounds: each pixel takes the whole pixels that begin inside it.
    result.forEachRow(pool, [&](int row) {
        const int top =
            static_cast<int>(static_cast<std::int64_t>(row) * m_frame.height / frame.height);
        const int bottom =
            static_cast<int>(static_cast<std::int64_t>(row + 1) * m_frame.height / frame.height);
        for (int column = 0; column < frame.width; ++column) {
            const int left =
                static_cast<int>(static_cast<std::int64_t>(column) * m_frame.width / frame.width);
            const int right = static_cast<int>(static_cast<std::int64_t>(column + 1) *
                                               m_frame.width / frame.width);
            Rgb sum{};
            for (int y = top; y < bottom; ++y)
                for (int x = left; x < right; ++x)
                    sum = sum + at(x, y);
            result.m_pixels[result.index(column, row)] =
                sum * (1 / static_cast<float>((bottom - top) * (right - left)));
        }
    });
    return result;
}

/// The sum of the four by four pixels from `column`, `row` on, weighted along both axes.
Rgb Canvas::onCurve(int column, int row, const std::array<float, 4>& x,
                    const std::array<float, 4>& y) const {
    Rgb sum{};
    for (int j = 0; j < 4; ++j) {
        const int line = std::clamp(row + j, 0, m_frame.height - 1);
        Rgb lineSum{};
        for (int i = 0; i < 4; ++i)
            lineSum = lineSum + at(std::clamp(column + i, 0, m_frame.width - 1), line) *
                                    x[static_cast<std::size_t>(i)];
        sum = sum + lineSum * y[static_cast<std::size_t>(j)];
    }
    return {std::max(0.F, sum.x), std::max(0.F, sum.y), std::max(0.F, sum.z)};
}

Canvas Canvas::enlarged(Frame frame, base::WorkerPool& pool) const {
    Canvas result(frame);
    const float scaleX = static_cast<float>(m_frame.width) / static_cast<float>(frame.width);
    const float scaleY = static_cast<float>(m_frame.height) / static_cast<float>(frame.height);
    result.forEachRow(pool, [&](int row) {
        const float y = (static_cast<float>(row) + 0.5F) * scaleY - 0.5F;
        const float firstY = floorOf(y);
        const auto weightsY = splineWeights(y - firstY);
        for (int column = 0; column < frame.width; ++column) {
            const float x = (static_cast<float>(column) + 0.5F) * scaleX - 0.5F;
            const float firstX = floorOf(x);
            result.m_pixels[result.index(column, row)] =
                onCurve(static_cast<int>(firstX) - 1, static_cast<int>(firstY) - 1,
                        splineWeights(x - firstX), weightsY);
        }
    });
    return result;
}

ByteImage Canvas::toBytes(float grain, base::WorkerPool& pool) const {
    static const Encoder encode;
    ByteImage image{.width = m_frame.width, .height = m_frame.height, .pixels = {}};
    image.pixels.resize(m_pixels.size() * 3);
    const DitherTile dither(grain);
    forEachRow(pool, [&](int row) {
        auto* out = &image.pixels[index(0, row) * 3];
        for (int column = 0; column < m_frame.width; ++column, out += 3) {
            const Rgb rgb = at(column, row);
            const Vec3& noise = dither.at(column, row);
            out[0] = rounded(encode(rgb.x) + noise.x);
            out[1] = rounded(encode(rgb.y) + noise.y);
            out[2] = rounded(encode(rgb.z) + noise.z);
        }
    });
    return image;
}

} // namespace vantro::backgrounds

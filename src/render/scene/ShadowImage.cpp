#include "render/scene/ShadowImage.h"

#include "base/Fatal.h"
#include "render/scene/PixelSpan.h"
#include "render/scene/RoundedRect.h"

#include <array>
#include <cmath>
#include <numbers>

namespace vantro::render {
namespace {

constexpr double offsetDown = 10; // pixels
constexpr double deviation = 15;  // pixels: half the blur radius of 30
constexpr float strength = 0.5F;
constexpr double reach = 60; // pixels; beyond 4 deviations less than a hundredth of a level is left

/// The share of a Gaussian that lies before a distance in pixels.
double gaussianBefore(double distance) {
    return 0.5 * std::erfc(-distance / (deviation * std::numbers::sqrt2));
}

/// gaussianBefore from a table, exact to 1e-6: it is asked for millions of times. Distances are
/// those of a canvas at `scale`.
class GaussianTable {
  public:
    explicit GaussianTable(double scale) : m_unscaling(static_cast<float>(1 / scale)) {
        for (std::size_t i = 0; i < m_values.size(); ++i)
            m_values[i] =
                static_cast<float>(gaussianBefore(static_cast<double>(i) / perPixel - limit));
    }
    float operator()(float distance) const {
        const float place =
            std::clamp((distance * m_unscaling + limit) * perPixel, 0.0F, 2.0F * limit * perPixel);
        const auto index = std::min(static_cast<std::size_t>(place), m_values.size() - 2);
        const float share = place - static_cast<float>(index);
        return m_values[index] + (m_values[index + 1] - m_values[index]) * share;
    }

  private:
    static constexpr int perPixel = 8;
    static constexpr int limit = 80;
    float m_unscaling;
    std::array<float, 2 * limit * perPixel + 1> m_values{};
};

/// The blurred plain rectangle is a product of two profiles; what the rounded corners lack of it is
/// summed up from the rows that they curve in. Both parts are exact up to the table.
class BlurredRoundedRect {
  public:
    BlurredRoundedRect(const RoundedRect& rect, int width, int height, double scale)
        : m_rect(rect)
        , m_scale(scale)
        , m_reach(static_cast<int>(std::ceil(reach * scale)))
        , m_width(width)
        , m_height(height)
        , m_across(profile(rect.left(), rect.right(), width))
        , m_down(profile(rect.top(), rect.bottom(), height))
        , m_gaussian(scale) {
        for (int k = 0; k <= m_reach; ++k)
            m_kernel.push_back(static_cast<float>(before(k + 0.5) - before(k - 0.5)));
        chooseZones();
        addCurvedRows(rect.top(), rect.top() + rect.radius());
        addCurvedRows(rect.bottom() - rect.radius(), rect.bottom());
    }

    /// The blurred coverage, 0 to 1, of a canvas row.
    void row(int y, std::vector<float>& out) const {
        const float vertical = m_down[static_cast<std::size_t>(y)];
        for (std::size_t x = 0; x < out.size(); ++x)
            out[x] = vertical * m_across[x];
        for (const CurvedRow& curved : m_curved) {
            const int distance = std::abs(curved.y - y);
            if (distance > m_reach)
                continue;
            const float weight = m_kernel[static_cast<std::size_t>(distance)] * curved.share;
            const float* lacking = curved.lacking.data();
            for (const PixelSpan zone : m_zones) {
                float* target = out.data() + zone.begin;
                for (int i = 0; i < zone.length(); ++i)
                    target[i] -= weight * lacking[i];
                lacking += zone.length();
            }
        }
    }

  private:
    /// A pixel row that a corner curves in.
    struct CurvedRow {
        int y = 0;
        float share = 0;            ///< of the row's height that lies in the curve
        std::vector<float> lacking; ///< what it lacks of the plain rectangle, zone after zone
    };

    /// gaussianBefore on this canvas.
    double before(double distance) const { return gaussianBefore(distance / m_scale); }

    std::vector<float> profile(double from, double to, int length) const {
        std::vector<float> values(static_cast<std::size_t>(length));
        for (int i = 0; i < length; ++i)
            values[static_cast<std::size_t>(i)] =
                static_cast<float>(before(i + 0.5 - from) - before(i + 0.5 - to));
        return values;
    }

    /// The columns that a corner can tell on.
    void chooseZones() {
        const double wide = m_rect.radius() + m_reach;
        const PixelSpan canvas{0, m_width};
        const auto zone = [&](double from, double to) {
            return PixelSpan{clampedIndex(std::floor(from), canvas.begin, canvas.end),
                             clampedIndex(std::ceil(to), canvas.begin, canvas.end)};
        };
        m_zones = {zone(m_rect.left() - m_reach, m_rect.left() + wide),
                   zone(m_rect.right() - wide, m_rect.right() + m_reach)};
        if (m_zones[1].begin < m_zones[0].end)
            m_zones = {m_zones[0].joinedWith(m_zones[1]), PixelSpan{}};
    }

    void addCurvedRows(double from, double to) {
        if (m_rect.radius() <= 0)
            return;
        const int first = clampedIndex(std::floor(from), -m_reach, m_height + m_reach);
        const int last = clampedIndex(std::ceil(to), -m_reach, m_height + m_reach);
        for (int y = first; y < last; ++y) {
            const double begin = std::max<double>(from, y);
            const double end = std::min<double>(to, y + 1);
            if (end > begin)
                m_curved.push_back(curvedRow(y, begin, end));
        }
    }

    CurvedRow curvedRow(int y, double begin, double end) const {
        const double middle = (begin + end) / 2;
        const double radius = m_rect.radius();
        const double above =
            std::max(m_rect.top() + radius - middle, middle - m_rect.bottom() + radius);
        const double drawnIn = radius - std::sqrt(std::max(0.0, radius * radius - above * above));
        const auto left = static_cast<float>(m_rect.left() + drawnIn - 0.5);
        const auto right = static_cast<float>(m_rect.right() - drawnIn - 0.5);
        CurvedRow curved{y, static_cast<float>(end - begin), {}};
        for (const PixelSpan zone : m_zones)
            for (int x = zone.begin; x < zone.end; ++x)
                curved.lacking.push_back(m_across[static_cast<std::size_t>(x)] -
                                         m_gaussian(static_cast<float>(x) - left) +
                                         m_gaussian(static_cast<float>(x) - right));
        return curved;
    }

    RoundedRect m_rect;
    double m_scale;
    int m_reach; // pixels
    int m_width;
    int m_height;
    std::vector<float> m_across;
    std::vector<float> m_down;
    GaussianTable m_gaussian;
    std::vector<float> m_kernel;
    std::array<PixelSpan, 2> m_zones;
    std::vector<CurvedRow> m_curved;
};

} // namespace

std::shared_ptr<const AlphaImage> drawShadow(const ShadowShape& shape) {
    const auto [width, height] = shape.canvas;
    base::require(width >= 1 && height >= 1, "shadow without a canvas");
    auto image = std::make_shared<AlphaImage>();
    image->width = width;
    image->height = height;
    image->alpha.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    if (shape.place.isEmpty())
        return image;
    PixelRect lowered = shape.place;
    lowered.y += offsetDown * shape.scale;
    const BlurredRoundedRect blurred(RoundedRect(lowered, shape.cornerRadius), width, height,
                                     shape.scale);
    std::vector<float> blurredRow(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        blurred.row(y, blurredRow);
        std::uint16_t* out = image->alpha.data() + static_cast<std::ptrdiff_t>(y) * width;
        // Never negative, so adding a half rounds rightly, and without a call for each pixel.
        for (std::size_t x = 0; x < blurredRow.size(); ++x)
            out[x] = static_cast<std::uint16_t>( // NOLINT(bugprone-incorrect-roundings)
                std::clamp(blurredRow[x] * strength, 0.0F, strength) * 65536.0F + 0.5F);
    }
    return image;
}

const std::shared_ptr<const AlphaImage>& ShadowCache::imageFor(const ShadowShape& shape) {
    if (!m_image || !(shape == m_shape)) {
        m_image = drawShadow(shape);
        m_shape = shape;
    }
    return m_image;
}

} // namespace vantro::render

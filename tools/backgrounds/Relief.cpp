#include "backgrounds/Relief.h"

#include <algorithm>
#include <span>

namespace vantro::backgrounds {
namespace {

// Pixels to a cell of the grid, before its margin: coarse enough to be cheap, fine enough for the
// edges of shadows.
constexpr float pixelsPerCell = 2.2F;
constexpr int leastCells = 64;
// How much wider than the picture the grid is: ground outside it casts shadows into it.
constexpr float gridMargin = 1.5F;

} // namespace

/// One column of the picture while it fills from the bottom up, nearest ground first.
class Relief::Column {
  public:
    explicit Column(std::span<Hit> hits)
        : m_hits(hits), m_top(static_cast<float>(hits.size())), m_previousRow(m_top) {}

    /// The highest point filled so far, as a row.
    float top() const { return m_top; }
    /// Whether the ground was in sight so far and falls out of it towards `row`.
    bool endsInCrest(float row) const {
        return m_visible > 0 && m_previousRow <= m_top && row > m_top;
    }

    /// Sights are added with ascending distances; what comes after the column is full is ignored.
    void add(Sight sight) {
        const auto [row, distance] = sight;
        if (row < m_top && m_top > 0) {
            if (m_previousRow > m_top)
                markOutline(distance);
            fill(row, distance);
            m_top = row;
            m_visible = distance;
        }
        m_previousRow = row;
        m_previous = distance;
    }

    /// Notes that the pixel at the top also shows what is seen `behind` it.
    void markOutline(float behind) {
        if (m_top <= 0 || m_visible <= 0)
            return;
        const auto row = static_cast<std::size_t>(m_top);
        const float share = m_top - static_cast<float>(row);
        const bool ownsMiddle = share <= 0.5F;
        m_hits[row].other = ownsMiddle ? behind : m_visible;
        m_hits[row].otherShare = ownsMiddle ? share : 1 - share;
    }

  private:
    void fill(float row, float distance) {
        const auto first = static_cast<std::size_t>(std::max(0.F, row + 0.5F));
        const auto end = std::min(m_hits.size(), static_cast<std::size_t>(m_top + 0.5F));
        const float span = m_previousRow - row;
        for (auto r = first; r < end; ++r) {
            const float middle = static_cast<float>(r) + 0.5F;
            const float t = span > 1e-6F ? saturate((m_previousRow - middle) / span) : 1;
            m_hits[r].distance = m_previous > 0 ? mix(m_previous, distance, t) : distance;
        }
    }

    std::span<Hit> m_hits;
    float m_top;
    float m_previousRow;  // of the ground looked at last, hidden or not
    float m_previous = 0; // its distance; 0 before the first
    float m_visible = 0;  // distance of the ground at m_top
};

Relief::Relief(const Frame& frame, const Camera& camera, HeightField height, base::WorkerPool& pool)
    : m_frame(frame)
    , m_camera(camera)
    , m_height(std::move(height))
    , m_gridColumns(leastCells + static_cast<int>(static_cast<float>(frame.width) / pixelsPerCell))
    , m_gridRows(leastCells + static_cast<int>(static_cast<float>(frame.height) / pixelsPerCell))
    , m_grid(static_cast<std::size_t>(m_gridColumns) * static_cast<std::size_t>(m_gridRows))
    , m_gridSide(gridMargin * frame.aspect() / 2 / camera.focal)
    , m_gridRowScale(static_cast<float>(m_gridRows - 1) / log2Of(camera.farthest / camera.nearest))
    , m_hits(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height)) {
    pool.forEach(static_cast<std::size_t>(m_gridRows),
                 [this](std::size_t row, unsigned) { fillGridRow(row); });
    pool.forEach(static_cast<std::size_t>(frame.width),
                 [this](std::size_t column, unsigned) { castColumn(static_cast<int>(column)); });
}

void Relief::fillGridRow(std::size_t row) {
    const float distance = m_camera.nearest * exp2Of(static_cast<float>(row) / m_gridRowScale);
    const auto last = static_cast<float>(m_gridColumns - 1);
    const float cell = 2 * m_gridSide * distance / last;
    float* heights = &m_grid[row * static_cast<std::size_t>(m_gridColumns)];
    for (int column = 0; column < m_gridColumns; ++column) {
        const float x = (static_cast<float>(column) - last / 2) * cell;
        heights[column] = m_height({x, distance}, cell);
    }
}

float Relief::roughHeight(Vec2 place) const {
    const float distance = std::max(place.y, m_camera.nearest);
    const float side = clamp(place.x / distance / m_gridSide, -1, 1);
    const float x = (side * 0.5F + 0.5F) * (static_cast<float>(m_gridColumns) - 1.001F);
    const float y = clamp(log2Of(distance / m_camera.nearest) * m_gridRowScale, 0,
                          static_cast<float>(m_gridRows) - 1.01F);
    const auto column = static_cast<std::size_t>(x);
    const auto row = static_cast<std::size_t>(y);
    const auto width = static_cast<std::size_t>(m_gridColumns);
    const float* cell = &m_grid[row * width + column];
    const float fx = x - static_cast<float>(column);
    return mix(mix(cell[0], cell[1], fx), mix(cell[width], cell[width + 1], fx),
               y - static_cast<float>(row));
}

float Relief::rowOf(float height, float distance) const {
    const float y = m_camera.horizon + m_camera.focal * (m_camera.height - height) / distance;
    return y * static_cast<float>(m_frame.height);
}

float Relief::rowAlong(float side, float distance) const {
    return rowOf(m_height({side * distance, distance}, footprint(distance)), distance);
}

/// The distance between `near` and `far` at which the ground appears highest.
float Relief::crestBetween(float side, float near, float far) const {
    for (int i = 0; i < 5; ++i) {
        const float third = (far - near) / 3;
        if (rowAlong(side, near + third) < rowAlong(side, far - third))
            far -= third;
        else
            near += third;
    }
    return (near + far) / 2;
}

/// Adds the ground after `near` up to `far`, halving the way while the two appear more than a row
/// apart: over a bend such as a crest, rows are not spread evenly over the distance.
void Relief::addFinely(Column& pixels, float side, Sight near, Sight far, int halvings) const {
    constexpr float rowsAtOnce = 1.2F;
    if (halvings > 0 && std::min(near.row, pixels.top()) - far.row > rowsAtOnce) {
        const float middle = (near.distance + far.distance) / 2;
        const Sight between{.row = rowAlong(side, middle), .distance = middle};
        addFinely(pixels, side, near, between, halvings - 1);
        addFinely(pixels, side, between, far, halvings - 1);
    } else {
        pixels.add(far);
    }
}

void Relief::castColumn(int column) {
    const auto rows = static_cast<std::size_t>(m_frame.height);
    const float side = (m_frame.place(column, 0).x - m_frame.aspect() / 2) / m_camera.focal;
    Column pixels(std::span<Hit>(m_hits).subspan(static_cast<std::size_t>(column) * rows, rows));
    // Hidden ground need not be known exactly.
    const float margin = 0.006F * static_cast<float>(m_frame.height);
    constexpr int mostHalvings = 6;
    Sight here{.row = static_cast<float>(rows), .distance = m_camera.nearest};
    Sight before = here;
    while (here.distance < m_camera.farthest && pixels.top() > 0) {
        // About a row of level ground a step, within limits that bound the work.
        const float step = clamp(0.8F * footprint(here.distance) / m_camera.height, 0.001F, 0.004F);
        Sight next{.row = 0, .distance = here.distance * (1 + step)};
        next.row = rowOf(roughHeight({side * next.distance, next.distance}), next.distance);
        if (next.row < pixels.top() + margin)
            next.row = rowAlong(side, next.distance);
        // A sharp crest between two steps would come out notched from column to column.
        if (pixels.endsInCrest(next.row)) {
            const float crest = crestBetween(side, before.distance, next.distance);
            pixels.add({.row = rowAlong(side, crest), .distance = crest});
        }
        addFinely(pixels, side, here, next, mostHalvings);
        before = here;
        here = next;
    }
    pixels.markOutline(sky);
}

Relief::Hit Relief::at(Vec2 p) const {
    const auto scale = static_cast<float>(m_frame.height);
    const int column = std::clamp(static_cast<int>(p.x * scale), 0, m_frame.width - 1);
    const int row = std::clamp(static_cast<int>(p.y * scale), 0, m_frame.height - 1);
    return m_hits[static_cast<std::size_t>(column) * static_cast<std::size_t>(m_frame.height) +
                  static_cast<std::size_t>(row)];
}

Vec2 Relief::ground(Vec2 p, float distance) const {
    return {(p.x - m_frame.aspect() / 2) / m_camera.focal * distance, distance};
}

Relief::Surface Relief::surface(Vec2 place, float step) const {
    const float here = m_height(place, step);
    const float east = m_height(place + Vec2{step, 0}, step);
    const float north = m_height(place + Vec2{0, step}, step);
    return {.height = here, .normal = normalized({here - east, here - north, step})};
}

Vec3 Relief::broadNormal(Vec2 place, float step) const {
    return normalized({roughHeight(place - Vec2{step, 0}) - roughHeight(place + Vec2{step, 0}),
                       roughHeight(place - Vec2{0, step}) - roughHeight(place + Vec2{0, step}),
                       2 * step});
}

float Relief::sunlight(Vec2 place, Vec3 toSun, float reach, float softness) const {
    const float level = std::sqrt(square(toSun.x) + square(toSun.y));
    const Vec2 direction{toSun.x / level, toSun.y / level};
    const float rise = toSun.z / level;
    const float cell = 2 * m_gridSide * place.y / static_cast<float>(m_gridColumns);
    // A little above the ground: the grid cuts crests off by part of a cell.
    const float start = roughHeight(place) + 0.35F * cell;
    float clear = 1;
    constexpr int steps = 16;
    // Steps grow with the distance: near ground casts the sharp shadows.
    for (int i = 1; i <= steps; ++i) {
        const float along = cell + reach * square(static_cast<float>(i) / steps);
        const float ground = roughHeight(place + direction * along);
        clear = std::min(clear, 0.5F + (start + rise * along - ground) / (softness * along));
        if (clear <= 0)
            return 0;
    }
    return smoothstep(0, 1, clear);
}

} // namespace vantro::backgrounds

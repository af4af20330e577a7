#pragma once

#include "backgrounds/Canvas.h"

#include <functional>
#include <limits>
#include <vector>

namespace vantro::backgrounds {

/// An eye above the origin of the ground, looking forward along y with upright verticals.
struct Camera {
    /// Above height 0.
    float height = 1;
    /// Where the horizon stands in the picture, 0 at its top.
    float horizon = 0.4F;
    /// Distance to the picture, in picture heights: larger is a longer lens.
    float focal = 1;
    float nearest = 1;
    float farthest = 200;
};

/// The height of the ground at a place, without details smaller than `footprint`. Pure.
using HeightField = std::function<float(Vec2 place, float footprint)>;

/// A landscape seen in perspective: how far away the ground is at each pixel. Immutable.
class Relief {
  public:
    static constexpr float sky = std::numeric_limits<float>::infinity();

    /// What a pixel sees. Where an outline runs through it, `other` is the second distance in it
    /// and `otherShare` the part that it takes; both distances may be `sky`.
    struct Hit {
        float distance = sky;
        float other = sky;
        float otherShare = 0;
    };

    Relief(const Frame& frame, const Camera& camera, HeightField height, base::WorkerPool& pool);

    Hit at(Vec2 p) const;
    /// The ground that is seen at `p` from `distance` away.
    Vec2 ground(Vec2 p, float distance) const;
    /// The size on the ground of a pixel at `distance`.
    float footprint(float distance) const { return distance * m_frame.pixel() / m_camera.focal; }
    /// The ground at `place`, its slope measured over `step`.
    struct Surface {
        float height;
        Vec3 normal; ///< upward, of length 1
    };
    Surface surface(Vec2 place, float step) const;
    /// The normal from the coarse grid that shadows use: quick, and smooth over several pixels.
    Vec3 broadNormal(Vec2 place, float step) const;
    /// The share of the sun that gets past the ground, 0 to 1. `reach` is how far to look,
    /// `softness` the sun's apparent width as a slope.
    float sunlight(Vec2 place, Vec3 toSun, float reach, float softness) const;
    /// The sun's light on ground of that `normal`, in its own or the land's shadow or out of it.
    float sunOn(Vec2 place, Vec3 normal, Vec3 toSun, float reach, float softness) const {
        const float facing = dot(normal, toSun);
        return facing > 0 ? facing * sunlight(place, toSun, reach, softness) : 0;
    }
    /// The height at `place` from the coarse grid.
    float roughHeight(Vec2 place) const;

  private:
    class Column;
    /// Ground at `distance` that appears at `row`, whether or not something hides it.
    struct Sight {
        float row;
        float distance;
    };
    void fillGridRow(std::size_t row);
    void castColumn(int column);
    float rowOf(float height, float distance) const;
    float rowAlong(float side, float distance) const;
    float crestBetween(float side, float near, float far) const;
    void addFinely(Column& pixels, float side, Sight near, Sight far, int halvings) const;

    Frame m_frame;
    Camera m_camera;
    HeightField m_height;
    // Heights over the directions (columns) and the logarithm of the distance (rows): cells of
    // about the same size on the picture, some pixels wide.
    int m_gridColumns;
    int m_gridRows;
    std::vector<float> m_grid;
    float m_gridSide;        // the steepest direction on the grid, sideways per forward
    float m_gridRowScale;    // rows per doubling of the distance
    std::vector<Hit> m_hits; // column by column, so that each is filled in one piece of memory
};

/// Paints `shade(p, distance)` through the outlines of `relief`.
template <typename Shade>
Rgb seen(const Relief& relief, Vec2 p, const Shade& shade) {
    const auto hit = relief.at(p);
    const Rgb main = shade(p, hit.distance);
    return hit.otherShare > 0 ? mix(main, shade(p, hit.other), hit.otherShare) : main;
}

} // namespace vantro::backgrounds

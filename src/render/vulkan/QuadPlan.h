#pragma once

#include "render/scene/Scene.h"

#include <array>
#include <cstddef>
#include <span>

namespace vantro::render::vulkan {

/// One corner of a quad: normalized device coordinates with y upwards, and texture coordinates with
/// v downwards.
struct QuadVertex {
    float x = 0;
    float y = 0;
    float u = 0;
    float v = 0;
};
static_assert(sizeof(QuadVertex) == 16);

/// What a quad's fragment shader is given; the layout that the shaders declare.
struct QuadUniforms {
    std::array<float, 4> color{};     ///< red, green, blue, alpha; straight
    std::array<float, 4> rectangle{}; ///< x, y from the top, width, height in canvas pixels
    float cornerRadius = 0;           ///< canvas pixels
    float scale = 1;                  ///< output pixels a pixel of the film
    std::array<float, 2> origin{};    ///< where sampling starts, texture coordinates
    std::array<float, 2> size{};      ///< how far it reaches
    std::array<float, 2> unused1{};
};
static_assert(sizeof(QuadUniforms) == 64);

/// In the order in which the pipelines are made.
enum class PipelineKind { solidColor, texture, roundedRect, roundedRectCropped, zoomSample };
inline constexpr std::size_t pipelineKinds = 5;

/// What a quad samples; `backdrop` is what the first pass has drawn.
enum class PictureRole { none, recording, background, shadow, cursor, webcam, backdrop };

struct QuadDraw {
    PipelineKind pipeline = PipelineKind::solidColor;
    PictureRole picture = PictureRole::none;
    std::array<QuadVertex, 6> vertices{};
    QuadUniforms uniforms;
};

/// The quads of one pass, in drawing order. A fixed room, so that a frame allocates nothing.
class QuadList {
  public:
    /// Background, shadow, recording, cursor, webcam.
    static constexpr std::size_t capacity = 5;

    void add(const QuadDraw& draw);
    /// Of what is sampled at a scale of the film; backdrop and shadow are made at the output's.
    void setScale(double scale);
    std::span<const QuadDraw> draws() const { return {m_draws.data(), m_count}; }

  private:
    std::array<QuadDraw, capacity> m_draws{};
    std::size_t m_count = 0;
};

/// All that is drawn for a frame.
struct QuadPlan {
    QuadList backdrop; ///< drawn first, to be magnified; empty where the output shows all of it
    QuadList output;
};

/// The scene as quads. Pure.
QuadPlan planQuads(const Scene& scene);

} // namespace vantro::render::vulkan

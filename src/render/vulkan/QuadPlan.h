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
    std::array<float, 4> rectangle{}; ///< x, y from the top, width, height in canvas pixels
    float cornerRadius = 0;           ///< canvas pixels
    float scale = 1;                  ///< output pixels a pixel of the film
    std::array<float, 2> origin{};    ///< where sampling starts, texture coordinates
    std::array<float, 2> size{};      ///< how far it reaches
};
static_assert(sizeof(QuadUniforms) == 40);

/// In the order in which the pipelines are made.
enum class PipelineKind { texture, roundedRect, roundedRectCropped, zoomSample };
inline constexpr std::size_t pipelineKinds = 4;

/// What a quad samples.
enum class PictureRole { backdrop, recording, cursor, webcam };

struct QuadDraw {
    PipelineKind pipeline = PipelineKind::texture;
    PictureRole picture = PictureRole::recording;
    std::array<QuadVertex, 6> vertices{};
    QuadUniforms uniforms;
};

/// The quads of a frame, in drawing order. A fixed room, so that a frame allocates nothing.
class QuadList {
  public:
    /// Backdrop, recording, cursor, webcam.
    static constexpr std::size_t capacity = 4;

    void add(const QuadDraw& draw);
    /// Of what is sampled at a scale of the film; the backdrop is made at the output's.
    void setScale(double scale);
    std::span<const QuadDraw> draws() const { return {m_draws.data(), m_count}; }

  private:
    std::array<QuadDraw, capacity> m_draws{};
    std::size_t m_count = 0;
};

/// The scene as quads. Pure.
QuadList planQuads(const Scene& scene);

} // namespace vantro::render::vulkan

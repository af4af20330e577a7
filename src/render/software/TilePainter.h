#pragma once

#include "render/software/LayerRows.h"

#include <array>
#include <vector>

namespace vantro::render::software {

/// Draws tiles of planned frames, from the source pixels to the output pixels, one row after
/// another so that all the work stays in the nearest caches.
///
/// One painter for each thread; its memory stays from tile to tile.
class TilePainter {
  public:
    /// What a frame's tiles are drawn from, besides the pictures in the plan.
    struct Grounds {
        /// BGRA, canvas size; absent for plans without a backdrop.
        const media::PixelBuffer* backdrop = nullptr;
        /// What the output shows outside of the live part, in the output's own format; absent when
        /// everything is live.
        const media::PixelBuffer* still = nullptr;
    };

    /// The tile begins at an even column and row, and ends at one or at the canvas edge.
    void paint(const FramePlan& plan, const Grounds& grounds, const Tile& tile,
               media::PixelBuffer& output);

  private:
    void prepare(const FramePlan& plan, const Tile& part);
    const std::uint8_t* backdropRow(int row);
    void writeOutputRow(int row, std::uint8_t* out);
    void writeBgra(media::PixelBuffer& output);
    void writeI420(media::PixelBuffer& output);

    const FramePlan* m_plan = nullptr;
    const media::PixelBuffer* m_backdrop = nullptr;
    Tile m_part;
    LayerRows m_recording;
    LayerRows m_cursor;
    LayerRows m_webcam;
    BilinearRows m_magnified; ///< of the backdrop
    std::vector<std::uint8_t> m_backdropRow;
    std::array<std::vector<std::uint8_t>, 2> m_outputRows;
};

} // namespace vantro::render::software

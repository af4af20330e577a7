#pragma once

#include "export/gif/Color.h"

#include <cstddef>
#include <vector>

namespace vantro::exporting::gif {

/// Counts the colors of a picture and chooses the palette that shows them best.
///
/// Memory stays bounded: when too many colors come, similar ones are merged, more and more
/// coarsely. One thread.
class PaletteBuilder {
  public:
    PaletteBuilder();

    void add(Color color, unsigned weight);
    /// The best palette of at most maxColors for what was added; never empty.
    Palette build() const;

  private:
    struct Bucket {
        Color key = 0;
        std::uint32_t weight = 0; ///< 0 where the bucket is free
        std::uint64_t red = 0;    ///< weighted sums, so that a bucket stands for its mean
        std::uint64_t green = 0;
        std::uint64_t blue = 0;
    };

    Color keyOf(Color color) const;
    Bucket& bucketFor(Color key);
    void coarsen();

    std::vector<Bucket> m_buckets;
    std::size_t m_used = 0;
    int m_droppedBits = 0;
};

} // namespace vantro::exporting::gif

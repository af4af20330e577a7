#pragma once

#include "capture/pictures/TileMap.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantro::capture::pictures {

/// The pixels of a BGRX picture.
struct PictureView {
    const std::uint8_t* pixels = nullptr;
    std::ptrdiff_t stride = 0; ///< bytes from row to row
    int width = 0;
    int height = 0;
};

/// Fits a picture, whose size may change, into one whose size does not: as large as it goes with
/// its aspect kept, in the middle, on black. A picture of the right size is passed on untouched, as
/// is one that begins with a few rows or columns too many, which fall away. One thread.
class PictureFit {
  public:
    PictureFit(int width, int height);

    /// Adds to `changed`, a map of the fitted size, what the changes of the source mean for it. The
    /// result is valid until the next call, and for as long as the source's pixels are.
    PictureView fit(const PictureView& source, const TileMap& sourceChanged, TileMap& changed);

  private:
    bool isRightSize(const PictureView& source);
    PictureView scaled(const PictureView& source);

    int m_width;
    int m_height;
    int m_rightWidth = 0; // of a source that is passed on; 0 until there was one
    int m_rightHeight = 0;
    int m_sourceWidth = 0; // of the last picture
    int m_sourceHeight = 0;
    std::vector<std::uint8_t> m_pixels; // used while the source has another size
};

/// Where a picture of another size lies in one of width × height pixels.
struct Fitting {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// As large as it goes with its aspect kept, in the middle.
Fitting fitting(int sourceWidth, int sourceHeight, int width, int height);

} // namespace vantro::capture::pictures

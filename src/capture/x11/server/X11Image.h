#pragma once

#include "capture/pictures/TileMap.h"
#include "capture/x11/server/X11Connection.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vantro::capture::x11 {

/// Why the screen's pixels cannot be read; nothing when they are 32-bit BGRX, as they must be.
std::optional<std::string> unsupportedPixels(const X11Connection& connection);

/// A picture of pixels that the X server holds, as BGRX in memory, brought up to date band by band.
///
/// The server writes straight into memory shared with it (MIT-SHM); where it cannot, the pixels
/// come through the connection. Outlived by the connection; same thread.
class X11Image {
  public:
    X11Image(const X11Connection& connection, int width, int height);
    ~X11Image();
    X11Image(const X11Image&) = delete;
    X11Image& operator=(const X11Image&) = delete;

    int width() const { return m_width; }
    int height() const { return m_height; }
    const std::uint8_t* pixels() const { return m_memory.data(); }
    std::uint8_t* pixels() { return m_memory.data(); }
    std::ptrdiff_t stride() const { return std::ptrdiff_t{4} * m_width; }

    /// Reads the full-width bands of rows that hold any of `where` from a window or pixmap, in
    /// which this picture begins at (x, y) and ends inside. False when the server refuses, as it
    /// does when the drawable has gone or shrunk.
    bool fetch(xcb_drawable_t drawable, int x, int y, const pictures::TileMap& where);

  private:
    bool attachSharedMemory();
    bool fetchShared(xcb_drawable_t drawable, int x, int y, const pictures::TileMap& where);
    bool fetchThroughConnection(xcb_drawable_t drawable, int x, int y,
                                const pictures::TileMap& where);

    const X11Connection& m_connection;
    int m_width;
    int m_height;
    std::span<std::uint8_t> m_memory;      // shared or m_ownMemory
    std::vector<std::uint8_t> m_ownMemory; // used without MIT-SHM
    std::uint32_t m_segment = 0;           // 0: not shared
};

} // namespace vantro::capture::x11

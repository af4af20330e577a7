#pragma once

#include "capture/TileMap.h"
#include "capture/x11/X11Connection.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vantro {

/// Why the screen's pixels cannot be read; nothing when they are 32-bit BGRX, as they must be.
std::optional<std::string> unsupportedPixels(const X11Connection& connection);

/// A rectangle of the X screen as BGRX pixels in memory, brought up to date band by band.
///
/// The server writes straight into memory shared with it (MIT-SHM); where it cannot, the pixels
/// come through the connection. Outlived by the connection; same thread.
class X11ScreenImage {
  public:
    /// `area` lies inside of the screen.
    X11ScreenImage(const X11Connection& connection, PixelRect area);
    ~X11ScreenImage();
    X11ScreenImage(const X11ScreenImage&) = delete;
    X11ScreenImage& operator=(const X11ScreenImage&) = delete;

    const std::uint8_t* pixels() const { return m_memory.data(); }
    std::ptrdiff_t stride() const { return std::ptrdiff_t{4} * m_area.width; }

    /// Reads the full-width bands of rows that hold any of `where`.
    std::expected<void, std::string> fetch(const TileMap& where);

  private:
    bool attachSharedMemory();
    bool fetchShared(const TileMap& where);
    bool fetchThroughConnection(const TileMap& where);

    const X11Connection& m_connection;
    PixelRect m_area;
    std::span<std::uint8_t> m_memory;      // shared or m_ownMemory
    std::vector<std::uint8_t> m_ownMemory; // used without MIT-SHM
    std::uint32_t m_segment = 0;           // 0: not shared
};

} // namespace vantro

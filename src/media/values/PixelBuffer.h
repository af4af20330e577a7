#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vantro::media {

enum class PixelFormat {
    bgra, ///< one plane, 8 bits a channel, blue first; opaque unless a user says otherwise
    i420, ///< three planes, 8-bit 4:2:0; chroma planes are half the size, rounded up
};

enum class ColorMatrix { bt601, bt709 };

/// How i420 samples become RGB. bgra buffers are full-range sRGB and ignore it.
struct ColorDescription {
    ColorMatrix matrix = ColorMatrix::bt709;
    bool fullRange = false;
    bool operator==(const ColorDescription&) const = default;
};

/// The pixels of one picture: top row first, each plane with its own stride in bytes.
///
/// Shared by pointer. Whoever fills a buffer holds the only mutable pointer; once handed on it is
/// `const` and safe to read from any thread. Memory of our own is 64-byte aligned, row by row, and
/// readable for 64 bytes past the last row.
class PixelBuffer {
  public:
    static constexpr int maxPlanes = 3;

    /// New, uninitialized memory. Sizes from 1 to 32768; anything else is fatal.
    static std::shared_ptr<PixelBuffer> allocate(PixelFormat format, int width, int height,
                                                 ColorDescription color = {});
    /// Somebody else's memory, which `owner` keeps alive.
    static std::shared_ptr<const PixelBuffer>
    wrap(PixelFormat format, int width, int height, const std::uint8_t* const planes[maxPlanes],
         const int strides[maxPlanes], ColorDescription color, std::shared_ptr<const void> owner);

    PixelFormat format() const { return m_format; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    ColorDescription color() const { return m_color; }
    int planeCount() const { return m_format == PixelFormat::bgra ? 1 : 3; }
    int planeHeight(int plane) const { return plane == 0 ? m_height : (m_height + 1) / 2; }
    int stride(int plane) const { return m_strides[plane]; }
    const std::uint8_t* plane(int plane) const { return m_planes[plane]; }
    const std::uint8_t* row(int plane, int y) const {
        return m_planes[plane] + static_cast<std::ptrdiff_t>(y) * m_strides[plane];
    }
    /// Only for buffers that allocate() made.
    std::uint8_t* mutableRow(int plane, int y) {
        return m_memory.get() + (row(plane, y) - m_memory.get());
    }

  private:
    PixelBuffer() = default;

    struct FreeMemory {
        void operator()(std::uint8_t* memory) const;
    };

    PixelFormat m_format = PixelFormat::bgra;
    int m_width = 0;
    int m_height = 0;
    ColorDescription m_color;
    const std::uint8_t* m_planes[maxPlanes]{};
    int m_strides[maxPlanes]{};
    std::unique_ptr<std::uint8_t, FreeMemory> m_memory;
    std::shared_ptr<const void> m_owner;
};

/// Hands out buffers of one shape and takes their memory back when the last user lets go, so that
/// steady work allocates nothing. Bounded by what is in use at once. Any thread; buffers may
/// outlive the pool.
class PixelBufferPool {
  public:
    PixelBufferPool(PixelFormat format, int width, int height, ColorDescription color = {});

    std::shared_ptr<PixelBuffer> take();

  private:
    struct Store;
    struct Loan;
    PixelFormat m_format;
    int m_width;
    int m_height;
    ColorDescription m_color;
    std::shared_ptr<Store> m_store;
};

} // namespace vantro::media

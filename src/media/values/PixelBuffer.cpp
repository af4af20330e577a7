#include "media/values/PixelBuffer.h"

#include "base/Fatal.h"
#include "base/Guarded.h"

#include <cstdlib>
#include <new>

namespace vantro::media {
namespace {

constexpr int alignment = 64;
constexpr int largestSide = 32768;

int alignedStride(int bytes) {
    return (bytes + alignment - 1) / alignment * alignment;
}

} // namespace

void PixelBuffer::FreeMemory::operator()(std::uint8_t* memory) const {
    std::free(memory);
}

std::shared_ptr<PixelBuffer> PixelBuffer::allocate(PixelFormat format, int width, int height,
                                                   ColorDescription color) {
    base::require(width >= 1 && height >= 1 && width <= largestSide && height <= largestSide,
                  "picture size out of range");
    std::shared_ptr<PixelBuffer> buffer(new PixelBuffer);
    buffer->m_format = format;
    buffer->m_width = width;
    buffer->m_height = height;
    buffer->m_color = color;
    std::size_t offsets[maxPlanes]{};
    std::size_t total = 0;
    for (int plane = 0; plane < buffer->planeCount(); ++plane) {
        const int bytes = format == PixelFormat::bgra ? width * 4
                          : plane == 0                ? width
                                                      : (width + 1) / 2;
        buffer->m_strides[plane] = alignedStride(bytes);
        offsets[plane] = total;
        total += static_cast<std::size_t>(buffer->m_strides[plane]) * buffer->planeHeight(plane);
    }
    auto* memory = static_cast<std::uint8_t*>(std::aligned_alloc(alignment, total + alignment));
    if (memory == nullptr)
        throw std::bad_alloc();
    buffer->m_memory.reset(memory);
    for (int plane = 0; plane < buffer->planeCount(); ++plane)
        buffer->m_planes[plane] = memory + offsets[plane];
    return buffer;
}

std::shared_ptr<const PixelBuffer> PixelBuffer::wrap(PixelFormat format, int width, int height,
                                                     const std::uint8_t* const planes[maxPlanes],
                                                     const int strides[maxPlanes],
                                                     ColorDescription color,
                                                     std::shared_ptr<const void> owner) {
    std::shared_ptr<PixelBuffer> buffer(new PixelBuffer);
    buffer->m_format = format;
    buffer->m_width = width;
    buffer->m_height = height;
    buffer->m_color = color;
    for (int plane = 0; plane < buffer->planeCount(); ++plane) {
        buffer->m_planes[plane] = planes[plane];
        buffer->m_strides[plane] = strides[plane];
    }
    buffer->m_owner = std::move(owner);
    return buffer;
}

struct PixelBufferPool::Store {
    base::Guarded<std::vector<std::shared_ptr<PixelBuffer>>> idle;
};

/// A buffer in use. It keeps the store alive, not the pool.
struct PixelBufferPool::Loan {
    std::shared_ptr<PixelBuffer> buffer;
    std::shared_ptr<Store> store;

    ~Loan() {
        store->idle.with([this](auto& idle) { idle.push_back(std::move(buffer)); });
    }
};

PixelBufferPool::PixelBufferPool(PixelFormat format, int width, int height, ColorDescription color)
    : m_format(format)
    , m_width(width)
    , m_height(height)
    , m_color(color)
    , m_store(std::make_shared<Store>()) {}

std::shared_ptr<PixelBuffer> PixelBufferPool::take() {
    auto buffer = m_store->idle.with([](auto& idle) -> std::shared_ptr<PixelBuffer> {
        if (idle.empty())
            return nullptr;
        auto last = std::move(idle.back());
        idle.pop_back();
        return last;
    });
    if (!buffer)
        buffer = PixelBuffer::allocate(m_format, m_width, m_height, m_color);
    auto* pixels = buffer.get();
    auto loan = std::make_shared<Loan>(std::move(buffer), m_store);
    return {std::move(loan), pixels};
}

} // namespace vantro::media

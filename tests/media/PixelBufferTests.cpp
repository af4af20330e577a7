#include "media/values/PixelBuffer.h"

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

TEST(PixelBuffer, planesOfOddPicturesAreAlignedAndDisjoint) {
    const auto buffer = PixelBuffer::allocate(PixelFormat::i420, 65, 3);
    EXPECT_EQ(buffer->planeHeight(1), 2);
    const std::uint8_t* end = nullptr;
    for (int plane = 0; plane < 3; ++plane) {
        EXPECT_GE(buffer->stride(plane), plane == 0 ? 65 : 33);
        for (int y = 0; y < buffer->planeHeight(plane); ++y) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer->row(plane, y)) % 64, 0U);
            EXPECT_GE(buffer->row(plane, y), end);
            end = buffer->row(plane, y) + buffer->stride(plane);
        }
    }
    std::uint8_t* beyond = buffer->mutableRow(2, 1) + buffer->stride(2);
    EXPECT_EQ(beyond[63], beyond[63]); // readable: a sanitizer would tell
}

TEST(PixelBufferPool, reusesReturnedMemoryAndNeverMemoryInUse) {
    auto pool = std::make_unique<PixelBufferPool>(PixelFormat::bgra, 8, 8);
    auto first = pool->take();
    const auto* firstPixels = first->row(0, 0);
    auto second = pool->take();
    EXPECT_NE(second->row(0, 0), firstPixels);
    first.reset();
    auto third = pool->take();
    EXPECT_EQ(third->row(0, 0), firstPixels);
    pool.reset(); // buffers outlive it
    second->mutableRow(0, 7)[31] = 1;
    EXPECT_EQ(second->row(0, 7)[31], 1);
}

} // namespace
} // namespace vantro::media

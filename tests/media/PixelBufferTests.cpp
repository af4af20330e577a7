#include "media/values/PixelBuffer.h"

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

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

#pragma once

#include "base/Guarded.h"
#include "render/scene/Renderer.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::render::vulkan {

/// Tests that draw on whatever Vulkan device there is, a software one included, with the validation
/// layers watching. Anything that these report fails the test.
class CheckedGpu : public testing::Test {
  protected:
    CheckedGpu();
    void SetUp() override { ASSERT_NE(gpu, nullptr); }
    void TearDown() override;

  private:
    base::Guarded<std::vector<std::string>> m_messages; // outlives the device, which reports here

  protected:
    std::unique_ptr<Renderer> gpu;
};

} // namespace vantro::render::vulkan

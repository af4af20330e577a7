#pragma once

#include "base/Guarded.h"
#include "render/Renderer.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vantro {

/// Tests that draw on whatever Vulkan device there is, a software one included, with the validation
/// layers watching. Anything that these report fails the test.
class CheckedGpu : public testing::Test {
  protected:
    CheckedGpu();
    void SetUp() override { ASSERT_NE(gpu, nullptr); }
    void TearDown() override;

  private:
    Guarded<std::vector<std::string>> m_messages; // outlives the device, which reports here

  protected:
    std::unique_ptr<Renderer> gpu;
};

} // namespace vantro

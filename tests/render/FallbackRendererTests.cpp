#include "render/FallbackRenderer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

/// Marks each frame that it draws with its own value; from `failFrom` on it leaves frames undone.
class ScriptedRenderer : public Renderer {
  public:
    ScriptedRenderer(std::string name, std::uint8_t mark, int failFrom)
        : m_name(std::move(name)), m_mark(mark), m_failFrom(failFrom) {}

    std::string_view description() const override { return m_name; }
    bool render(const Scene& /*scene*/, media::PixelBuffer& output) override {
        if (m_frames++ >= m_failFrom)
            return false;
        *output.mutableRow(0, 0) = m_mark;
        return true;
    }

  private:
    std::string m_name;
    std::uint8_t m_mark;
    int m_failFrom;
    int m_frames = 0;
};

constexpr int never = 1000;

std::uint8_t drawOne(Renderer& renderer) {
    const auto output = media::PixelBuffer::allocate(media::PixelFormat::bgra, 1, 1);
    std::memset(output->mutableRow(0, 0), 0, 4);
    EXPECT_TRUE(renderer.render({}, *output));
    return *output->row(0, 0);
}

TEST(FallbackRenderer, losesNoFrameWhenThePreferredRendererFails) {
    int made = 0;
    FallbackRenderer renderer(std::make_unique<ScriptedRenderer>("gpu", 1, 2), [&made] {
        ++made;
        return std::make_unique<ScriptedRenderer>("software", 2, never);
    });
    EXPECT_EQ(renderer.description(), "gpu");
    testing::internal::CaptureStderr();
    std::array<int, 5> marks{};
    for (int& mark : marks)
        mark = drawOne(renderer);
    const std::string logged = testing::internal::GetCapturedStderr();
    EXPECT_EQ(marks, (std::array{1, 1, 2, 2, 2}));
    EXPECT_EQ(made, 1);
    EXPECT_EQ(renderer.description(), "software");
    EXPECT_EQ(std::ranges::count(logged, '\n'), 1) << logged;
    EXPECT_NE(logged.find("gpu gave up"), std::string::npos) << logged;
}

TEST(FallbackRenderer, makesNoSecondRendererWhileTheFirstWorks) {
    FallbackRenderer renderer(std::make_unique<ScriptedRenderer>("gpu", 1, never),
                              []() -> std::unique_ptr<Renderer> {
                                  ADD_FAILURE() << "not needed";
                                  return nullptr;
                              });
    EXPECT_EQ(drawOne(renderer), 1);
}

TEST(FallbackRenderer, failsWhenBothFail) {
    FallbackRenderer renderer(std::make_unique<ScriptedRenderer>("gpu", 1, 0),
                              [] { return std::make_unique<ScriptedRenderer>("software", 2, 1); });
    EXPECT_EQ(drawOne(renderer), 2);
    const auto output = media::PixelBuffer::allocate(media::PixelFormat::bgra, 1, 1);
    EXPECT_FALSE(renderer.render({}, *output));
    EXPECT_FALSE(renderer.render({}, *output));
}

} // namespace
} // namespace vantro::render

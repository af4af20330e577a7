#include "render/FallbackRenderer.h"
#include "render/TestScenes.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

/// Marks each frame that it draws with its own value; after `lasting` frames it draws no more.
class ScriptedRenderer : public Renderer {
  public:
    ScriptedRenderer(std::string_view name, std::uint8_t mark, int lasting)
        : m_name(name), m_mark(mark), m_left(lasting) {}

    std::string_view description() const override { return m_name; }
    bool render(const Scene& /*scene*/, media::PixelBuffer& output) override {
        if (m_left-- <= 0)
            return false;
        *output.mutableRow(0, 0) = m_mark;
        return true;
    }

  private:
    std::string_view m_name;
    std::uint8_t m_mark;
    int m_left;
};

TEST(FallbackRenderer, LosesNoFrameWhenThePreferredRendererFailsAndFailsWithTheSecond) {
    int made = 0;
    FallbackRenderer renderer(std::make_unique<ScriptedRenderer>("gpu", 1, 2), [&made] {
        ++made;
        return std::make_unique<ScriptedRenderer>("software", 2, 2);
    });
    const auto output = test::flatPicture(media::PixelFormat::bgra, 1, 1, {});
    const auto draw = [&] { return renderer.render({}, *output) ? *output->row(0, 0) : 0; };
    testing::internal::CaptureStderr();
    EXPECT_EQ(renderer.description(), "gpu");
    EXPECT_EQ(draw(), 1);
    EXPECT_EQ(draw(), 1);
    EXPECT_EQ(made, 0) << "no second renderer while the first works";
    EXPECT_EQ(draw(), 2);
    EXPECT_EQ(draw(), 2);
    EXPECT_EQ(made, 1);
    EXPECT_EQ(renderer.description(), "software");
    EXPECT_EQ(draw(), 0);
    EXPECT_EQ(draw(), 0);
    const std::string logged = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::ranges::count(logged, '\n'), 1) << logged;
    EXPECT_NE(logged.find("gpu gave up"), std::string::npos) << logged;
}

} // namespace
} // namespace vantro::render

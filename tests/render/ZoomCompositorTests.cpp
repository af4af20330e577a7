#include "render/TestScenes.h"
#include "render/ZoomCompositor.h"

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

using media::PixelFormat;

/// Notes what it is asked to draw, and fills the picture with the number of the call.
class NotingRenderer final : public Renderer {
  public:
    explicit NotingRenderer(std::vector<Scene>& scenes) : m_scenes(scenes) {}

    std::string_view description() const override { return "noting"; }
    bool render(const Scene& scene, media::PixelBuffer& output) override {
        m_scenes.push_back(scene);
        output.mutableRow(0, 0)[0] = static_cast<std::uint8_t>(m_scenes.size());
        return true;
    }

  private:
    std::vector<Scene>& m_scenes;
};

std::shared_ptr<media::PixelBuffer> flat(PixelFormat format, int width, int height,
                                         std::uint8_t value = 200) {
    return test::flatPicture(format, width, height, {value, value, value, 255});
}

/// Composes a recording of 64 × 48 pixels without sound, with a zoom around 10 s.
class ZoomCompositorTest : public testing::Test {
  protected:
    ZoomCompositorTest() {
        edit.clickEvents = std::vector<model::ClickEvent>{
            {.x = 20, .y = 20, .timestamp = 10, .startOffset = 1, .endOffset = 4, .zoomLevel = 2}};
        edit.background = {model::BackgroundColor{1, 0.5, 0}, 0.25, 7};
    }

    ZoomCompositor compositor(std::vector<model::CursorPosition> positions = {}) {
        model::RecordingMetadata metadata;
        metadata.cursorPositions = std::move(positions);
        return {model::Recording("recording.mov", std::move(metadata)), model::Size{64, 48}, edit,
                std::make_unique<NotingRenderer>(scenes), CursorStyle::builtIn};
    }
    media::CompositionRequest at(double seconds) const {
        return {.compositionTime = {},
                .sourceTime = media::MediaTime::fromSeconds(seconds),
                .sourceFrame = {source, {}, {}},
                .width = 64,
                .height = 48,
                .outputFormat = PixelFormat::bgra};
    }
    const Scene& last() const { return scenes.back(); }

    model::Edit edit;
    std::shared_ptr<media::PixelBuffer> source = flat(PixelFormat::bgra, 64, 48);
    std::vector<Scene> scenes;
};

TEST_F(ZoomCompositorTest, DrawsAnUnchangedPictureOnlyOnce) {
    auto made = compositor({{3, 4, 0}, {3, 4, 2}, {9, 4, 3}});
    const auto first = made.compose(at(0));
    EXPECT_EQ(made.compose(at(1.5)), first);
    EXPECT_EQ(scenes.size(), 1U);

    const auto moved = made.compose(at(2.5));
    EXPECT_NE(moved, first);
    source = flat(PixelFormat::bgra, 64, 48);
    EXPECT_NE(made.compose(at(2.5)), moved); // another source frame
    media::CompositionRequest other = at(2.5);
    other.outputFormat = PixelFormat::i420;
    EXPECT_EQ(made.compose(other)->format(), PixelFormat::i420);
    EXPECT_EQ(scenes.size(), 4U);
    EXPECT_EQ(first->row(0, 0)[0], 1); // what was handed out earlier stays as it was
}

TEST_F(ZoomCompositorTest, SwapsLeftAndRightOfAMirroredWebcam) {
    for (const PixelFormat format : {PixelFormat::bgra, PixelFormat::i420}) {
        auto picture = flat(format, 16, 8, 128);
        for (int y = 0; y < 8; ++y)
            std::fill_n(picture->mutableRow(0, y), format == PixelFormat::bgra ? 16 : 4, 235);
        edit.webcamMirrored = false;
        auto made = compositor();
        made.setWebcam([&](media::MediaTime) { return picture; });
        const auto greenAt = [&](int x) { return last().webcam->picture->row(0, 3)[4 * x + 1]; };
        made.compose(at(0));
        EXPECT_GT(greenAt(1), greenAt(14) + 50);
        edit.webcamMirrored = true;
        made.setEdit(edit);
        made.compose(at(0));
        EXPECT_GT(greenAt(14), greenAt(1) + 50);
        EXPECT_GT(greenAt(12), greenAt(11) + 50);
    }
}

} // namespace
} // namespace vantro::render

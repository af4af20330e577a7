#include "model/VantroError.h"
#include "render/RendererFactory.h"
#include "render/ZoomCompositor.h"
#include "render/scene/ImageFile.h"

#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

/// Notes what it is asked to draw, and fills the picture with the number of the call.
class RecordingRenderer final : public Renderer {
  public:
    struct Calls {
        std::vector<Scene> scenes;
        bool fails = false;
    };
    explicit RecordingRenderer(std::shared_ptr<Calls> calls) : m_calls(std::move(calls)) {}

    std::string_view description() const override { return "recording"; }
    bool render(const Scene& scene, media::PixelBuffer& output) override {
        m_calls->scenes.push_back(scene);
        output.mutableRow(0, 0)[0] = static_cast<std::uint8_t>(m_calls->scenes.size());
        return !m_calls->fails;
    }

  private:
    std::shared_ptr<Calls> m_calls;
};

std::shared_ptr<media::PixelBuffer> plainPicture(media::PixelFormat format, int width, int height,
                                                 std::uint8_t value = 200) {
    auto picture = media::PixelBuffer::allocate(format, width, height);
    for (int plane = 0; plane < picture->planeCount(); ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            std::memset(picture->mutableRow(plane, y), value,
                        static_cast<std::size_t>(picture->stride(plane)));
    return picture;
}

class ZoomCompositorTest : public testing::Test {
  protected:
    void SetUp() override {
        compositor.setAnimator(
            std::make_shared<ZoomAnimator>(std::vector{clickAt(10)}, model::Size{64, 48}));
    }

    static model::ClickEvent clickAt(double seconds) {
        model::ClickEvent click;
        click.x = 20;
        click.y = 20;
        click.timestamp = seconds;
        click.startOffset = 1;
        click.endOffset = 4;
        click.zoomLevel = 2;
        return click;
    }

    media::CompositionRequest at(double seconds) const {
        return {media::MediaTime::fromSeconds(seconds),
                {source, {}, {}},
                64,
                48,
                media::PixelFormat::bgra};
    }
    const Scene& last() const { return calls->scenes.back(); }
    void expectFailure(const media::CompositionRequest& request, std::string_view message) {
        try {
            compositor.compose(request);
            ADD_FAILURE() << "no error, but wanted: " << message;
        } catch (const model::VantroError& error) {
            EXPECT_EQ(error.kind(), model::VantroError::Kind::exportFailed);
            EXPECT_EQ(error.message(), message);
        }
    }

    std::shared_ptr<media::PixelBuffer> source = plainPicture(media::PixelFormat::bgra, 64, 48);
    std::shared_ptr<RecordingRenderer::Calls> calls = std::make_shared<RecordingRenderer::Calls>();
    ZoomCompositor compositor{std::make_unique<RecordingRenderer>(calls), CursorStyle::builtIn};
};

TEST_F(ZoomCompositorTest, TellsWhyAFrameCannotBeMade) {
    compositor.setBackgroundSettings(model::BackgroundSettings{});
    media::CompositionRequest request = at(0);
    request.sourceFrame.pixels = nullptr;
    expectFailure(request, "Missing source frame");
    compositor.setAnimator(nullptr);
    expectFailure(request, "No zoom animator configured");
    SetUp();
    request = at(0);
    request.width = 0;
    expectFailure(request, "Failed to create output buffer");
    request.width = 40000;
    expectFailure(request, "Failed to create output buffer");
    calls->fails = true;
    expectFailure(at(0), "Renderer unavailable");
    calls->fails = false;
    EXPECT_NE(compositor.compose(at(0)), nullptr); // the failed picture was not kept
    EXPECT_EQ(calls->scenes.size(), 2U);

    ZoomCompositor withoutRenderer(nullptr);
    withoutRenderer.setAnimator(
        std::make_shared<ZoomAnimator>(std::vector<model::ClickEvent>{}, model::Size{}));
    EXPECT_EQ(withoutRenderer.compose(at(0)), source); // passing on needs none
    withoutRenderer.setBackgroundSettings(model::BackgroundSettings{});
    EXPECT_THROW(withoutRenderer.compose(at(0)), model::VantroError);
}

TEST_F(ZoomCompositorTest, HandsTheSourceOnWhenThereIsNothingToDo) {
    EXPECT_EQ(compositor.compose(at(0)), source);
    EXPECT_TRUE(calls->scenes.empty());
    EXPECT_NE(compositor.compose(at(10)), source); // zoomed
    compositor.setCursor({{3, 4, 0}}, 1, 3);
    EXPECT_NE(compositor.compose(at(0)), source);
    compositor.setCursor({}, 1, 3);
    EXPECT_EQ(compositor.compose(at(0)), source);
    compositor.setBackgroundSettings(model::BackgroundSettings{});
    EXPECT_NE(compositor.compose(at(0)), source);
}

TEST_F(ZoomCompositorTest, GivesTheAskedSizeAndFormatEvenWhenNothingIsDrawn) {
    ZoomCompositor real(makeRenderer(RendererChoice::software));
    real.setAnimator(
        std::make_shared<ZoomAnimator>(std::vector<model::ClickEvent>{}, model::Size{64, 48}));
    media::CompositionRequest request = at(0);
    request.width = 33;
    request.height = 21;
    const auto small = real.compose(request);
    ASSERT_EQ(small->width(), 33);
    for (int y = 0; y < 21; ++y)
        for (int x = 0; x < 33 * 4; ++x)
            ASSERT_EQ(small->row(0, y)[x], 200);
    request = at(0);
    request.outputFormat = media::PixelFormat::i420;
    EXPECT_NEAR(real.compose(request)->row(0, 30)[30], 16 + 200 * 219 / 255.0, 1);
}

TEST_F(ZoomCompositorTest, DrawsAnUnchangedPictureOnlyOnce) {
    compositor.setBackgroundSettings(model::BackgroundSettings{});
    compositor.setCursor({{3, 4, 0}, {3, 4, 2}, {9, 4, 3}}, 1, 3);
    const auto first = compositor.compose(at(0));
    EXPECT_EQ(compositor.compose(at(1.5)), first);
    EXPECT_EQ(calls->scenes.size(), 1U);

    const auto moved = compositor.compose(at(2.5));
    EXPECT_NE(moved, first);
    source = plainPicture(media::PixelFormat::bgra, 64, 48);
    EXPECT_NE(compositor.compose(at(2.5)), moved); // another source frame
    media::CompositionRequest other = at(2.5);
    other.outputFormat = media::PixelFormat::i420;
    EXPECT_EQ(compositor.compose(other)->format(), media::PixelFormat::i420);
    compositor.setBackgroundSettings(
        model::BackgroundSettings{model::BackgroundColor{1, 0, 0}, 0.1, 3});
    compositor.compose(other);
    EXPECT_EQ(calls->scenes.size(), 5U);
    EXPECT_EQ(first->row(0, 0)[0], 1); // what was handed out earlier stays as it was
}

TEST_F(ZoomCompositorTest, LaysTheFrameOutAtTheSourceTime) {
    compositor.setTimeMapper([](double t) { return t * 2; });
    compositor.setBackgroundSettings(
        model::BackgroundSettings{model::BackgroundColor{1, 0.5, 0}, 0.25, 7});
    compositor.setCursor({{2, 3, 10}, {4, 7, 12}}, 2, 1.5);
    compositor.compose(at(5.5));
    EXPECT_EQ(last().recording.picture, source);
    EXPECT_EQ(last().recording.place, (PixelRect{16, 12, 32, 24}));
    EXPECT_EQ(last().recording.cornerRadius, 7);
    EXPECT_EQ(last().background->color, (model::BackgroundColor{1, 0.5, 0}));
    EXPECT_EQ(last().zoom->width, 32); // the click at 10 s
    // Half-way between two samples, in pixels of a display of scale 2, on a recording drawn at 1/2.
    const CursorImage arrow = CursorTextures(standardCursor(CursorStyle::builtIn)).image();
    EXPECT_NEAR(last().cursor->place.x + arrow.hotSpotX * 0.75, 16 + 6 * 0.5, 1e-9);
    EXPECT_NEAR(last().cursor->place.y + arrow.hotSpotY * 0.75, 12 + 10 * 0.5, 1e-9);
    EXPECT_NEAR(last().cursor->place.width, arrow.width * 0.75, 1e-9);
}

TEST_F(ZoomCompositorTest, ShowsTheWebcamPictureOfTheSourceTime) {
    std::vector<double> asked;
    std::shared_ptr<const media::PixelBuffer> picture =
        plainPicture(media::PixelFormat::i420, 16, 8, 128);
    compositor.setTimeMapper([](double t) { return t + 1; });
    compositor.setWebcam(
        [&](double t) {
            asked.push_back(t);
            return picture;
        },
        model::WebcamPosition::topRight, 0.25);
    compositor.compose(at(0));
    EXPECT_EQ(asked, std::vector{1.0});
    ASSERT_TRUE(last().webcam);
    EXPECT_EQ(last().webcam->picture->format(), media::PixelFormat::bgra);
    EXPECT_NEAR(last().webcam->picture->row(0, 3)[5], (128 - 16) * 255 / 219.0, 1);
    EXPECT_EQ(last().webcam->place, (PixelRect{64 - 16 - 1.28, 1.28, 16, 16}));
    compositor.compose(at(0.5));
    EXPECT_EQ(calls->scenes.size(), 1U); // the same picture, converted once
    picture = nullptr;
    EXPECT_EQ(compositor.compose(at(1)), source);
}

TEST_F(ZoomCompositorTest, LoadsABackgroundPictureAndShrinksItTowardsTheCanvas) {
    const auto path = std::filesystem::temp_directory_path() / "compositor-background.png";
    writePng(path, *plainPicture(media::PixelFormat::bgra, 300, 300, 90));
    model::BackgroundSettings settings;
    settings.type = model::BackgroundImageSource::custom(path);
    compositor.setBackgroundSettings(settings);
    compositor.compose(at(0));
    const auto shown = last().background->picture;
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->width(), 75); // halved while it stays as large as 64 × 48

    std::filesystem::remove(path);
    settings.padding = 0.2;
    compositor.setBackgroundSettings(settings); // same picture: not read again
    compositor.compose(at(0));
    EXPECT_EQ(last().background->picture, shown);
    compositor.setBackgroundSettings(model::BackgroundSettings{model::BackgroundColor{}, 0.2, 5});
    compositor.compose(at(0));
    EXPECT_EQ(last().background->picture, nullptr);
    compositor.setBackgroundSettings(settings);
    compositor.compose(at(0));
    EXPECT_EQ(last().background->picture, nullptr); // gone, and not an error
}

TEST(InterpolatedCursor, GoesInStraightLinesAndSticksToTheEnds) {
    EXPECT_EQ(interpolatedCursor({}, 1), std::nullopt);
    const std::vector<model::CursorPosition> positions{
        {0, 0, 1}, {10, 20, 2}, {10, 20, 2}, {0, 40, 4}};
    EXPECT_EQ(interpolatedCursor(positions, -5), (model::Point{0, 0}));
    EXPECT_EQ(interpolatedCursor(positions, 1.5), (model::Point{5, 10}));
    EXPECT_EQ(interpolatedCursor(positions, 2), (model::Point{10, 20}));
    EXPECT_EQ(interpolatedCursor(positions, 3.5), (model::Point{2.5, 35}));
    EXPECT_EQ(interpolatedCursor(positions, 99), (model::Point{0, 40}));
}

TEST(RendererFactory, AlwaysHasTheSoftwareRendererAndTellsWhyThereIsNoOther) {
    std::string why;
    EXPECT_EQ(makeRenderer(RendererChoice::software, &why)->description().substr(0, 8), "software");
    EXPECT_EQ(why, "");
    const bool hasGpu = makeRenderer(RendererChoice::gpu, &why) != nullptr;
    EXPECT_NE(hasGpu, !why.empty());

    std::string whyNot;
    const auto best = makeRenderer(RendererChoice::automatic, &whyNot);
    ASSERT_NE(best, nullptr);
    EXPECT_EQ(best->description().starts_with("software"), !hasGpu);
    EXPECT_EQ(whyNot, why);
}

} // namespace
} // namespace vantro::render

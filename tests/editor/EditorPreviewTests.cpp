#include "app/flows/QtMainLoop.h"
#include "editor/EditorPreview.h"
#include "export/RecordingFixture.h"
#include "render/RendererFactory.h"

#include <QImage>
#include <QTest>
#include <cmath>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

namespace vantro::editor {
namespace {

constexpr int width = 320;
constexpr int height = 180;
constexpr int frameRate = 10;
constexpr int frameCount = 40;

std::unique_ptr<render::MovieSession> openMovie(const model::Recording& recording,
                                                const model::Edit& edit) {
    return std::make_unique<render::MovieSession>(
        recording, edit, render::makeRenderer(render::RendererChoice::software),
        render::TimeLine::source);
}

model::Edit randomEdit(std::mt19937& random) {
    const auto from = [&random](double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    };
    model::Edit edit;
    edit.clickEvents = {{{.x = from(0, width),
                          .y = from(0, height),
                          .timestamp = from(0, 4),
                          .startOffset = from(0, 2),
                          .endOffset = from(0, 2),
                          .zoomLevel = from(1, 4)}}};
    edit.background = {.type = model::BackgroundColor{from(0, 1), from(0, 1), from(0, 1)},
                       .padding = from(0, 0.2),
                       .cornerRadius = from(0, 40)};
    edit.canvasAspectRatio = model::allCanvasAspectRatios[random() % 5];
    edit.cursorScale = from(0, 4);
    edit.segments = {{{.startFraction = from(0, 0.3), .endFraction = from(0.5, 1)}}};
    return edit;
}

class EditorPreviewTest : public testing::Test {
  protected:
    EditorPreviewTest() {
        test::writeMovie(folder / "recording.mov", width, height, frameRate, frameCount,
                         [](media::PixelBuffer& bgra, int frame) {
                             for (int y = 0; y < height; ++y)
                                 for (int x = 0; x < width * 4; ++x)
                                     bgra.mutableRow(0, y)[x] = static_cast<std::uint8_t>(
                                         128 + 60 * std::sin((x + frame * 9) / 50.0) +
                                         60 * std::cos(y / 20.0));
                         });
        model::RecordingMetadata metadata;
        metadata.frameRate = frameRate;
        metadata.endTime = 4;
        metadata.captureRect = {0, 0, width, height};
        metadata.cursorPositions = {{0, 0, 0}, {width, height, 4}};
        recording.emplace(folder / "recording.mov", metadata);
    }

    bool isReady() {
        return QTest::qWaitFor(
            [this] { return preview.isReady() && preview.transport()->duration() > 0; });
    }
    /// The preview's picture once it is of that time.
    std::shared_ptr<const media::PixelBuffer> pictureAt(media::MediaTime time) {
        std::shared_ptr<const media::PixelBuffer> found;
        const bool isThere = QTest::qWaitFor([&] {
            const auto newest = preview.pictures()->draw();
            const bool isIt = newest && newest->time == time;
            if (isIt)
                found = newest->pixels;
            return isIt;
        });
        return isThere ? found : nullptr;
    }

    test::TemporaryFolder folder;
    std::optional<model::Recording> recording;
    app::flows::QtTaskRunner tasks{"preview"};
    EditorPreview preview{tasks, openMovie, [](const auto&) { return nullptr; }};
};

bool isEqual(const media::PixelBuffer& a, const media::PixelBuffer& b) {
    if (a.width() != b.width() || a.height() != b.height())
        return false;
    for (int y = 0; y < a.height(); ++y)
        if (std::memcmp(a.row(0, y), b.row(0, y), static_cast<std::size_t>(a.width()) * 4) != 0)
            return false;
    return true;
}

TEST_F(EditorPreviewTest, ItsPictureIsTheOneThatIsExportedToTheByte) {
    std::mt19937 random(12);
    preview.show(recording);
    ASSERT_TRUE(isReady());
    for (int round = 0; round < 20; ++round) {
        const auto edit = randomEdit(random);
        const media::MediaTime time{static_cast<std::int64_t>(random() % 2399), 600};
        preview.show(recording, edit);
        preview.transport()->seek(time.seconds() / preview.transport()->duration());
        const auto shown = pictureAt(time);
        ASSERT_NE(shown, nullptr) << "round " << round << " at " << time.seconds();
        const auto exported = openMovie(*recording, edit);
        const auto expected =
            exported->still(time.seconds(), exported->canvas(exported->videoSize()));
        EXPECT_TRUE(isEqual(*shown, *expected)) << "round " << round << " at " << time.seconds();
    }
}

TEST_F(EditorPreviewTest, ScrubbingASlowMovieShowsItsSmallCopyAndEndsWithTheExportsPicture) {
    test::writeMovie(
        folder / "long.mov", width, height, frameRate, 12 * frameRate,
        [](media::PixelBuffer& bgra, int frame) {
            std::memset(bgra.mutableRow(0, 0), frame * 2,
                        static_cast<std::size_t>(bgra.stride(0)) * height);
        },
        4);
    const model::Recording slow(folder / "long.mov", recording->metadata());
    EditorPreview shown{tasks,
                        openMovie,
                        [](const auto&) { return nullptr; },
                        {.folder = folder / "proxies", .longestSearch = 0, .yields = false}};
    shown.show(slow);
    auto& transport = *shown.transport();
    const auto seen = [&](bool isPreliminary) {
        const auto newest = shown.pictures()->draw();
        return newest && newest->time == media::MediaTime{5, 1} &&
               newest->isPreliminary == isPreliminary;
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return transport.duration() > 0; }));
    transport.setScrubbing(true);
    const auto isSmallCopySeen = [&] {
        transport.seek(5 / transport.duration());
        return QTest::qWaitFor([&] { return seen(true); }, 50);
    };
    EXPECT_TRUE(QTest::qWaitFor(isSmallCopySeen, 20'000)) << "once it is made";
    transport.setScrubbing(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return seen(false); }));
    const auto exported = openMovie(slow, {});
    EXPECT_TRUE(isEqual(*shown.pictures()->draw()->pixels,
                        *exported->still(5, exported->canvas(exported->videoSize()))));
}

TEST_F(EditorPreviewTest, WhileASliderMovesTheNewestEditIsTheOneThatIsSeen) {
    preview.show(recording);
    ASSERT_TRUE(isReady());
    preview.transport()->seek(0.5);
    ASSERT_NE(pictureAt({1200, 600}), nullptr);
    model::Edit edit;
    for (int step = 0; step <= 100; ++step) {
        edit.background.padding = step / 250.0;
        preview.show(recording, edit);
    }
    const auto exported = openMovie(*recording, edit);
    const auto expected = exported->still(2, exported->canvas(exported->videoSize()));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return isEqual(*preview.pictures()->draw()->pixels, *expected); }));
    EXPECT_EQ(preview.transport()->currentTime(), 2);
}

TEST_F(EditorPreviewTest, ASmallerAreaIsFilledAndALargerOneShowsNoMorePixelsThanThereAre) {
    preview.pictures()->setArea({200, 200});
    preview.show(recording);
    ASSERT_TRUE(isReady());
    preview.transport()->seek(0.25);
    const auto shown = pictureAt({600, 600});
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(QSize(shown->width(), shown->height()), QSize(200, 112));
    preview.pictures()->setArea({1000, 1000});
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return preview.pictures()->draw()->pixels->width() == width; }));
}

} // namespace
} // namespace vantro::editor

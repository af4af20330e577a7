#include "export/Inspection.h"
#include "media/TestMovies.h"
#include "media/VideoCompositionReader.h"
#include "render/MovieSession.h"
#include "render/RendererFactory.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace vantro::exporting {
namespace {

using namespace vantro::test;

constexpr int width = 192;
constexpr int height = 108;
constexpr int ticks = 600;        // a second
constexpr int length = 4 * ticks; // of the recording
constexpr int webcamStart = 300;  // a camera that was slow to start

/// Notes what it is asked to draw, and draws nothing.
class NotingRenderer final : public render::Renderer {
  public:
    explicit NotingRenderer(std::vector<render::Scene>& scenes) : m_scenes(scenes) {}
    std::string_view description() const override { return "noting"; }
    bool render(const render::Scene& scene, media::PixelBuffer&) override {
        m_scenes.push_back(scene);
        return true;
    }

  private:
    std::vector<render::Scene>& m_scenes;
};

std::unique_ptr<render::Renderer> softwareRenderer() {
    return render::makeRenderer(render::RendererChoice::software);
}

/// A segment in whole ticks.
struct Piece {
    int start;
    int end;
    double speed;

    int played() const { return static_cast<int>(std::lround((end - start) / speed)); }
};

/// Where an output time lies in the source: `numerator / denominator` ticks.
struct SourceTime {
    std::int64_t numerator = 0;
    std::int64_t denominator = 1;

    /// How many whole spans of `span` ticks have passed since `origin`.
    std::int64_t spansSince(std::int64_t origin, std::int64_t span) const {
        return (numerator - origin * denominator) / (span * denominator);
    }
    double seconds() const {
        return static_cast<double>(numerator) / static_cast<double>(denominator * ticks);
    }
};

SourceTime sourceTimeOf(const std::vector<Piece>& pieces, int outputTicks) {
    int at = 0;
    for (const auto& piece : pieces) {
        if (outputTicks < at + piece.played())
            return {std::int64_t{piece.start} * piece.played() +
                        std::int64_t{outputTicks - at} * (piece.end - piece.start),
                    piece.played()};
        at += piece.played();
    }
    throw std::runtime_error("behind the film");
}

std::vector<Piece> randomPieces(std::mt19937& random) {
    constexpr double speeds[]{0.3, 0.5, 1, 1, 1.5, 2, 3.7, 8};
    std::vector<int> bounds(2 + 2 * (random() % 5));
    std::ranges::generate(bounds, [&] { return static_cast<int>(random() % (length + 1)); });
    std::ranges::sort(bounds);
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i + 1 < bounds.size(); ++i) {
        const Piece piece{bounds[i], bounds[i + 1], speeds[random() % std::size(speeds)]};
        if (piece.played() > 0 && random() % 4 != 0)
            pieces.push_back(piece);
    }
    return pieces.empty() ? std::vector<Piece>{{0, length, 1}} : pieces;
}

model::Edit editOf(const std::vector<Piece>& pieces) {
    std::vector<model::TimelineSegment> segments;
    for (const auto& piece : pieces)
        segments.push_back({.startFraction = static_cast<double>(piece.start) / length,
                            .endFraction = static_cast<double>(piece.end) / length,
                            .speed = piece.speed});
    model::Edit edit;
    edit.segments = std::move(segments);
    edit.background = {.type = model::BackgroundColor{}, .padding = 0, .cornerRadius = 0};
    edit.clickEvents = {{{.x = 60,
                          .y = 50,
                          .timestamp = 1.7,
                          .startOffset = 1.6,
                          .endOffset = 2.2,
                          .zoomLevel = 3}}};
    return edit;
}

class Cuts : public testing::Test {
  protected:
    /// A recording of 60 numbered pictures a second and a webcam movie of 30, whose pointer moves
    /// 40 pixels a second.
    void SetUp() override {
        makeNumberedMovie(folder / "recording.mov", {240, width, height, 60},
                          "-c:v libx264 -g 30 -bf 2");
        makeNumberedMovie(folder / "webcam.mov", {105, width, height, 30},
                          "-vf settb=1/3000,setpts=1500+N*100 -vsync passthrough "
                          "-enc_time_base 1:3000 -c:v libx264 -g 15 -bf 0 "
                          "-video_track_timescale 3000");
    }

    render::MovieSession session(const std::vector<Piece>& pieces) {
        model::RecordingMetadata metadata;
        metadata.frameRate = 60;
        metadata.hasWebcam = true;
        metadata.cursorPositions = {{0, 50, 0}, {160, 50, 4}};
        return {{folder / "recording.mov", std::move(metadata)},
                editOf(pieces),
                std::make_unique<NotingRenderer>(scenes)};
    }

    TemporaryFolder folder;
    std::vector<render::Scene> scenes;
};

TEST_F(Cuts, PictureCameraPointerAndWebcamOfEveryFrameBelongToOneSourceTime) {
    std::mt19937 random(11);
    for (int list = 0; list < 25; ++list) {
        const auto pieces = randomPieces(random);
        auto film = session(pieces);
        const int rate = list % 2 == 0 ? 60 : 25; // of the film's pictures
        media::VideoCompositionReader reader(film.composition(), film.video({width, height}, rate),
                                             media::PixelFormat::bgra);
        const auto inspected = inspect(film, rate).keyframes;
        double pointerOffset = 0; // from the pointer to its picture's corner
        for (int frame = 0; frame < reader.frameCount(); ++frame) {
            SCOPED_TRACE(testing::Message() << "list " << list << ", frame " << frame);
            ASSERT_TRUE(reader.copyNextFrame());
            const auto& scene = scenes.back();
            const auto time = sourceTimeOf(pieces, frame * ticks / rate);
            ASSERT_EQ(numberIn(*scene.recording.picture), time.spansSince(0, 10));
            ASSERT_EQ(scene.webcam.has_value(), time.numerator >= webcamStart * time.denominator);
            if (scene.webcam) {
                ASSERT_EQ(numberIn(*scene.webcam->picture), time.spansSince(webcamStart, 20));
            }
            const auto camera = film.motion().camera(time.seconds());
            const double scale = camera.isZoomed() ? camera.scale : 1;
            const auto& shown = scene.background.value().shown;
            ASSERT_NEAR(shown.width, width / scale, 1e-6);
            const double corner = shown.x + scene.cursor.value().place.x / scale;
            const double offset = corner - 40 * time.seconds();
            pointerOffset = frame == 0 ? offset : pointerOffset;
            ASSERT_NEAR(offset, pointerOffset, 1e-6);
            ASSERT_DOUBLE_EQ(inspected.at(static_cast<std::size_t>(frame)).sourceTime,
                             time.seconds());
        }
        EXPECT_FALSE(reader.copyNextFrame());
    }
}

TEST_F(Cuts, APlayersPictureOfASourceTimeIsTheFilmsToThePixel) {
    std::mt19937 random(23);
    const auto canvas = render::PixelSize{width, height};
    for (int list = 0; list < 6; ++list) {
        const auto pieces = randomPieces(random);
        auto film = session(pieces);
        render::MovieSession played(film.recording(), film.edit(), softwareRenderer(),
                                    render::TimeLine::source);
        render::MovieSession drawn(film.recording(), film.edit(), softwareRenderer());
        media::VideoCompositionReader reader(drawn.composition(), drawn.video(canvas, 60),
                                             media::PixelFormat::bgra);
        const auto times = inspect(film, 60).keyframes;
        for (int frame = 0; frame < reader.frameCount(); ++frame) {
            const auto exported = reader.copyNextFrame();
            ASSERT_TRUE(exported);
            if (frame % 11 != 0)
                continue;
            const double sourceTime = times.at(static_cast<std::size_t>(frame)).sourceTime;
            const auto still = played.still(sourceTime, canvas);
            for (int y = 0; y < height; ++y)
                ASSERT_EQ(std::memcmp(still->row(0, y), exported->pixels->row(0, y), width * 4), 0)
                    << "list " << list << ", frame " << frame << ", source " << sourceTime;
        }
    }
}

} // namespace
} // namespace vantro::exporting

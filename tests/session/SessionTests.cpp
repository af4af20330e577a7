#include "app/files/ProjectStores.h"
#include "export/RecordingFixture.h"
#include "model/BackgroundCatalog.h"
#include "session/Hands.h"
#include "session/StripedScreen.h"
#include "support/Eventually.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

#include <gmock/gmock.h>

namespace vantro::test {
namespace {

namespace fs = std::filesystem;

constexpr int width = 1280; // of the desktop and the recording, pixels
constexpr int height = 900;
const QString button = QStringLiteral("push button");
const QString radio = QStringLiteral("radio button");
const QString slider = QStringLiteral("slider");
const QString item = QStringLiteral("list item");

/// A kept piece of the recording, as it lies there and in the film, in seconds.
struct Piece {
    double from;
    double to;
    double speed;
    double start; ///< in the film
};

std::vector<Piece> piecesOf(const model::Project& project) {
    const auto duration = project.recording.metadata().endTime;
    std::vector<Piece> pieces;
    double start = 0;
    for (const auto& segment : project.edit.segments) {
        pieces.push_back({segment.startFraction * duration, segment.endFraction * duration,
                          segment.speed, start});
        start += (pieces.back().to - pieces.back().from) / segment.speed;
    }
    return pieces;
}

double filmLength(const std::vector<Piece>& pieces) {
    const auto& last = pieces.back();
    return last.start + (last.to - last.from) / last.speed;
}

double sourceTime(const std::vector<Piece>& pieces, double filmTime) {
    auto piece = pieces.begin();
    while (std::next(piece) != pieces.end() && std::next(piece)->start <= filmTime)
        ++piece;
    return piece->from + (filmTime - piece->start) * piece->speed;
}

double filmTime(const std::vector<Piece>& pieces, double source) {
    for (const auto& piece : pieces)
        if (source >= piece.from && source <= piece.to)
            return piece.start + (source - piece.from) / piece.speed;
    throw std::out_of_range("was cut");
}

std::size_t frameAt(double seconds) {
    return static_cast<std::size_t>(std::lround(seconds * 30));
}

/// Of the block of a zoom at about that time.
QString zoomName(double seconds) {
    const int tenths = static_cast<int>(seconds * 10);
    return QStringLiteral("Zoom 1.5x at 0:0(%1|%2|%3)")
        .arg(tenths / 10.0, 0, 'f', 1)
        .arg((tenths - 1) / 10.0, 0, 'f', 1)
        .arg((tenths + 1) / 10.0, 0, 'f', 1);
}

QImage pictureOf(const fs::path& film, double seconds) {
    const auto file = film.string() + ".png";
    const auto command = "ffmpeg -v error -y -ss " + std::to_string(seconds) + " -i '" +
                         film.string() + "' -frames:v 1 '" + file + "'";
    EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(concurrency-mt-unsafe): one thread
    return QImage(QString::fromStdString(file));
}

Rgb colorAt(const QImage& picture, double x, double y) {
    const auto color = picture.pixelColor(static_cast<int>(x * picture.width()),
                                          static_cast<int>(y * picture.height()));
    return {color.red(), color.green(), color.blue()};
}

/// The editor and everything before it, used by one hand.
class SessionTest : public testing::TestWithParam<const char*> {
  protected:
    SessionTest() {
        desktop.setVariable(QStringLiteral("VANTRO_RESOURCES"),
                            QStringLiteral(VANTRO_SOURCE_RESOURCES));
        if (std::string_view(GetParam()) == "pointer")
            hand = std::make_unique<PointerHand>(desktop, bus);
        else
            hand = std::make_unique<ReaderHand>(desktop, bus);
    }

    void recordWithClicks();
    void saveWithWebcam();
    void cutAndSpeedUp();
    void changeZooms();
    void changeLook();
    void exportFilm(const QString& format, const fs::path& file);
    void undoAndRedoAll();

    void reopen();
    void save();
    void quit();
    model::Project saved() const { return app::files::readProjectFile(package); }
    void expectTheSourceTimes(const std::vector<Stripes>& film, const std::vector<Piece>& pieces);
    void expectTheZooms(const std::vector<Stripes>& film, const model::Project& project);
    void expectTheLook(const QImage& picture);
    std::string errors() { return desktop.program().readAllStandardError().toStdString(); }

    DesktopSession desktop;
    AccessibilityBus bus{desktop};
    std::unique_ptr<Hand> hand;
    const fs::path package = desktop.home() / "tour.vantro";
    model::Edit before; ///< what the recording began with

    // Where what is done to it lies, from the clicks, which come when they come.
    const model::ClickEvent& burst() const { return before.clickEvents[1]; }
    const model::ClickEvent& last() const { return before.clickEvents[4]; }
    double trim() const { return before.clickEvents[0].timestamp - 0.5; }
    double cut() const { return before.clickEvents[0].timestamp + 0.6; }
    double split() const { return last().timestamp - 1.4; }
};

/// One click, then three that are one zoom, then one more, on a screen that tells the time.
void SessionTest::recordWithClicks() {
    StripedScreen screen(desktop.server(), width, height);
    desktop.startProgram();
    hand->press(radio, QStringLiteral("Screen"));
    EXPECT_TRUE(
        eventually([&] { return hand->find(radio, QStringLiteral("Screen")).isChecked(); }));
    hand->press(button, QStringLiteral("Record.*"));
    hand->find(QStringLiteral("label"), QStringLiteral("00:01"));
    screen.follow();
    const int begin = screen.shownTick() - 10; // the time of the recording's first picture
    const auto pass = [&](int ticks) {
        EXPECT_TRUE(eventually([&] {
            screen.follow();
            return screen.shownTick() >= begin + ticks;
        }));
    };
    for (const auto& [tick, x] : {std::pair{17, 300}, {38, 700}, {42, 760}, {46, 820}, {75, 640}}) {
        pass(tick);
        desktop.xdo({"mousemove", QString::number(x), "300", "click", "1"});
    }
    pass(95);
    hand->press(button, QStringLiteral("Stop"));
    hand->find(button, QStringLiteral("Save Project"));
}

/// The recording's project, and beside its movie one of a camera, which this desktop has none of.
void SessionTest::saveWithWebcam() {
    hand->press(button, QStringLiteral("Save Project"));
    hand->chooseFile(QStringLiteral("Save Project"), package);
    ASSERT_TRUE(eventually([&] { return fs::exists(package / "project.json"); })) << errors();
    quit();
    writeMovie(package / "webcam.mov", 320, 240, 10, 100,
               [](media::PixelBuffer& bgra, int) { fill(bgra, {255, 0, 255}); });
    auto project = nlohmann::json::parse(contentOf(package / "project.json"));
    project["metadata"]["hasWebcam"] = true;
    std::ofstream(package / "project.json") << project.dump(2);
    before = saved().edit;
    ASSERT_EQ(before.clickEvents.size(), 5U);
    reopen();
}

void SessionTest::cutAndSpeedUp() {
    hand->moveTo(QStringLiteral("Start of segment 1"), trim());
    hand->markRange(cut(), cut() + 0.6);
    hand->keys(QStringLiteral("Delete"));
    hand->find(item, QStringLiteral("Segment 2, 1x"));
    hand->moveTo(QStringLiteral("Playhead"), split());
    hand->press(button, QStringLiteral("Split at the playhead.*"));
    hand->press(item, QStringLiteral("Segment 3, 1x"));
    hand->press(radio, QStringLiteral("2x"));
    hand->find(item, QStringLiteral("Segment 3, 2x"));
}

void SessionTest::changeZooms() {
    hand->press(slider, zoomName(burst().timestamp));
    hand->press(button, QStringLiteral("Delete Zoom"));
    hand->moveBy(zoomName(last().timestamp), -1);
    hand->find(slider, zoomName(last().timestamp - 1));
}

void SessionTest::changeLook() {
    hand->press(radio, QStringLiteral("Picture"));
    hand->press(radio, QStringLiteral("Picture 5"));
    hand->press(radio, QStringLiteral("Top left"));
}

void SessionTest::exportFilm(const QString& format, const fs::path& file) {
    hand->press(button, QStringLiteral("Export"));
    hand->press(QStringLiteral("combo box"), QStringLiteral("Format"));
    hand->press(item, format);
    hand->press(button, QStringLiteral("Export"), QStringLiteral("Export Settings"));
    hand->chooseFile(QStringLiteral("Export"), file);
    EXPECT_TRUE(eventually([&] { return fs::exists(file); }, std::chrono::seconds(60))) << errors();
    hand->find(QStringLiteral("alert message"),
               QStringLiteral("Exported ") + QString::fromStdString(file.filename()));
    hand->press(button, QStringLiteral("Close"));
}

void SessionTest::reopen() {
    desktop.startProgram({QString::fromStdString(package.string())});
    hand->find(QStringLiteral("label"), QStringLiteral("00:0[1-9]")); // the movie is open
}

void SessionTest::save() {
    hand->keys(QStringLiteral("ctrl+s"));
    hand->find(QStringLiteral("frame"), QStringLiteral("[^*•]* — Vantro"));
}

void SessionTest::quit() {
    hand->keys(QStringLiteral("ctrl+q"));
    EXPECT_TRUE(eventually([&] { return desktop.program().waitForFinished(1); }));
    EXPECT_EQ(desktop.program().exitCode(), 0) << errors();
}

void SessionTest::undoAndRedoAll() {
    const auto edited = saved().edit;
    while (bus.find(button, QRegularExpression("^Undo [^(]")))
        hand->press(button, QStringLiteral("Undo.*"));
    save();
    EXPECT_EQ(saved().edit, before);
    while (bus.find(button, QRegularExpression("^Redo [^(]")))
        hand->press(button, QStringLiteral("Redo.*"));
    save();
    EXPECT_EQ(saved().edit, edited);
}

void SessionTest::expectTheSourceTimes(const std::vector<Stripes>& film,
                                       const std::vector<Piece>& pieces) {
    const auto source = stripesOf(package / "recording.mov");
    EXPECT_NEAR(static_cast<double>(film.size()) / 30, filmLength(pieces), 0.07);
    int told = 0;
    for (std::size_t frame = 0; frame < film.size(); ++frame) {
        const auto at = sourceTime(pieces, static_cast<double>(frame) / 30);
        // A busy machine skips colors; then a picture's neighbors tell what it may show.
        int first = StripedScreen::ticks;
        int last = -1;
        for (auto near = std::max(frameAt(at), 2UL) - 2;
             near <= std::min(frameAt(at) + 2, source.size() - 1); ++near)
            if (const int tick = source[near].tick; tick >= 0) {
                first = std::min(first, tick);
                last = std::max(last, tick);
            }
        const bool isAtCut = std::ranges::any_of(pieces, [&](const Piece& piece) {
            return std::abs(static_cast<double>(frame) / 30 - piece.start) < 0.02;
        });
        if (film[frame].tick < 0 || last < 0 || isAtCut)
            continue;
        ++told;
        EXPECT_TRUE(film[frame].tick >= first && film[frame].tick <= last)
            << film[frame].tick << " in frame " << frame << ", source " << at;
    }
    EXPECT_GT(told, static_cast<int>(film.size()) * 9 / 10);
}

void SessionTest::expectTheZooms(const std::vector<Stripes>& film, const model::Project& project) {
    const auto pieces = piecesOf(project);
    const auto& zooms = project.edit.clickEvents;
    ASSERT_EQ(zooms.size(), 2U);
    const auto periodAt = [&](double source) {
        return film.at(frameAt(filmTime(pieces, source))).period;
    };
    const double plain = periodAt(burst().timestamp);
    EXPECT_NEAR(plain / StripedScreen::period, 0.84, 0.05) << "the padding alone shrinks it";
    EXPECT_GT(periodAt(zooms[0].timestamp) / plain, 1.2) << "still on its way";
    EXPECT_NEAR(periodAt(zooms[1].timestamp) / plain, 1.5, 0.05);
    EXPECT_NEAR(zooms[1].timestamp, last().timestamp - 1, 0.02);
    EXPECT_NEAR(periodAt(zooms[1].timestamp + zooms[1].endOffset + 0.1) / plain, 1, 0.02)
        << "where it was before";
}

void SessionTest::expectTheLook(const QImage& picture) {
    const auto file = model::BackgroundCatalog(VANTRO_SOURCE_RESOURCES)
                          .builtIn("builtin-05")
                          .value_or(model::BackgroundImageSource());
    const QImage background =
        QImage(QString::fromStdString(file.path.string()))
            .scaled(picture.size(), Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    const QPoint margin((background.width() - picture.width()) / 2,
                        (background.height() - picture.height()) / 2);
    const auto shown = background.copy(QRect(margin, picture.size()));
    for (const auto& [x, y] : {std::pair{0.985, 0.015}, {0.5, 0.015}, {0.985, 0.5}})
        EXPECT_LE(distance(colorAt(picture, x, y), colorAt(shown, x, y)), 16) << x << ", " << y;
    EXPECT_LE(distance(colorAt(picture, 0.1, 0.12), {255, 0, 255}), 16) << "the webcam";
    for (const auto& [x, y] : {std::pair{0.9, 0.12}, {0.1, 0.88}, {0.9, 0.88}})
        EXPECT_GT(distance(colorAt(picture, x, y), {255, 0, 255}), 60);
}

TEST_P(SessionTest, LeadsFromARecordingToItsFilmAndBack) {
    ASSERT_NO_FATAL_FAILURE(recordWithClicks());
    ASSERT_NO_FATAL_FAILURE(saveWithWebcam());
    cutAndSpeedUp();
    changeZooms();
    changeLook();
    const auto movie = desktop.home() / "tour.mp4";
    const auto gif = desktop.home() / "tour.gif";
    exportFilm(QStringLiteral("MP4 video"), movie);
    exportFilm(QStringLiteral("Animated GIF"), gif);
    save();
    const auto project = saved();
    undoAndRedoAll();
    quit();
    reopen();
    hand->find(item, QStringLiteral("Segment 3, 2x"));
    EXPECT_TRUE(hand->find(radio, QStringLiteral("Top left")).isChecked());
    quit();

    const auto pieces = piecesOf(project);
    ASSERT_EQ(pieces.size(), 3U);
    EXPECT_NEAR(pieces[0].from, trim(), 0.02);
    EXPECT_NEAR(pieces[1].from - pieces[0].to, 0.6, 0.03);
    EXPECT_NEAR(pieces[2].from, split(), 0.03);
    const auto film = stripesOf(movie);
    expectTheSourceTimes(film, pieces);
    expectTheZooms(film, project);
    const auto still = filmTime(pieces, burst().timestamp);
    const auto picture = pictureOf(movie, still);
    EXPECT_EQ(picture.size(), QSize(width, height));
    expectTheLook(picture);
    const auto small = pictureOf(gif, still);
    EXPECT_EQ(small.size(), QSize(640, 450));
    expectTheLook(small);
    EXPECT_NEAR(std::stod(probe(gif)["format"]["duration"].get<std::string>()), filmLength(pieces),
                0.1);
}

INSTANTIATE_TEST_SUITE_P(Hands, SessionTest, testing::Values("pointer", "reader"),
                         [](const auto& hand) { return std::string(hand.param); });

} // namespace
} // namespace vantro::test

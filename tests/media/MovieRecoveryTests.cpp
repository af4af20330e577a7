#include "TestMovies.h"
#include "base/Journal.h"
#include "media/Asset.h"
#include "media/AssetWriter.h"
#include "media/MovieRecovery.h"
#include "support/Eventually.h"

#include <fstream>

namespace vantro::media {
namespace {

namespace fs = std::filesystem;
using test::eventually;

constexpr test::Rgb painted{200, 60, 90};
constexpr int width = 320;
constexpr int height = 192;

std::size_t journalledPackets(const fs::path& movie) {
    return static_cast<std::size_t>(
        std::ranges::count_if(base::readJournal(movieJournalPath(movie)),
                              [](const std::string& line) { return line.starts_with("packet"); }));
}

/// A live recording that is never finished: what lies on disk is looked at while it goes on, which
/// is what a killed program would leave.
class InterruptedRecording : public ::testing::Test {
  protected:
    void begin() {
        const VideoSettings video{width, height, 20'000'000, 60, 0.5, true};
        writer = std::make_unique<AssetWriter>(movie, FileType::quickTimeMovie, video);
        writer->startWriting();
        writer->startSession({0, 1});
    }

    void appendPictures(int count) {
        for (int end = next + count; next < end; ++next) {
            ASSERT_TRUE(eventually([this] { return writer->isReadyForMoreMediaData(); }));
            ASSERT_TRUE(writer->append({.pixels = test::paintedNumber(next, width, height, painted),
                                        .presentationTime = {next, 60},
                                        .duration = {}}));
        }
    }

    void awaitPackets(std::size_t count) {
        ASSERT_TRUE(eventually([&] { return journalledPackets(movie) >= count; }));
    }

    /// The files as they are now, with no writer at them.
    fs::path leftBehind() const {
        const auto copy = folder / "left behind.mov";
        const auto replace = fs::copy_options::overwrite_existing;
        fs::copy_file(movieJournalPath(movie), movieJournalPath(copy), replace);
        fs::copy_file(movie, copy, replace);
        return copy;
    }

    /// That pictures 0 to `count` - 1 are there at their times.
    static void expectPictures(const fs::path& path, int count) {
        FrameSource source(Asset::open(path), 0);
        for (int number = 0; number < count; ++number) {
            const auto frame = test::shownAt(source, {number, 60});
            EXPECT_EQ(frame.presentationTime, (MediaTime{number, 60}));
            ASSERT_EQ(test::numberIn(*frame.pixels), number);
        }
    }

    const test::TemporaryFolder folder;
    const fs::path movie = folder / "recording.mov";
    std::unique_ptr<AssetWriter> writer;
    int next = 0;
};

TEST_F(InterruptedRecording, KeepsWhatLiesBeforeTheDamage) {
    begin();
    appendPictures(40);
    awaitPackets(40); // so that nothing changes while it is looked at
    const auto size = fs::file_size(movie);
    const auto cut = leftBehind();
    fs::resize_file(cut, size - 3); // the disk came late with the last picture
    const auto count = static_cast<int>(journalledPackets(cut));
    recoverMovie(cut);
    expectPictures(cut, count - 1);

    const auto nonsense = leftBehind();
    std::ofstream(movieJournalPath(nonsense), std::ios::app) << "packet 0 12 twelve\npacket 0 4";
    recoverMovie(nonsense);
    expectPictures(nonsense, count);

    const auto overwritten = leftBehind();
    {
        std::fstream bytes(overwritten, std::ios::in | std::ios::out | std::ios::binary);
        bytes.seekp(static_cast<std::streamoff>(size / 2));
        bytes << std::string(size / 4, '\xff');
    }
    recoverMovie(overwritten);
    const auto duration = Asset::open(overwritten).duration();
    EXPECT_GT(duration, (MediaTime{5, 60}));
    EXPECT_LT(duration, (MediaTime{count, 60}));
}

} // namespace
} // namespace vantro::media

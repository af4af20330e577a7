// How long an hour's recording takes to finish, and to recover when its program was killed, beside
// the ffmpeg program writing the same packets into a new movie. The pictures are tiny, because all
// that counts here is their number; recovering also reads the media, as ffmpeg does.

#include "base/HostClock.h"
#include "media/AssetWriter.h"
#include "media/MovieRecovery.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <fmt/format.h>

namespace {

using namespace vantro;
namespace fs = std::filesystem;

constexpr int frameRate = 60;
constexpr int frames = 3600 * frameRate;

/// What is waited for until the journal has told of nearly all packets.
void awaitJournal(const fs::path& movie, std::size_t lines) {
    for (;;) {
        std::ifstream journal(media::movieJournalPath(movie));
        const std::istreambuf_iterator<char> begin(journal);
        if (static_cast<std::size_t>(std::count(begin, {}, '\n')) >= lines)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

void appendPictures(media::AssetWriter& writer) {
    for (int number = 0; number < frames; ++number) {
        auto picture = media::PixelBuffer::allocate(media::PixelFormat::i420, 64, 64);
        std::fill_n(picture->mutableRow(0, 0), picture->stride(0) * 64,
                    static_cast<std::uint8_t>(16 + number % 200));
        while (!writer.isReadyForMoreMediaData())
            std::this_thread::yield();
        writer.append({picture, {number, frameRate}, {1, frameRate}});
    }
}

template <typename Action>
double secondsOf(Action&& action) {
    const auto before = base::hostNow();
    action();
    return base::inSeconds(base::hostNow() - before);
}

} // namespace

int main() {
    auto pattern = (fs::temp_directory_path() / "vantro-bench-XXXXXX").string();
    const fs::path folder = ::mkdtemp(pattern.data());
    const auto movie = folder / "recording.mov";
    const auto killed = folder / "killed.mov";
    media::AssetWriter writer(movie, media::FileType::quickTimeMovie,
                              {.width = 64, .height = 64, .expectsRealTime = true});
    writer.startWriting();
    writer.startSession({});
    appendPictures(writer);
    awaitJournal(movie, frames);
    fs::copy_file(media::movieJournalPath(movie), media::movieJournalPath(killed));
    fs::copy_file(movie, killed);

    fmt::print("{} pictures\n", frames);
    fmt::print("finish             {:6.2f} s\n", secondsOf([&] { writer.finish(); }));
    fmt::print("recover            {:6.2f} s\n", secondsOf([&] { media::recoverMovie(killed); }));
    const auto command = fmt::format("ffmpeg -nostdin -loglevel error -i '{}' -c copy '{}'",
                                     movie.string(), (folder / "copy.mov").string());
    fmt::print("ffmpeg -c copy     {:6.2f} s\n", secondsOf([&] {
                   if (std::system(command.c_str()) != 0) // NOLINT(concurrency-mt-unsafe)
                       fmt::print("  (failed)\n");
               }));
    fs::remove_all(folder);
}

#include "resources/backgrounds/Catalogue.h"
#include "resources/backgrounds/JpegWriter.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

// Paints the built-in backgrounds and their thumbnails; run by the build.
namespace vantro::backgrounds {
namespace {

struct Options {
    std::filesystem::path directory;
    std::string size = "3840x2160";
    std::string only;
    unsigned threads = 0;
};

constexpr int thumbnailShare = 10;
constexpr int thumbnailQuality = 90;

Frame parsedSize(const std::string& text) {
    Frame frame;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%dx%d%c", &frame.width, &frame.height, &rest) != 2 || // NOLINT
        std::min(frame.width, frame.height) < thumbnailShare ||
        std::max(frame.width, frame.height) > 16384)
        throw CLI::ValidationError("--size", "expected WIDTHxHEIGHT, 10x10 to 16384x16384");
    return frame;
}

void write(const Entry& entry, const Frame& frame, const std::filesystem::path& directory,
           WorkerPool& pool) {
    const auto file = std::string(entry.name) + ".jpeg";
    const Canvas canvas = paint(entry, frame, pool);
    writeJpeg(directory / file, canvas.toBytes(entry.finish.grain, pool), entry.finish.quality);
    const Frame small{frame.width / thumbnailShare, frame.height / thumbnailShare};
    writeJpeg(directory / "Thumbnails" / file, canvas.reduced(small, pool).toBytes(0, pool),
              thumbnailQuality);
}

void run(const Options& options) {
    const Frame frame = parsedSize(options.size);
    const auto directory = options.directory / "Backgrounds";
    std::filesystem::create_directories(directory / "Thumbnails");
    WorkerPool pool(options.threads);
    int written = 0;
    for (const auto& entry : catalogue()) {
        if (!options.only.empty() && options.only != entry.name)
            continue;
        write(entry, frame, directory, pool);
        ++written;
    }
    if (written == 0)
        throw CLI::ValidationError("--only", "no background is named " + options.only);
}

} // namespace
} // namespace vantro::backgrounds

int main(int argc, char** argv) {
    CLI::App app{"Paints the built-in backgrounds into DIRECTORY/Backgrounds."};
    vantro::backgrounds::Options options;
    app.add_option("directory", options.directory, "where to write")->required();
    app.add_option("--size", options.size, "WIDTHxHEIGHT in pixels")->capture_default_str();
    app.add_option("--only", options.only, "paint the one of this name");
    app.add_option("--threads", options.threads, "0 for one a core")->capture_default_str();
    try {
        app.parse(argc, argv);
        vantro::backgrounds::run(options);
    } catch (const CLI::Error& error) {
        return app.exit(error);
    } catch (const std::exception& error) {
        fmt::print(stderr, "vantro-backgrounds: {}\n", error.what());
        return 1;
    }
    return 0;
}

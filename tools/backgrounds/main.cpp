#include "backgrounds/Generator.h"
#include "base/CommandOptions.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

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

constexpr int largestSide = 16384;

int parsedSide(const std::string& text) {
    const bool digits = !text.empty() && text.size() <= 5 &&
                        text.find_first_not_of("0123456789") == std::string::npos;
    const int side = digits ? std::stoi(text) : 0;
    if (side < thumbnailShare || side > largestSide)
        throw base::UsageError("--size", "expected WIDTHxHEIGHT, each 10 to 16384");
    return side;
}

Frame parsedSize(const std::string& text) {
    const auto cross = std::min(text.find('x'), text.size());
    return {parsedSide(text.substr(0, cross)),
            parsedSide(text.substr(std::min(cross + 1, text.size())))};
}

void run(const Options& options) {
    const Frame frame = parsedSize(options.size);
    base::WorkerPool pool(options.threads);
    bool found = false;
    for (const auto& entry : catalog()) {
        if (!options.only.empty() && options.only != entry.name)
            continue;
        writeBackground(entry, frame, options.directory / "Backgrounds", pool);
        found = true;
    }
    if (!found)
        throw base::UsageError("--only", "no background is named " + options.only);
}

} // namespace
} // namespace vantro::backgrounds

int main(int argc, char** argv) {
    vantro::base::CommandLineReader app(
        "Paints the built-in backgrounds into DIRECTORY/Backgrounds.");
    vantro::backgrounds::Options options;
    app.option("directory", options.directory, "where to write").required();
    app.option("--size", options.size, "WIDTHxHEIGHT in pixels, else 3840x2160");
    app.option("--only", options.only, "paint the one of this name");
    app.option("--threads", options.threads, "0, unless given, for one a core");
    if (const auto exitCode = app.read(argc, argv))
        return *exitCode;
    try {
        vantro::backgrounds::run(options);
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "vantro-backgrounds: {}\n", error.what());
        return 1;
    }
}

#include "backgrounds/Generator.h"

#include "backgrounds/JpegWriter.h"

#include <string>

namespace vantro::backgrounds {
namespace {

constexpr int thumbnailQuality = 90;

} // namespace

void writeBackground(const Entry& entry, const Frame& frame, const std::filesystem::path& directory,
                     base::WorkerPool& pool) {
    std::filesystem::create_directories(directory / "Thumbnails");
    const auto file = std::string(entry.name) + ".jpeg";
    const Canvas canvas = paint(entry, frame, pool);
    writeJpeg(directory / file, canvas.toBytes(entry.finish.grain, pool), entry.finish.quality);
    const Frame small{frame.width / thumbnailShare, frame.height / thumbnailShare};
    writeJpeg(directory / "Thumbnails" / file, canvas.reduced(small, pool).toBytes(0, pool),
              thumbnailQuality);
}

} // namespace vantro::backgrounds

#include "export/gif/GifWriter.h"

#include "base/Fatal.h"
#include "export/gif/FrameEncoder.h"
#include "export/gif/GifStream.h"
#include "model/VantroError.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vantro::exporting::gif {
namespace {

// In hundredths of a second, where a GIF has 16 bits. Ten minutes are a whole number of frames at
// the usual paces, so that what remains of a long pause is never too short for players.
constexpr std::int64_t longestDelay = 60000;

/// Runs a step of the writing; what goes wrong with the file reaches the user under `text`.
template <typename Step>
auto reported(const char* text, Step&& step) {
    try {
        return step();
    } catch (const std::filesystem::filesystem_error& error) {
        throw model::VantroError(model::VantroError::Kind::exportFailed,
                                 std::string(text) + ": " + error.path1().string() + ": " +
                                     error.code().message());
    }
}

constexpr auto cannotCreate = "Failed to create GIF destination";
constexpr auto cannotFinalize = "Failed to finalize GIF";

} // namespace

class GifWriter::Body {
  public:
    Body(const std::filesystem::path& target, int width, int height, media::MediaTime frameDelay)
        : m_stream(target), m_encoder(width, height), m_frameDelay(frameDelay) {}

    void append(const media::PixelBuffer& bgra) {
        auto image = m_encoder.encode(bgra);
        if (!image.empty()) {
            if (m_frameCount == 0)
                m_stream.write(m_encoder.fileHeader());
            else
                writePending();
            m_pending = std::move(image);
        }
        ++m_frameCount;
    }

    bool finish(const base::Finishing& finishing) {
        if (m_frameCount == 0)
            throw model::VantroError(model::VantroError::Kind::exportFailed,
                                     std::string(cannotFinalize) + ": " +
                                         m_stream.target().string() + ": no frames");
        writePending();
        m_stream.write(gif::fileTrailer);
        return m_stream.commit(finishing);
    }

  private:
    /// Writes the picture that has been shown up to the frame that comes now.
    void writePending() {
        const auto ticks = [this](std::int64_t frames) {
            const auto hundredths =
                base::checkedMultiply(base::checkedMultiply(frames, 100), m_frameDelay.value);
            return (hundredths + m_frameDelay.timescale / 2) / m_frameDelay.timescale;
        };
        auto delay = ticks(m_frameCount) - m_shownUntil;
        m_shownUntil += delay;
        for (; delay > longestDelay; delay -= longestDelay) {
            gif::setDelay(m_pending, longestDelay);
            m_stream.write(m_pending);
            m_pending = gif::emptyImage();
        }
        gif::setDelay(m_pending, static_cast<int>(delay));
        m_stream.write(m_pending);
    }

    gif::GifStream m_stream;
    gif::FrameEncoder m_encoder;
    media::MediaTime m_frameDelay;
    std::vector<std::uint8_t> m_pending; ///< the last picture, whose delay is not known yet
    std::int64_t m_frameCount = 0;
    std::int64_t m_shownUntil = 0; ///< when the pictures written so far end, hundredths of a second
};

GifWriter::GifWriter(std::filesystem::path target, int width, int height,
                     media::MediaTime frameDelay) {
    base::require(frameDelay.timescale > 0 && frameDelay.value * 50 >= frameDelay.timescale,
                  "GIF frames must last at least 1/50 s");
    m_body = reported(cannotCreate,
                      [&] { return std::make_unique<Body>(target, width, height, frameDelay); });
}

GifWriter::~GifWriter() = default;

void GifWriter::append(const media::PixelBuffer& bgra) {
    base::require(m_body != nullptr, "GIF frame after the end");
    reported(cannotFinalize, [&] { m_body->append(bgra); });
}

bool GifWriter::finish(const base::Finishing& finishing) {
    base::require(m_body != nullptr, "GIF finished twice");
    const bool isThere = reported(cannotFinalize, [&] { return m_body->finish(finishing); });
    m_body.reset();
    return isThere;
}

void GifWriter::cancel() {
    m_body.reset();
}

} // namespace vantro::exporting::gif

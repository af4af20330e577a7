#include "render/software/SoftwareRenderer.h"

#include "base/Fatal.h"
#include "base/WorkerPool.h"
#include "render/software/Backdrop.h"
#include "render/software/TilePainter.h"

#include <string>
#include <vector>

#include <fmt/format.h>

namespace vantro::render::software {
namespace {

/// Output pixels a tile: its rows in flight (source, mixed, scene and output) fit into 32 KiB of
/// cache, and the rows that neighbouring tiles both work out stay few; a 1080p frame still gives
/// each of many threads its share. Even, for the sake of 4:2:0.
constexpr int tileWidth = 512;
constexpr int tileHeight = 128;

class SoftwareRenderer final : public Renderer {
  public:
    SoftwareRenderer(const CursorImage& cursor, unsigned threads)
        : m_cursor(cursor)
        , m_workers(threads)
        , m_painters(m_workers.workerCount())
        , m_description(fmt::format("software ({}, {} thread{})", kernelTarget(),
                                    m_workers.workerCount(),
                                    m_workers.workerCount() == 1 ? "" : "s")) {}

    std::string_view description() const override { return m_description; }

    bool render(const RenderParams& params, media::PixelBuffer& output) override {
        base::require(params.source && output.width() == params.canvasWidth &&
                          output.height() == params.canvasHeight,
                      "output picture does not have the canvas size");
        const auto plan = planFrame(params, m_cursor);
        if (!plan)
            return true;
        TilePainter::Grounds grounds;
        if (plan->hasBackdrop) {
            m_backdrop.update(params, m_workers);
            grounds = {&m_backdrop.bgra(), plan->zoomX ? nullptr : &m_backdrop.as(output.format())};
        } else if (plan->recordingIsCopy() && holdsSamePixels(*params.source, output)) {
            grounds.still = params.source.get();
        }
        paintTiles(*plan, grounds, output);
        return true;
    }

  private:
    /// Whether copied bytes mean the same colours.
    static bool holdsSamePixels(const media::PixelBuffer& source,
                                const media::PixelBuffer& output) {
        return source.format() == output.format() &&
               (source.format() == media::PixelFormat::bgra || source.color() == output.color());
    }

    void paintTiles(const FramePlan& plan, const TilePainter::Grounds& grounds,
                    media::PixelBuffer& output) {
        const int across = (plan.width + tileWidth - 1) / tileWidth;
        const int down = (plan.height + tileHeight - 1) / tileHeight;
        m_workers.forEach(static_cast<std::size_t>(across) * static_cast<std::size_t>(down),
                          [&](std::size_t index, unsigned worker) {
                              const int x = static_cast<int>(index) % across * tileWidth;
                              const int y = static_cast<int>(index) / across * tileHeight;
                              const Tile tile{{x, std::min(x + tileWidth, plan.width)},
                                              {y, std::min(y + tileHeight, plan.height)}};
                              m_painters[worker].paint(plan, grounds, tile, output);
                          });
    }

    CursorTextures m_cursor;
    base::WorkerPool m_workers;
    std::vector<TilePainter> m_painters; // one for each worker
    Backdrop m_backdrop;
    std::string m_description;
};

} // namespace

std::unique_ptr<Renderer> makeSoftwareRenderer(const CursorImage& cursor, unsigned threads) {
    return std::make_unique<SoftwareRenderer>(cursor, threads);
}

} // namespace vantro::render::software

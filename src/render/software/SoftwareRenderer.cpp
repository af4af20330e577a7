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
/// cache, and the rows that neighboring tiles both work out stay few; a 1080p frame still gives
/// each of many threads its share. Even, for the sake of 4:2:0.
constexpr int tileWidth = 512;
constexpr int tileHeight = 128;

class SoftwareRenderer final : public Renderer {
  public:
    explicit SoftwareRenderer(unsigned threads)
        : m_workers(threads)
        , m_painters(m_workers.workerCount())
        , m_description(fmt::format("software ({}, {} thread{})", kernelTarget(),
                                    m_workers.workerCount(),
                                    m_workers.workerCount() == 1 ? "" : "s")) {}

    std::string_view description() const override { return m_description; }

    bool render(const Scene& scene, media::PixelBuffer& output) override {
        const media::PixelBuffer* source = scene.recording.picture.get();
        base::require(source != nullptr && output.width() == scene.canvas.width &&
                          output.height() == scene.canvas.height,
                      "a scene without a recording, or an output of another size");
        const FramePlan plan = planFrame(scene);
        TilePainter::Grounds grounds;
        if (scene.background && plan.hasBackdrop) {
            m_backdrop.update(*scene.background, scene.canvas, m_workers);
            grounds = {m_backdrop.bgra().get(),
                       plan.backdropX ? nullptr : &m_backdrop.as(output.format())};
        } else if (plan.recordingIsCopy() && holdsSamePixels(*source, output)) {
            grounds.still = source;
        }
        paintTiles(plan, grounds, output);
        return true;
    }

  private:
    /// Whether copied bytes mean the same colors.
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

    base::WorkerPool m_workers;
    std::vector<TilePainter> m_painters; // one for each worker
    Backdrop m_backdrop;
    std::string m_description;
};

} // namespace

std::unique_ptr<Renderer> makeSoftwareRenderer(unsigned threads) {
    return std::make_unique<SoftwareRenderer>(threads);
}

} // namespace vantro::render::software

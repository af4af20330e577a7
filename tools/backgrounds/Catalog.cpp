#include "backgrounds/Catalog.h"

#include "backgrounds/painters/Painters.h"

#include <array>
#include <utility>

namespace vantro::backgrounds {
namespace {

// Slow gradients keep their dither only at a high quality, and cost little there.
constexpr Finish smooth{.quality = 96};

constexpr std::array entries{
    Entry{"builtin-01", paintFoldsDark, smooth, 2},
    Entry{"builtin-02", paintFoldsLight, smooth, 2},
    Entry{"builtin-03", paintMeshDark, smooth, 4},
    Entry{"builtin-04", paintMeshLight, smooth, 4},
    Entry{"builtin-05", paintWavesDark, smooth},
    Entry{"builtin-06", paintWavesLight, smooth},
    Entry{"builtin-07", paintVeilsDark, smooth},
    Entry{"builtin-08", paintVeilsLight, smooth},
    Entry{"builtin-09", paintGlassDark, smooth},
    Entry{"builtin-10", paintGlassLight, smooth},
    Entry{"builtin-11-mirelune", paintDunes, {.bloom = 0.08F, .film = true, .vignette = 0.18F}},
    Entry{"builtin-12-mirelune", paintMist, {.bloom = 0.10F, .film = true, .vignette = 0.12F}},
    Entry{"builtin-13-mirelune", paintSea, {.bloom = 0.12F, .film = true, .vignette = 0.15F}},
    Entry{"builtin-14-mirelune", paintAurora, {.bloom = 0.15F, .film = true, .vignette = 0.15F}},
    Entry{"builtin-15-mirelune", paintMilkyWay, {.bloom = 0.12F, .film = true, .vignette = 0.15F}},
    Entry{"builtin-16-mirelune", paintForest, {.bloom = 0.08F, .film = true, .vignette = 0.12F}},
    Entry{"builtin-17-mirelune", paintBokeh, {.bloom = 0.15F, .film = true, .vignette = 0.25F}, 2},
    Entry{"builtin-18-mirelune", paintIce, {.bloom = 0.08F, .film = true, .vignette = 0.25F}},
    Entry{"builtin-19-mirelune", paintStone, {.bloom = 0.05F, .film = true, .vignette = 0.25F}},
    Entry{"builtin-20-mirelune", paintPaper, {.bloom = 0.08F, .film = true, .vignette = 0.12F}},
    Entry{"builtin-21-mirelune", paintLinen, {.film = true, .vignette = 0.25F}},
    Entry{"builtin-22-mirelune", paintCanyon, {.bloom = 0.08F, .film = true, .vignette = 0.15F}},
    Entry{"builtin-23-mirelune", paintLake, {.bloom = 0.08F, .film = true, .vignette = 0.12F}},
    Entry{"builtin-24-mirelune", paintClouds, {.bloom = 0.12F, .film = true, .vignette = 0.12F}, 2},
    Entry{"builtin-25-mirelune", paintWetSand, {.bloom = 0.08F, .film = true, .vignette = 0.18F}},
    Entry{"builtin-26-mirelune", paintSnow, {.bloom = 0.08F, .film = true, .vignette = 0.15F}},
};

Canvas painted(const Entry& entry, const Frame& frame, base::WorkerPool& pool) {
    const int coarseness = entry.coarseness;
    // Rounded up: the painted pixels must cover the picture.
    const Frame coarse{(frame.width + coarseness - 1) / coarseness,
                       (frame.height + coarseness - 1) / coarseness};
    Canvas canvas(coarse);
    canvas.paint(entry.makePainter(coarse, pool), pool);
    return coarseness > 1 ? canvas.enlarged(frame, pool) : std::move(canvas);
}

} // namespace

std::span<const Entry> catalog() {
    return entries;
}

Canvas paint(const Entry& entry, const Frame& frame, base::WorkerPool& pool) {
    Canvas canvas = painted(entry, frame, pool);
    const Finish& finish = entry.finish;
    if (finish.bloom > 0)
        canvas.addBloom(finish.bloom, finish.bloomRadius, pool);
    if (finish.vignette > 0)
        canvas.addVignette(finish.vignette, pool);
    if (finish.film)
        canvas.develop(pool);
    return canvas;
}

} // namespace vantro::backgrounds

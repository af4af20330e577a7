#pragma once

#include "backgrounds/Canvas.h"

// The scenes. Each function prepares one for `frame`, with the pool's help where that is much work.
namespace vantro::backgrounds {

Painter paintFoldsDark(const Frame& frame, base::WorkerPool& pool);
Painter paintFoldsLight(const Frame& frame, base::WorkerPool& pool);
Painter paintMeshDark(const Frame& frame, base::WorkerPool& pool);
Painter paintMeshLight(const Frame& frame, base::WorkerPool& pool);
Painter paintWavesDark(const Frame& frame, base::WorkerPool& pool);
Painter paintWavesLight(const Frame& frame, base::WorkerPool& pool);
Painter paintVeilsDark(const Frame& frame, base::WorkerPool& pool);
Painter paintVeilsLight(const Frame& frame, base::WorkerPool& pool);
Painter paintGlassDark(const Frame& frame, base::WorkerPool& pool);
Painter paintGlassLight(const Frame& frame, base::WorkerPool& pool);

Painter paintDunes(const Frame& frame, base::WorkerPool& pool);
Painter paintMist(const Frame& frame, base::WorkerPool& pool);
Painter paintSea(const Frame& frame, base::WorkerPool& pool);
Painter paintAurora(const Frame& frame, base::WorkerPool& pool);
Painter paintMilkyWay(const Frame& frame, base::WorkerPool& pool);
Painter paintForest(const Frame& frame, base::WorkerPool& pool);
Painter paintBokeh(const Frame& frame, base::WorkerPool& pool);
Painter paintIce(const Frame& frame, base::WorkerPool& pool);
Painter paintStone(const Frame& frame, base::WorkerPool& pool);
Painter paintPaper(const Frame& frame, base::WorkerPool& pool);
Painter paintLinen(const Frame& frame, base::WorkerPool& pool);
Painter paintCanyon(const Frame& frame, base::WorkerPool& pool);
Painter paintLake(const Frame& frame, base::WorkerPool& pool);
Painter paintClouds(const Frame& frame, base::WorkerPool& pool);
Painter paintWetSand(const Frame& frame, base::WorkerPool& pool);
Painter paintSnow(const Frame& frame, base::WorkerPool& pool);

} // namespace vantro::backgrounds

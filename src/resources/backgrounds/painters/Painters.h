#pragma once

#include "resources/backgrounds/Canvas.h"

// The scenes. Each function prepares one for `frame`, with the pool's help where that is much work.
namespace vantro::backgrounds {

Painter paintFoldsDark(const Frame& frame, WorkerPool& pool);
Painter paintFoldsLight(const Frame& frame, WorkerPool& pool);
Painter paintMeshDark(const Frame& frame, WorkerPool& pool);
Painter paintMeshLight(const Frame& frame, WorkerPool& pool);
Painter paintWavesDark(const Frame& frame, WorkerPool& pool);
Painter paintWavesLight(const Frame& frame, WorkerPool& pool);
Painter paintVeilsDark(const Frame& frame, WorkerPool& pool);
Painter paintVeilsLight(const Frame& frame, WorkerPool& pool);
Painter paintGlassDark(const Frame& frame, WorkerPool& pool);
Painter paintGlassLight(const Frame& frame, WorkerPool& pool);

Painter paintDunes(const Frame& frame, WorkerPool& pool);
Painter paintMist(const Frame& frame, WorkerPool& pool);
Painter paintSea(const Frame& frame, WorkerPool& pool);
Painter paintAurora(const Frame& frame, WorkerPool& pool);
Painter paintMilkyWay(const Frame& frame, WorkerPool& pool);
Painter paintForest(const Frame& frame, WorkerPool& pool);
Painter paintBokeh(const Frame& frame, WorkerPool& pool);
Painter paintIce(const Frame& frame, WorkerPool& pool);
Painter paintStone(const Frame& frame, WorkerPool& pool);
Painter paintPaper(const Frame& frame, WorkerPool& pool);
Painter paintLinen(const Frame& frame, WorkerPool& pool);
Painter paintCanyon(const Frame& frame, WorkerPool& pool);
Painter paintLake(const Frame& frame, WorkerPool& pool);
Painter paintClouds(const Frame& frame, WorkerPool& pool);
Painter paintWetSand(const Frame& frame, WorkerPool& pool);
Painter paintSnow(const Frame& frame, WorkerPool& pool);

} // namespace vantro::backgrounds

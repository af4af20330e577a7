// Times whole frames on the GPU: source upload, drawing, and bringing the result back. Prints the
// device's name, without which the numbers mean nothing. `--software-device` also takes a driver
// that draws in software.

#include "render/CursorImage.h"
#include "render/FrameLayout.h"
#include "render/gpu/MetalRenderer.h"

#include <array>
#include <cstring>
#include <string_view>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

namespace vantro {
namespace {

std::shared_ptr<PixelBuffer> gradient(PixelFormat format, int width, int height, int shift) {
    auto picture = PixelBuffer::allocate(format, width, height);
    for (int plane = 0; plane < picture->planeCount(); ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            for (int i = 0; i < picture->stride(plane); ++i)
                picture->mutableRow(plane, y)[i] = static_cast<std::uint8_t>(i + y + shift);
    return picture;
}

/// A zoomed frame with background, shadow, rounded corners and cursor.
RenderParams zoomedFrame(int width, int height) {
    const Size size{static_cast<double>(width), static_cast<double>(height)};
    const RecordingInset inset = recordingInset(size, size, BackgroundSettings{});
    RenderParams params;
    params.canvasWidth = width;
    params.canvasHeight = height;
    params.keyframe = {1.5, size.width * 0.4, size.height * 0.6};
    params.bgColor = RenderColor{0.2F, 0.4F, 0.6F, 1};
    params.insetX = static_cast<float>(inset.rect.x);
    params.insetY = static_cast<float>(inset.rect.y);
    params.insetW = static_cast<float>(inset.rect.width);
    params.insetH = static_cast<float>(inset.rect.height);
    params.cornerRadius = static_cast<float>(inset.cornerRadius);
    params.hasBackground = true;
    params.cursorX = static_cast<float>(width) * 0.4F;
    params.cursorY = static_cast<float>(height) * 0.6F;
    return params;
}

/// Arguments: width, height, and whether both ends are planar.
void drawFrames(benchmark::State& state, Renderer& renderer) {
    const auto width = static_cast<int>(state.range(0));
    const auto height = static_cast<int>(state.range(1));
    const PixelFormat format = state.range(2) != 0 ? PixelFormat::i420 : PixelFormat::bgra;
    // Two sources in turn, so that each frame is sent.
    const std::array sources{gradient(format, width, height, 0),
                             gradient(format, width, height, 9)};
    const auto output = PixelBuffer::allocate(format, width, height);
    RenderParams params = zoomedFrame(width, height);
    std::size_t frame = 0;
    for (auto _ : state) {
        params.source = sources[frame++ % sources.size()];
        if (!renderer.render(params, *output)) {
            state.SkipWithError("the GPU gave up");
            break;
        }
    }
    state.SetLabel(format == PixelFormat::i420 ? "i420 to i420" : "bgra to bgra");
}

} // namespace
} // namespace vantro

int main(int argc, char** argv) {
    vantro::GpuOptions options;
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) != "--software-device")
            continue;
        options.allowSoftwareDevice = true;
        std::memmove(&argv[i], &argv[i + 1], sizeof(char*) * static_cast<std::size_t>(argc - i));
        --argc;
        break;
    }
    auto renderer =
        vantro::makeMetalRenderer(vantro::standardCursor(vantro::CursorStyle::builtIn), options);
    if (!renderer) {
        fmt::print(stderr, "no GPU to measure: {}\n", renderer.error());
        return 1;
    }
    fmt::print(stderr, "{}\n", (*renderer)->description());
    benchmark::RegisterBenchmark(
        "zoomedFrame", [&](benchmark::State& state) { vantro::drawFrames(state, **renderer); })
        ->Args({1920, 1080, 0})
        ->Args({1920, 1080, 1})
        ->Args({3840, 2160, 0})
        ->Args({3840, 2160, 1})
        ->Unit(benchmark::kMillisecond)
        ->MeasureProcessCPUTime()
        ->UseRealTime();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// Times whole frames on the GPU: source upload, drawing, and bringing the result back. Prints the
// device's name, without which the numbers mean nothing. `--software-device` also takes a driver
// that draws in software.

#include "render/scene/Scene.h"
#include "render/vulkan/VulkanRenderer.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

namespace vantro {
namespace {

std::shared_ptr<media::PixelBuffer> gradient(media::PixelFormat format, int width, int height,
                                             int shift) {
    auto picture = media::PixelBuffer::allocate(format, width, height);
    for (int plane = 0; plane < picture->planeCount(); ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            for (int i = 0; i < picture->stride(plane); ++i)
                picture->mutableRow(plane, y)[i] = static_cast<std::uint8_t>(i + y + shift);
    return picture;
}

/// A zoomed frame with background, shadow, rounded corners and cursor.
render::Scene zoomedScene(media::PixelFormat format, int width, int height, int shift) {
    static const render::CursorTextures arrow(render::standardCursor(render::CursorStyle::builtIn));
    const model::BackgroundSettings background{.type = model::BackgroundColor{0.2, 0.4, 0.6}};
    render::SceneContent content;
    content.recording = gradient(format, width, height, shift);
    content.camera = {1.5, width * 0.4, height * 0.6};
    content.background = &background;
    content.pointer = render::PixelPoint{width * 0.4, height * 0.6};
    content.cursor = &arrow;
    return render::makeScene({width, height}, content);
}

/// Made by main before the measuring begins.
std::unique_ptr<render::Renderer>& measured() {
    static std::unique_ptr<render::Renderer> renderer;
    return renderer;
}

/// Arguments: width, height, and whether both ends are planar.
void zoomedFrame(benchmark::State& state) {
    const auto width = static_cast<int>(state.range(0));
    const auto height = static_cast<int>(state.range(1));
    const media::PixelFormat format =
        state.range(2) != 0 ? media::PixelFormat::i420 : media::PixelFormat::bgra;
    // Two sources in turn, so that each frame is sent.
    const std::array scenes{zoomedScene(format, width, height, 0),
                            zoomedScene(format, width, height, 9)};
    const auto output = media::PixelBuffer::allocate(format, width, height);
    std::size_t frame = 0;
    while (state.KeepRunning()) {
        if (!measured()->render(scenes[frame++ % scenes.size()], *output)) {
            state.SkipWithError("the GPU gave up");
            break;
        }
    }
    state.SetLabel(format == media::PixelFormat::i420 ? "i420 to i420" : "bgra to bgra");
}

BENCHMARK(zoomedFrame)
    ->Args({1920, 1080, 0})
    ->Args({1920, 1080, 1})
    ->Args({3840, 2160, 0})
    ->Args({3840, 2160, 1})
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

} // namespace
} // namespace vantro

int main(int argc, char** argv) {
    vantro::render::vulkan::GpuOptions options;
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) != "--software-device")
            continue;
        options.allowSoftwareDevice = true;
        std::copy(argv + i + 1, argv + argc + 1, argv + i);
        --argc;
        break;
    }
    auto renderer = vantro::render::vulkan::makeVulkanRenderer(options);
    if (!renderer) {
        fmt::print(stderr, "no GPU to measure: {}\n", renderer.error());
        return 1;
    }
    vantro::measured() = std::move(*renderer);
    fmt::print(stderr, "{}\n", vantro::measured()->description());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    vantro::measured().reset(); // while the driver is still loaded
    return 0;
}

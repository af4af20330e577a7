#include "media/values/PixelBuffer.h"
#include "render/scene/CursorImage.h"
#include "render/scene/FrameLayout.h"
#include "render/scene/ShadowImage.h"
#include "render/software/SoftwareRenderer.h"

#include <cstring>

#include <benchmark/benchmark.h>

namespace vantro {
namespace {

std::shared_ptr<media::PixelBuffer> screenLikePicture(media::PixelFormat format, int width,
                                                      int height) {
    auto picture = media::PixelBuffer::allocate(format, width, height);
    for (int plane = 0; plane < picture->planeCount(); ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            for (int x = 0; x < picture->stride(plane); ++x)
                picture->mutableRow(plane, y)[x] =
                    static_cast<std::uint8_t>(plane == 0 ? (x * 7 ^ y * 13) : 96 + (x + y) % 64);
    return picture;
}

struct Scene {
    bool background = true;
    double scale = 1;
    bool cursor = true;
    bool webcam = false;
};

render::RenderParams frame(const Scene& scene, media::PixelFormat sourceFormat, int width,
                           int height) {
    render::RenderParams params;
    params.source = screenLikePicture(sourceFormat, width, height);
    params.canvasWidth = width;
    params.canvasHeight = height;
    params.keyframe = {scene.scale, width * 0.4, height * 0.45};
    params.hasBackground = scene.background;
    const model::Size size{static_cast<double>(width), static_cast<double>(height)};
    const auto inset = render::recordingInset(
        size, size, scene.background ? std::optional(model::BackgroundSettings{}) : std::nullopt);
    params.insetX = static_cast<float>(inset.rect.x);
    params.insetY = static_cast<float>(inset.rect.y);
    params.insetW = static_cast<float>(inset.rect.width);
    params.insetH = static_cast<float>(inset.rect.height);
    params.cornerRadius = static_cast<float>(inset.cornerRadius);
    params.bgColor = render::RenderColor{0.2F, 0.3F, 0.5F, 1};
    if (scene.cursor) {
        params.cursorX = static_cast<float>(width * 0.4);
        params.cursorY = static_cast<float>(height * 0.45);
        params.cursorScale = 3;
    }
    if (scene.webcam) {
        params.webcam = screenLikePicture(media::PixelFormat::bgra, 1280, 720);
        const auto placement = render::webcamPlacement(
            size, {1280, 720}, model::WebcamPosition::bottomRight, 0.2, scene.scale);
        params.webcamRect = placement.square;
        params.webcamDrawRect = placement.drawRect;
        params.webcamCornerRadius = placement.cornerRadius;
    }
    return params;
}

void drawFrames(benchmark::State& state, const Scene& scene, media::PixelFormat sourceFormat,
                media::PixelFormat outputFormat, int width, int height) {
    const auto renderer = render::software::makeSoftwareRenderer(
        render::standardCursor(render::CursorStyle::builtIn), 1);
    const render::RenderParams params = frame(scene, sourceFormat, width, height);
    const auto output = media::PixelBuffer::allocate(outputFormat, width, height);
    renderer->render(params, *output); // draws backdrop and shadow, which frames share
    while (state.KeepRunning()) {
        renderer->render(params, *output);
        benchmark::DoNotOptimize(output->row(0, 0));
    }
    state.SetLabel(std::string(renderer->description()));
}

void drawShadowOnce(benchmark::State& state, int width, int height, float radius) {
    const render::ShadowCacheKey key{width,
                                     height,
                                     static_cast<float>(width) * 0.08F,
                                     static_cast<float>(height) * 0.08F,
                                     static_cast<float>(width) * 0.84F,
                                     static_cast<float>(height) * 0.84F,
                                     radius};
    while (state.KeepRunning())
        benchmark::DoNotOptimize(render::drawShadow(key));
}

void registerFrames(const std::string& size, int width, int height) {
    struct Case {
        const char* name;
        Scene scene;
    };
    const Case cases[] = {
        {"zoomed2.0_background", {true, 2.0, true, false}},
        {"zoomed1.5_background", {true, 1.5, true, false}},
        {"zoomed1.1_background", {true, 1.1, true, false}},
        {"zoomed2.0_background_webcam", {true, 2.0, true, true}},
        {"unzoomed_background", {true, 1.0, true, false}},
        {"zoomed2.0_bare", {false, 2.0, true, false}},
        {"unzoomed_bare", {false, 1.0, true, false}},
    };
    const std::pair<const char*, media::PixelFormat> formats[] = {
        {"bgra", media::PixelFormat::bgra}, {"i420", media::PixelFormat::i420}};
    for (const auto& entry : cases)
        for (const auto& [sourceName, source] : formats)
            for (const auto& [outputName, output] : formats)
                benchmark::RegisterBenchmark(
                    (size + "/" + entry.name + "/" + sourceName + "_to_" + outputName).c_str(),
                    [=](benchmark::State& state) {
                        drawFrames(state, entry.scene, source, output, width, height);
                    })
                    ->Unit(benchmark::kMillisecond);
}

} // namespace
} // namespace vantro

int main(int argc, char** argv) {
    vantro::registerFrames("1080p", 1920, 1080);
    vantro::registerFrames("2160p", 3840, 2160);
    benchmark::RegisterBenchmark("shadow/2160p_radius32", [](benchmark::State& state) {
        vantro::drawShadowOnce(state, 3840, 2160, 32);
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("shadow/2160p_radius900", [](benchmark::State& state) {
        vantro::drawShadowOnce(state, 3840, 2160, 900);
    })->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

#include "media/values/PixelBuffer.h"
#include "render/scene/Scene.h"
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

struct Shown {
    bool background = true;
    double scale = 1;
    bool cursor = true;
    bool webcam = false;
};

render::Scene frame(const Shown& shown, media::PixelFormat sourceFormat, int width, int height) {
    static const render::CursorTextures arrow(render::standardCursor(render::CursorStyle::builtIn));
    const model::BackgroundSettings background{.type = model::BackgroundColor{0.2, 0.3, 0.5}};
    render::SceneContent content;
    content.recording = screenLikePicture(sourceFormat, width, height);
    content.camera = {shown.scale, width * 0.4, height * 0.45};
    content.background = shown.background ? &background : nullptr;
    if (shown.cursor)
        content.pointer = render::PixelPoint{width * 0.4, height * 0.45};
    content.cursorScale = 3;
    content.cursor = &arrow;
    if (shown.webcam)
        content.webcam = screenLikePicture(media::PixelFormat::bgra, 1280, 720);
    content.webcamSize = 0.2;
    return render::makeScene({width, height}, content);
}

void drawFrames(benchmark::State& state, const Shown& shown, media::PixelFormat sourceFormat,
                media::PixelFormat outputFormat, int width, int height) {
    const auto renderer = render::software::makeSoftwareRenderer(1);
    const render::Scene scene = frame(shown, sourceFormat, width, height);
    const auto output = media::PixelBuffer::allocate(outputFormat, width, height);
    renderer->render(scene, *output); // draws backdrop and shadow, which frames share
    while (state.KeepRunning()) {
        renderer->render(scene, *output);
        benchmark::DoNotOptimize(output->row(0, 0));
    }
    state.SetLabel(std::string(renderer->description()));
}

void drawShadowOnce(benchmark::State& state, int width, int height, double radius) {
    const render::ShadowShape shape{
        {width, height}, {width * 0.08, height * 0.08, width * 0.84, height * 0.84}, radius};
    while (state.KeepRunning())
        benchmark::DoNotOptimize(render::drawShadow(shape));
}

void registerFrames(const std::string& size, int width, int height) {
    struct Case {
        const char* name;
        Shown shown;
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
                        drawFrames(state, entry.shown, source, output, width, height);
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

// Color conversion of 1080p pictures, ours beside swscale: CPU time of one core for a picture. And
// the search for hardware encoders beside the opening of the software one.

#include "media/av/encode/HardwareEncoder.h"
#include "media/av/encode/SoftwareEncoder.h"
#include "media/color/ColorConversion.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <random>

#include <benchmark/benchmark.h>

extern "C" {
#include <libswscale/swscale.h>
}

namespace {

using namespace vantro;

constexpr int width = 1920;
constexpr int height = 1080;

std::shared_ptr<media::PixelBuffer> noise(media::PixelFormat format) {
    auto picture = media::PixelBuffer::allocate(format, width, height);
    std::mt19937 random(1);
    for (int plane = 0; plane < picture->planeCount(); ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            std::generate_n(picture->mutableRow(plane, y), picture->stride(plane),
                            std::ref(random));
    return picture;
}

void bgraToI420(benchmark::State& state) {
    const auto source = noise(media::PixelFormat::bgra);
    const auto destination = noise(media::PixelFormat::i420);
    for (auto _ : state)
        media::color::convertBgraToI420(*source, *destination);
}

void i420ToBgra(benchmark::State& state) {
    const auto source = noise(media::PixelFormat::i420);
    const auto destination = noise(media::PixelFormat::bgra);
    for (auto _ : state)
        media::color::convertI420ToBgra(*source, *destination);
}

void bgraToI420BySwscale(benchmark::State& state) {
    const auto source = noise(media::PixelFormat::bgra);
    const auto destination = noise(media::PixelFormat::i420);
    const std::unique_ptr<SwsContext, decltype(&sws_freeContext)> scaler(
        sws_getContext(width, height, AV_PIX_FMT_BGRA, width, height, AV_PIX_FMT_YUV420P,
                       SWS_BILINEAR, nullptr, nullptr, nullptr),
        &sws_freeContext);
    const std::uint8_t* const from[]{source->row(0, 0)};
    const int fromStrides[]{source->stride(0)};
    std::uint8_t* const to[]{destination->mutableRow(0, 0), destination->mutableRow(1, 0),
                             destination->mutableRow(2, 0)};
    const int toStrides[]{destination->stride(0), destination->stride(1), destination->stride(2)};
    for (auto _ : state)
        sws_scale(scaler.get(), from, fromStrides, 0, height, to, toStrides);
}

// What an export pays for looking for hardware where there is none, beside the encoder it then
// uses.
void lookForHardware(benchmark::State& state) {
    for (auto _ : state)
        for (const auto choice : {media::VideoEncoderChoice::nvenc, media::VideoEncoderChoice::qsv,
                                  media::VideoEncoderChoice::vaapi})
            benchmark::DoNotOptimize(media::av::missingDevice(choice));
}

void openLibx264(benchmark::State& state) {
    const media::VideoSettings settings{.width = width, .height = height};
    for (auto _ : state)
        benchmark::DoNotOptimize(media::av::openSoftwareEncoder(settings));
}

BENCHMARK(lookForHardware)->Unit(benchmark::kMillisecond);
BENCHMARK(openLibx264)->Unit(benchmark::kMillisecond);
BENCHMARK(bgraToI420)->Unit(benchmark::kMillisecond);
BENCHMARK(bgraToI420BySwscale)->Unit(benchmark::kMillisecond);
BENCHMARK(i420ToBgra)->Unit(benchmark::kMillisecond);

} // namespace

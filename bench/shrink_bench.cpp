// How close shrunk pictures come to exact area averaging, and what they cost, beside swscale's
// bilinear and area scalers on the same picture of text; swscale is given one thread as we are.
// usage: shrink_bench PICTURE.png WIDTH HEIGHT [OUTPUT-FOLDER]

#include "media/PictureFile.h"
#include "media/color/AveragedRows.h"
#include "media/color/ColorConversion.h"
#include "render/scene/Scene.h"
#include "render/software/SoftwareRenderer.h"

#include <cmath>
#include <ctime>
#include <filesystem>
#include <functional>
#include <vector>

#include <fmt/format.h>

extern "C" {
#include <libswscale/swscale.h>
}

namespace vantro {
namespace {

using Picture = std::shared_ptr<media::PixelBuffer>;

Picture allocate(int width, int height) {
    return media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
}

/// Luma of exact area averaging.
std::vector<double> averagedLuma(const media::PixelBuffer& picture, int width, int height) {
    std::vector<double> luma(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const double across = static_cast<double>(picture.width()) / width;
    const double down = static_cast<double>(picture.height()) / height;
    const auto overlap = [](int texel, double from, double to) {
        return std::max(0.0, std::min(texel + 1.0, to) - std::max<double>(texel, from));
    };
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            double sum = 0;
            for (int v = static_cast<int>(y * down);
                 v < std::min<double>((y + 1) * down, picture.height()); ++v)
                for (int u = static_cast<int>(x * across);
                     u < std::min<double>((x + 1) * across, picture.width()); ++u) {
                    const std::uint8_t* p = picture.row(0, v) + std::ptrdiff_t{u} * 4;
                    sum += overlap(u, x * across, (x + 1) * across) *
                           overlap(v, y * down, (y + 1) * down) *
                           (0.0722 * p[0] + 0.7152 * p[1] + 0.2126 * p[2]);
                }
            luma[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                 static_cast<std::size_t>(x)] = sum / (across * down);
        }
    return luma;
}

std::vector<double> lumaOf(const media::PixelBuffer& picture) {
    return averagedLuma(picture, picture.width(), picture.height());
}

double psnr(const std::vector<double>& a, const std::vector<double>& b) {
    double squares = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        squares += (a[i] - b[i]) * (a[i] - b[i]);
    return 10 * std::log10(255 * 255 * static_cast<double>(a.size()) / squares);
}

/// Over windows of 8 × 8 pixels, every fourth one.
double ssim(const std::vector<double>& a, const std::vector<double>& b, int width, int height) {
    constexpr int side = 8;
    constexpr double c1 = 0.01 * 255 * 0.01 * 255;
    constexpr double c2 = 0.03 * 255 * 0.03 * 255;
    double total = 0;
    int windows = 0;
    for (int top = 0; top + side <= height; top += 4)
        for (int left = 0; left + side <= width; left += 4) {
            double sa = 0, sb = 0, saa = 0, sbb = 0, sab = 0;
            for (int y = top; y < top + side; ++y)
                for (int x = left; x < left + side; ++x) {
                    const auto i = static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                   static_cast<std::size_t>(x);
                    sa += a[i];
                    sb += b[i];
                    saa += a[i] * a[i];
                    sbb += b[i] * b[i];
                    sab += a[i] * b[i];
                }
            constexpr double n = side * side;
            const double ma = sa / n, mb = sb / n;
            const double va = saa / n - ma * ma, vb = sbb / n - mb * mb, cov = sab / n - ma * mb;
            total +=
                (2 * ma * mb + c1) * (2 * cov + c2) / ((ma * ma + mb * mb + c1) * (va + vb + c2));
            ++windows;
        }
    return total / windows;
}

double cpuMilliseconds(const std::function<void()>& work) {
    constexpr int rounds = 20;
    work();
    timespec begin{}, end{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &begin);
    for (int i = 0; i < rounds; ++i)
        work();
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &end);
    return (static_cast<double>(end.tv_sec - begin.tv_sec) * 1e3 +
            static_cast<double>(end.tv_nsec - begin.tv_nsec) / 1e6) /
           rounds;
}

/// Planar to color, as our renderer gets and gives it here.
void swscale(const media::PixelBuffer& from, int flags, media::PixelBuffer& to) {
    struct Free {
        void operator()(SwsContext* context) const { sws_freeContext(context); }
    };
    static std::unique_ptr<SwsContext, Free> context;
    static int made = 0;
    if (!context || made != flags)
        context.reset(sws_getContext(from.width(), from.height(), AV_PIX_FMT_YUV420P, to.width(),
                                     to.height(), AV_PIX_FMT_BGRA, flags, nullptr, nullptr,
                                     nullptr));
    made = flags;
    const int* table = sws_getCoefficients(SWS_CS_ITU709);
    sws_setColorspaceDetails(context.get(), table, 0, table, 1, 0, 1 << 16, 1 << 16);
    const std::uint8_t* planes[]{from.plane(0), from.plane(1), from.plane(2)};
    const int strides[]{from.stride(0), from.stride(1), from.stride(2)};
    std::uint8_t* target[]{to.mutableRow(0, 0)};
    const int targetStride[]{to.stride(0)};
    sws_scale(context.get(), planes, strides, 0, from.height(), target, targetStride);
}

} // namespace
} // namespace vantro

int main(int argc, char** argv) {
    using namespace vantro;
    if (argc < 4) {
        fmt::print(stderr, "usage: shrink_bench PICTURE.png WIDTH HEIGHT [OUTPUT-FOLDER]\n");
        return 2;
    }
    const auto picture = media::readPicture(argv[1]);
    const int width = std::stoi(argv[2]);
    const int height = std::stoi(argv[3]);
    const auto planar =
        media::PixelBuffer::allocate(media::PixelFormat::i420, picture->width(), picture->height());
    media::color::convertBgraToI420(*picture, *planar);
    const auto decoded = allocate(picture->width(), picture->height());
    media::color::convertI420ToBgra(*planar, *decoded);
    const auto expected = averagedLuma(*decoded, width, height);

    render::SceneContent content;
    content.recording = planar;
    const auto renderer = render::software::makeSoftwareRenderer(1);
    const render::Scene scene = render::makeScene({width, height}, content);
    const struct {
        const char* name;
        std::function<void(media::PixelBuffer&)> scale;
    } ways[]{
        {"vantro", [&](media::PixelBuffer& out) { renderer->render(scene, out); }},
        {"vantro-scalePicture",
         [&](media::PixelBuffer& out) {
             media::color::scalePicture(decoded->plane(0), decoded->stride(0), decoded->width(),
                                        decoded->height(), out.mutableRow(0, 0), out.stride(0),
                                        width, height);
         }},
        {"swscale-area",
         [&](media::PixelBuffer& out) {
             swscale(*planar, SWS_AREA | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, out);
         }},
        {"swscale-bilinear",
         [&](media::PixelBuffer& out) {
             swscale(*planar, SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, out);
         }},
        {"swscale-fast-bilinear",
         [&](media::PixelBuffer& out) { swscale(*planar, SWS_FAST_BILINEAR, out); }},
    };
    fmt::print("{}x{} to {}x{}\n{:<24}{:>10}{:>10}{:>12}\n", picture->width(), picture->height(),
               width, height, "", "PSNR dB", "SSIM", "CPU ms");
    for (const auto& way : ways) {
        const auto out = allocate(width, height);
        const double cost = cpuMilliseconds([&] { way.scale(*out); });
        const auto luma = lumaOf(*out);
        fmt::print("{:<24}{:>10.2f}{:>10.5f}{:>12.2f}\n", way.name, psnr(luma, expected),
                   ssim(luma, expected, width, height), cost);
        if (argc > 4)
            media::writePng(std::filesystem::path(argv[4]) / (std::string(way.name) + ".png"),
                            *out);
    }
    return 0;
}

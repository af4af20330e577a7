#include "render/ReferenceRenderer.h"

#include "render/scene/ShadowImage.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace vantro::test {
namespace {

struct Box {
    double x = 0;
    double top = 0;
    double width = 0;
    double height = 0;
};

Color mixed(const Color& a, const Color& b, double share) {
    Color out;
    for (std::size_t i = 0; i < 4; ++i)
        out[i] = a[i] + (b[i] - a[i]) * share;
    return out;
}

/// Linear sampling at a place in texels (centres at one half), clamped to the edge.
Color sample(const ReferencePicture& picture, double x, double y) {
    x -= 0.5;
    y -= 0.5;
    const double left = std::floor(x);
    const double top = std::floor(y);
    const auto texel = [&](double column, double row) {
        return picture.at(static_cast<int>(std::clamp(column, 0.0, picture.width - 1.0)),
                          static_cast<int>(std::clamp(row, 0.0, picture.height - 1.0)));
    };
    return mixed(mixed(texel(left, top), texel(left + 1, top), x - left),
                 mixed(texel(left, top + 1), texel(left + 1, top + 1), x - left), y - top);
}

double roundedBoxCoverage(const Box& box, double radius, double x, double y) {
    if (box.width <= 0 || box.height <= 0)
        return 0;
    const double r = std::min({radius, box.width / 2, box.height / 2});
    const double qx = std::abs(x - box.x - box.width / 2) - box.width / 2 + r;
    const double qy = std::abs(y - box.top - box.height / 2) - box.height / 2 + r;
    const double outside =
        std::sqrt(std::pow(std::max(qx, 0.0), 2) + std::pow(std::max(qy, 0.0), 2));
    return std::clamp(0.5 - (outside + std::min(std::max(qx, qy), 0.0) - r), 0.0, 1.0);
}

/// Premultiplied `source` over `target`, which holds 8-bit channels.
void layOver(Color& target, const Color& source, double coverage) {
    for (std::size_t i = 0; i < 4; ++i)
        target[i] = std::round(source[i] * coverage + target[i] * (1 - source[3] / 255 * coverage));
}

void drawMasked(ReferencePicture& target, const ReferencePicture& picture, const Box& box,
                const Box& part, double radius) {
    for (int y = 0; y < target.height; ++y)
        for (int x = 0; x < target.width; ++x) {
            const double coverage = roundedBoxCoverage(box, radius, x + 0.5, y + 0.5);
            if (coverage <= 0)
                continue;
            layOver(target.at(x, y),
                    sample(picture, part.x + (x + 0.5 - box.x) / box.width * part.width,
                           part.top + (y + 0.5 - box.top) / box.height * part.height),
                    coverage);
            target.rim[target.index(x, y)] = coverage < 1 || target.rim[target.index(x, y)];
        }
}

void drawCursor(ReferencePicture& target, const render::RenderParams& params,
                const render::CursorTextures& cursor, const Box& inset) {
    if (!params.cursorX || !params.cursorY)
        return;
    const render::CursorImage& image = cursor.image();
    const double scale = inset.width / params.source->width();
    const double unit = params.cursorScale * scale;
    const Box box{inset.x + *params.cursorX * scale - unit * image.hotSpotX,
                  inset.top + *params.cursorY * inset.height / params.source->height() -
                      unit * image.hotSpotY,
                  unit * image.width, unit * image.height};
    const ReferencePicture texture = referencePixels(*cursor.textureFor(box.width));
    for (int y = 0; y < target.height; ++y)
        for (int x = 0; x < target.width; ++x) {
            const double u = (x + 0.5 - box.x) / box.width;
            const double v = (y + 0.5 - box.top) / box.height;
            if (u >= 0 && u < 1 && v >= 0 && v < 1)
                layOver(target.at(x, y), sample(texture, u * texture.width, v * texture.height), 1);
        }
}

void drawWebcam(ReferencePicture& target, const render::RenderParams& params) {
    if (!params.webcam || !params.webcamRect || !params.webcamDrawRect)
        return;
    const render::RenderRect& rect = *params.webcamRect;
    const ReferencePicture picture = referencePixels(*params.webcam);
    const double side = std::min(picture.width, picture.height);
    drawMasked(target, picture,
               {rect.x, static_cast<double>(target.height) - rect.y - rect.height, rect.width,
                rect.height},
               {(picture.width - side) / 2, (picture.height - side) / 2, side, side},
               params.webcamCornerRadius);
}

void drawBackground(ReferencePicture& target, const render::RenderParams& params) {
    const render::RenderColor color =
        params.bgColor.value_or(render::RenderColor{0.15F, 0.15F, 0.15F, 1});
    const double alpha = color.alpha * 255.0;
    const Color flat{color.blue * alpha, color.green * alpha, color.red * alpha, 255};
    const auto shadow = render::drawShadow(render::shadowKey(params));
    std::optional<ReferencePicture> image;
    if (params.backgroundImage)
        image = referencePixels(*params.backgroundImage);
    for (int y = 0; y < target.height; ++y)
        for (int x = 0; x < target.width; ++x) {
            Color& pixel = target.at(x, y);
            pixel = {0, 0, 0, 255};
            layOver(pixel,
                    image ? sample(*image, (x + 0.5) / target.width * image->width,
                                   (y + 0.5) / target.height * image->height)
                          : flat,
                    1);
            layOver(pixel, {0, 0, 0, static_cast<double>(shadow->row(y)[x])}, 1);
        }
}

/// The origin of a window of `visible` around `centre` that stays within `extent`.
double windowOrigin(double centre, double visible, double extent) {
    return std::max(0.0, std::min(extent - visible, centre - visible / 2));
}

ReferencePicture magnified(const ReferencePicture& picture, const Box& window, int width,
                           int height) {
    ReferencePicture out(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double u = window.x + (x + 0.5) / width * window.width;
            const double v = window.top + (y + 0.5) / height * window.height;
            layOver(out.at(x, y), sample(picture, u, v), 1);
            for (const double row : {v - 0.5, v + 0.5})
                for (const double column : {u - 0.5, u + 0.5}) {
                    const int i =
                        std::clamp(static_cast<int>(std::floor(column)), 0, picture.width - 1);
                    const int j =
                        std::clamp(static_cast<int>(std::floor(row)), 0, picture.height - 1);
                    if (picture.rim[picture.index(i, j)])
                        out.rim[out.index(x, y)] = true;
                }
        }
    return out;
}

Color toYuv(const Color& bgr) {
    const double luma = 0.2126 * bgr[2] + 0.7152 * bgr[1] + 0.0722 * bgr[0];
    return {16 + luma * 219 / 255, 128 + (bgr[0] - luma) / 1.8556 * 224 / 255,
            128 + (bgr[2] - luma) / 1.5748 * 224 / 255, 255};
}

ReferencePicture fromI420(const media::PixelBuffer& buffer) {
    ReferencePicture picture(buffer.width(), buffer.height());
    const auto chroma = [&](int plane, int x, int y) {
        const auto at = [&](int column, int row) {
            return static_cast<double>(buffer.row(
                plane, std::clamp(row, 0,
                                  (buffer.height() - 1) /
                                      2))[std::clamp(column, 0, (buffer.width() - 1) / 2)]);
        };
        const double u = (x + 0.5) / 2 - 0.5;
        const double v = (y + 0.5) / 2 - 0.5;
        const int i = static_cast<int>(std::floor(u));
        const int j = static_cast<int>(std::floor(v));
        const double upper = at(i, j) + (at(i + 1, j) - at(i, j)) * (u - i);
        const double lower = at(i, j + 1) + (at(i + 1, j + 1) - at(i, j + 1)) * (u - i);
        return (upper + (lower - upper) * (v - j) - 128) * 255 / 224;
    };
    for (int y = 0; y < buffer.height(); ++y)
        for (int x = 0; x < buffer.width(); ++x) {
            const double luma = (buffer.row(0, y)[x] - 16) * 255 / 219.0;
            const double u = chroma(1, x, y);
            const double v = chroma(2, x, y);
            const auto channel = [](double value) { return std::clamp(value, 0.0, 255.0); };
            picture.at(x, y) = {
                channel(luma + 1.8556 * u),
                channel(luma - 0.0722 * 1.8556 / 0.7152 * u - 0.2126 * 1.5748 / 0.7152 * v),
                channel(luma + 1.5748 * v), 255};
        }
    return picture;
}

} // namespace

ReferencePicture::ReferencePicture(int w, int h)
    : width(w)
    , height(h)
    , pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h))
    , rim(pixels.size(), false) {}

ReferencePicture referencePixels(const media::PixelBuffer& buffer) {
    if (buffer.format() == media::PixelFormat::i420)
        return fromI420(buffer);
    ReferencePicture picture(buffer.width(), buffer.height());
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            for (std::size_t i = 0; i < 4; ++i)
                picture.at(x, y)[i] = buffer.row(0, y)[static_cast<std::size_t>(x) * 4 + i];
    return picture;
}

ReferencePicture referenceFrame(const render::RenderParams& params,
                                const render::CursorTextures& cursor) {
    const double width = params.canvasWidth;
    const double height = params.canvasHeight;
    const render::ZoomKeyframe& key = params.keyframe;
    const bool zoomed = key.scale > 1.001;
    const ReferencePicture source = referencePixels(*params.source);
    const Box sourceBox{0, 0, source.width * 1.0, source.height * 1.0};
    ReferencePicture scene(params.canvasWidth, params.canvasHeight);
    if (!params.hasBackground) {
        Box window = sourceBox;
        if (zoomed)
            window = {windowOrigin(key.centerX, source.width / key.scale, source.width),
                      windowOrigin(key.centerY, source.height / key.scale, source.height),
                      source.width / key.scale, source.height / key.scale};
        scene = magnified(source, window, params.canvasWidth, params.canvasHeight);
        drawCursor(scene, params, cursor, {0, 0, width, height});
        drawWebcam(scene, params);
        return scene;
    }
    const Box inset{params.insetX, height - params.insetY - params.insetH, params.insetW,
                    params.insetH};
    drawBackground(scene, params);
    drawMasked(scene, source, inset, sourceBox, params.cornerRadius);
    drawCursor(scene, params, cursor, inset);
    if (zoomed) {
        const double centreX = params.insetX + params.insetW / source.width * key.centerX;
        const double centreY = params.insetY + params.insetH / source.height * key.centerY;
        scene = magnified(scene,
                          {windowOrigin(centreX, width / key.scale, width),
                           windowOrigin(centreY, height / key.scale, height), width / key.scale,
                           height / key.scale},
                          params.canvasWidth, params.canvasHeight);
    }
    drawWebcam(scene, params);
    return scene;
}

Difference difference(const media::PixelBuffer& drawn, const ReferencePicture& reference) {
    Difference worst;
    const auto note = [&](double value, double expected, bool rim) {
        double& place = rim ? worst.rim : worst.inside;
        place = std::max(place, std::abs(value - expected));
    };
    for (int y = 0; y < reference.height; ++y)
        for (int x = 0; x < reference.width; ++x) {
            const bool rim = reference.rim[reference.index(x, y)];
            if (drawn.format() == media::PixelFormat::i420)
                note(drawn.row(0, y)[x], toYuv(reference.at(x, y))[0], rim);
            else
                for (std::size_t i = 0; i < 4; ++i)
                    note(drawn.row(0, y)[static_cast<std::size_t>(x) * 4 + i],
                         reference.at(x, y)[i], rim);
        }
    for (int y = 0; drawn.format() == media::PixelFormat::i420 && y < reference.height; y += 2)
        for (int x = 0; x < reference.width; x += 2) {
            Color mean{};
            bool rim = false;
            double count = 0;
            for (int j = y; j < std::min(y + 2, reference.height); ++j)
                for (int i = x; i < std::min(x + 2, reference.width); ++i, ++count) {
                    rim = rim || reference.rim[reference.index(i, j)];
                    for (std::size_t c = 0; c < 4; ++c)
                        mean[c] += toYuv(reference.at(i, j))[c];
                }
            note(drawn.row(1, y / 2)[x / 2], mean[1] / count, rim);
            note(drawn.row(2, y / 2)[x / 2], mean[2] / count, rim);
        }
    return worst;
}

} // namespace vantro::test

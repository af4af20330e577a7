#include "render/software/FramePlan.h"

#include "render/scene/FrameLayout.h"
#include "render/scene/MaskSpans.h"

namespace vantro::render::software {
namespace {

/// `part` of the picture over `rect`, which has its y from the top.
PicturePlan stretchedOver(const model::Rect& rect, const media::PixelBuffer& picture,
                          const model::Rect& part) {
    PicturePlan plan;
    plan.picture = &picture;
    plan.x = SampleAxis::stretched(picture.width(), part.x, part.width, rect.x, rect.width);
    plan.y = SampleAxis::stretched(picture.height(), part.y, part.height, rect.y, rect.height);
    return plan;
}

model::Rect wholeOf(const media::PixelBuffer& picture) {
    return {0, 0, static_cast<double>(picture.width()), static_cast<double>(picture.height())};
}

PicturePlan maskedPicture(const model::Rect& rect, double radius, const media::PixelBuffer& picture,
                          const model::Rect& part, const Tile& canvas) {
    PicturePlan plan = stretchedOver(rect, picture, part);
    plan.mask.emplace(rect.x, rect.y, rect.width, rect.height, radius);
    plan.touched = {touchedPixels(plan.mask->left(), plan.mask->right(), canvas.columns),
                    touchedPixels(plan.mask->top(), plan.mask->bottom(), canvas.rows)};
    return plan;
}

PicturePlan recordingPlan(const RenderParams& params, const Tile& canvas) {
    const media::PixelBuffer& source = *params.source;
    if (params.hasBackground) {
        const double top = static_cast<double>(params.canvasHeight) - params.insetY - params.insetH;
        return maskedPicture({params.insetX, top, params.insetW, params.insetH},
                             params.cornerRadius, source, wholeOf(source), canvas);
    }
    model::Rect part = wholeOf(source);
    if (params.keyframe.isZoomed()) {
        const ZoomWindow window = sourceZoomWindow(params);
        part = {window.x, window.y, window.width, window.height};
    }
    PicturePlan plan = stretchedOver(
        {0, 0, static_cast<double>(params.canvasWidth), static_cast<double>(params.canvasHeight)},
        source, part);
    plan.touched = canvas;
    return plan;
}

std::optional<PicturePlan> cursorPlan(const RenderParams& params, const CursorTextures& cursor,
                                      const Tile& canvas) {
    if (!params.cursorX || !params.cursorY)
        return {};
    const model::Rect rect = cursorRect(params, cursor.image());
    if (!(rect.width > 0 && rect.height > 0))
        return {};
    const media::PixelBuffer& texture = *cursor.textureFor(rect.width);
    PicturePlan plan = stretchedOver(rect, texture, wholeOf(texture));
    // A quad covers the pixels whose centres lie in it.
    const auto centresWithin = [](double from, double length, PixelSpan extent) {
        return PixelSpan{clampedIndex(std::ceil(from - 0.5), extent.begin, extent.end),
                         clampedIndex(std::ceil(from + length - 0.5), extent.begin, extent.end)};
    };
    plan.touched = {centresWithin(rect.x, rect.width, canvas.columns),
                    centresWithin(rect.y, rect.height, canvas.rows)};
    if (plan.touched.isEmpty())
        return {};
    return plan;
}

std::optional<PicturePlan> webcamPlan(const RenderParams& params, const Tile& canvas) {
    if (!params.webcam || !params.webcamRect || !params.webcamDrawRect)
        return {};
    const RenderRect& square = *params.webcamRect;
    const model::Rect rect{square.x,
                           static_cast<double>(params.canvasHeight) - square.y - square.height,
                           square.width, square.height};
    const model::Rect whole = wholeOf(*params.webcam);
    const double side = std::min(whole.width, whole.height); // the picture's centre square
    const model::Rect part{(whole.width - side) / 2, (whole.height - side) / 2, side, side};
    PicturePlan plan = maskedPicture(rect, params.webcamCornerRadius, *params.webcam, part, canvas);
    if (plan.touched.isEmpty())
        return {};
    return plan;
}

/// Grown to even bounds, which `limit` has or ends at.
PixelSpan evenAligned(PixelSpan span, PixelSpan limit) {
    return PixelSpan{span.begin & ~1, (span.end + 1) & ~1}.clippedTo(limit);
}

} // namespace

std::optional<FramePlan> planFrame(const RenderParams& params, const CursorTextures& cursor) {
    const bool zoomed = params.keyframe.isZoomed();
    const Tile canvas{{0, params.canvasWidth}, {0, params.canvasHeight}};
    FramePlan plan;
    plan.width = params.canvasWidth;
    plan.height = params.canvasHeight;
    plan.webcam = webcamPlan(params, canvas);
    if (!params.hasBackground && !zoomed && !params.cursorX && !params.webcam)
        return {};
    plan.hasBackdrop = params.hasBackground;
    plan.recording = recordingPlan(params, canvas);
    plan.cursor = cursorPlan(params, cursor, canvas);
    if (params.hasBackground && zoomed) {
        const ZoomWindow window = sceneZoomWindow(params);
        plan.zoomX = SampleAxis::stretched(plan.width, window.x, window.width, 0, plan.width);
        plan.zoomY = SampleAxis::stretched(plan.height, window.y, window.height, 0, plan.height);
    }
    return plan;
}

bool FramePlan::recordingIsCopy() const {
    return !hasBackdrop && recording.x.isCopy() && recording.x.start == 0 && recording.y.isCopy() &&
           recording.y.start == 0 && recording.picture->width() == width &&
           recording.picture->height() == height;
}

Tile FramePlan::livePart(const Tile& tile) const {
    if (zoomX || !(hasBackdrop || recordingIsCopy()))
        return tile;
    Tile live;
    const auto include = [&](const PicturePlan& layer) {
        const Tile part = layer.touched.clippedTo(tile);
        if (part.isEmpty())
            return;
        live = {live.columns.joinedWith(part.columns), live.rows.joinedWith(part.rows)};
    };
    if (hasBackdrop)
        include(recording);
    if (cursor)
        include(*cursor);
    if (webcam)
        include(*webcam);
    return {evenAligned(live.columns, tile.columns), evenAligned(live.rows, tile.rows)};
}

} // namespace vantro::render::software

#include "render/software/FramePlan.h"

#include "render/scene/MaskSpans.h"

namespace vantro::render::software {
namespace {

PicturePlan stretchedPicture(const PictureLayer& layer, double scale) {
    const media::PixelBuffer& picture = *layer.picture;
    const PixelRect& part = layer.part;
    const PixelRect& place = layer.place;
    PicturePlan plan;
    plan.picture = &picture;
    plan.x =
        SampleAxis::stretched(picture.width(), part.x, part.width, place.x, place.width, scale);
    plan.y =
        SampleAxis::stretched(picture.height(), part.y, part.height, place.y, place.height, scale);
    return plan;
}

PicturePlan maskedPicture(const PictureLayer& layer, const Tile& canvas, double scale) {
    PicturePlan plan = stretchedPicture(layer, scale);
    plan.mask.emplace(layer.place, layer.cornerRadius);
    plan.touched = {touchedPixels(plan.mask->left(), plan.mask->right(), canvas.columns),
                    touchedPixels(plan.mask->top(), plan.mask->bottom(), canvas.rows)};
    return plan;
}

/// Without a mask a picture covers the pixels whose centers lie in its place.
PicturePlan plainPicture(const PictureLayer& layer, const Tile& canvas, double scale) {
    const auto centersWithin = [](double from, double length, PixelSpan extent) {
        return PixelSpan{clampedIndex(std::ceil(from - 0.5), extent.begin, extent.end),
                         clampedIndex(std::ceil(from + length - 0.5), extent.begin, extent.end)};
    };
    PicturePlan plan = stretchedPicture(layer, scale);
    plan.touched = {centersWithin(layer.place.x, layer.place.width, canvas.columns),
                    centersWithin(layer.place.y, layer.place.height, canvas.rows)};
    return plan;
}

std::optional<PicturePlan> unlessUntouched(PicturePlan plan) {
    return plan.touched.isEmpty() ? std::nullopt : std::optional(plan);
}

/// Grown to even bounds, which `limit` has or ends at.
PixelSpan evenAligned(PixelSpan span, PixelSpan limit) {
    return PixelSpan{span.begin & ~1, (span.end + 1) & ~1}.clippedTo(limit);
}

} // namespace

FramePlan planFrame(const Scene& scene) {
    FramePlan plan;
    plan.width = scene.canvas.width;
    plan.height = scene.canvas.height;
    const Tile canvas{{0, plan.width}, {0, plan.height}};
    plan.hasBackdrop = scene.background.has_value();
    plan.recording = plan.hasBackdrop ? maskedPicture(scene.recording, canvas, scene.scale)
                                      : plainPicture(scene.recording, canvas, scene.scale);
    if (plan.hasBackdrop && !(scene.background->shown == PixelRect::whole(scene.canvas))) {
        const PixelRect& part = scene.background->shown;
        plan.backdropX = SampleAxis::stretched(plan.width, part.x, part.width, 0, plan.width, 1);
        plan.backdropY = SampleAxis::stretched(plan.height, part.y, part.height, 0, plan.height, 1);
    }
    if (scene.cursor)
        plan.cursor = unlessUntouched(plainPicture(*scene.cursor, canvas, scene.scale));
    if (scene.webcam)
        plan.webcam = unlessUntouched(maskedPicture(*scene.webcam, canvas, scene.scale));
    return plan;
}

bool FramePlan::recordingIsCopy() const {
    return !hasBackdrop && recording.x.isCopy() && recording.x.start == 0 && recording.y.isCopy() &&
           recording.y.start == 0 && recording.picture->width() == width &&
           recording.picture->height() == height;
}

Tile FramePlan::livePart(const Tile& tile) const {
    if (backdropX || !(hasBackdrop || recordingIsCopy()))
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

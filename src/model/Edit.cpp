#include "model/Edit.h"

namespace vantro::model {

Look lookOf(const Edit& edit) {
    return {.background = edit.background, .canvasAspectRatio = edit.canvasAspectRatio};
}

Edit withLook(Edit edit, const Look& look) {
    edit.background = look.background;
    edit.canvasAspectRatio = look.canvasAspectRatio;
    return edit;
}

Edit freshEdit(const RecordingMetadata& metadata, Edit choices, const std::optional<Look>& look) {
    auto clicks = metadata.clickEvents;
    normalizeClickEvents(clicks, metadata.endTime);
    choices.clickEvents = std::move(clicks);
    choices.segments = fullLengthTimeline();
    if (look)
        return withLook(std::move(choices), *look);
    return choices;
}

} // namespace vantro::model

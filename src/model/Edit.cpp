#include "model/Edit.h"

namespace vantro::model {

Edit freshEdit(const RecordingMetadata& metadata, Edit choices) {
    auto clicks = metadata.clickEvents;
    normalizeClickEvents(clicks, metadata.endTime);
    choices.clickEvents = std::move(clicks);
    choices.segments = fullLengthTimeline();
    return choices;
}

Look lookOf(const Edit& edit) {
    return {.background = edit.background, .canvasAspectRatio = edit.canvasAspectRatio};
}

Edit withLook(Edit edit, const Look& look) {
    edit.background = look.background;
    edit.canvasAspectRatio = look.canvasAspectRatio;
    return edit;
}

} // namespace vantro::model

#include "model/Edit.h"

namespace vantro::model {

Edit freshEdit(const RecordingMetadata& metadata, Edit choices) {
    auto clicks = metadata.clickEvents;
    normalizeClickEvents(clicks, metadata.endTime);
    choices.clickEvents = std::move(clicks);
    choices.segments = fullLengthTimeline();
    return choices;
}

} // namespace vantro::model

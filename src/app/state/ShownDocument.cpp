#include "app/state/ShownDocument.h"

#include "base/Fatal.h"

namespace vantro::app {
namespace {

/// `differ` where both have a recording.
template <typename Differ>
bool recordingsDiffer(const ShownDocument& a, const ShownDocument& b, const Differ& differ) {
    const auto& from = a.content.recording;
    const auto& to = b.content.recording;
    return from && to ? differ(*from, *to) : from.has_value() != to.has_value();
}

} // namespace

bool differs(ShownField field, const ShownDocument& a, const ShownDocument& b) {
    const auto inEdit = [&](auto member) {
        return a.content.edit.*member != b.content.edit.*member;
    };
    const auto inLinks = [&](auto member) { return a.links.*member != b.links.*member; };
    using Links = ShownDocument::Links;
    switch (field) {
        using enum ShownField;
    case recordingPath:
        return recordingsDiffer(
            a, b, [](const auto& from, const auto& to) { return from.movie() != to.movie(); });
    case metadata:
        return recordingsDiffer(a, b, [](const auto& from, const auto& to) {
            return !from.isSameAs(to) && from.metadata() != to.metadata();
        });
    case name:
        return a.content.name != b.content.name;
    case clicks:
        return inEdit(&model::Edit::clickEvents);
    case segments:
        return inEdit(&model::Edit::segments);
    case background:
        return inEdit(&model::Edit::background);
    case canvas:
        return inEdit(&model::Edit::canvasAspectRatio);
    case cursorScale:
        return inEdit(&model::Edit::cursorScale);
    case webcamPosition:
        return inEdit(&model::Edit::webcamPosition);
    case webcamSize:
        return inEdit(&model::Edit::webcamSize);
    case metadataPath:
        return inLinks(&Links::metadataPath);
    case projectPath:
        return inLinks(&Links::projectPath);
    case selectedSegment:
        return inLinks(&Links::selectedSegmentID);
    case selectedClick:
        return inLinks(&Links::selectedClickID);
    }
    base::fatal("no such field");
}

} // namespace vantro::app

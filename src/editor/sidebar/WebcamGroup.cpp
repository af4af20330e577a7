#include "editor/sidebar/WebcamGroup.h"

namespace vantro::editor::sidebar {
namespace {

constexpr double smallestSize = 0.05;
constexpr double largestSize = 0.5;

bool differ(const model::Edit& a, const model::Edit& b) {
    return a.webcamHidden != b.webcamHidden || a.webcamMirrored != b.webcamMirrored ||
           a.webcamPosition != b.webcamPosition || a.webcamSize != b.webcamSize;
}

} // namespace

WebcamGroup::WebcamGroup(app::AppState& state, EditSteps& steps)
    : SettingsGroup(state, steps, differ) {}

bool WebcamGroup::isPresent() const {
    return state().metadata() != nullptr && state().metadata()->hasWebcam;
}

void WebcamGroup::setShown(bool shown) {
    change(shown ? QT_TRANSLATE_NOOP("Edit", "Show Webcam")
                 : QT_TRANSLATE_NOOP("Edit", "Hide Webcam"),
           [&](auto& edit) { edit.webcamHidden = !shown; });
}

void WebcamGroup::setMirrored(bool mirrored) {
    change(QT_TRANSLATE_NOOP("Edit", "Mirror Webcam"),
           [&](auto& edit) { edit.webcamMirrored = mirrored; });
}

void WebcamGroup::setCorner(int corner) {
    if (corner >= 0 && corner < static_cast<int>(model::allWebcamPositions.size()))
        change(QT_TRANSLATE_NOOP("Edit", "Move Webcam"), [&](auto& edit) {
            edit.webcamPosition = model::allWebcamPositions.at(static_cast<std::size_t>(corner));
        });
}

void WebcamGroup::setSize(double size) {
    setNumber(QT_TRANSLATE_NOOP("Edit", "Resize Webcam"), &model::Edit::webcamSize, size,
              smallestSize, largestSize);
}

void WebcamGroup::reset() {
    change(QT_TRANSLATE_NOOP("Edit", "Reset Webcam"), [](auto& edit) {
        const model::Edit fresh;
        edit.webcamHidden = fresh.webcamHidden;
        edit.webcamMirrored = fresh.webcamMirrored;
        edit.webcamPosition = fresh.webcamPosition;
        edit.webcamSize = fresh.webcamSize;
    });
}

} // namespace vantro::editor::sidebar

#include "editor/sidebar/FrameGroup.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor::sidebar {
namespace {

constexpr double widestPadding = 0.45; // beyond it next to nothing of the recording is left
constexpr double largestRadius = 400;  // rounds the sides of a 1080p recording away

bool differ(const model::Edit& a, const model::Edit& b) {
    return a.background.padding != b.background.padding ||
           a.background.cornerRadius != b.background.cornerRadius ||
           a.canvasAspectRatio != b.canvasAspectRatio;
}

} // namespace

FrameGroup::FrameGroup(app::AppState& state, EditSteps& steps)
    : SettingsGroup(state, steps, differ) {}

void FrameGroup::setPadding(double padding) {
    if (std::isfinite(padding))
        change(QT_TRANSLATE_NOOP("Edit", "Change Padding"), [&](auto& edit) {
            edit.background.padding = std::clamp(padding, 0.0, widestPadding);
        });
}

void FrameGroup::setCornerRadius(double radius) {
    if (std::isfinite(radius))
        change(QT_TRANSLATE_NOOP("Edit", "Change Corner Radius"), [&](auto& edit) {
            edit.background.cornerRadius = std::clamp(radius, 0.0, largestRadius);
        });
}

void FrameGroup::setCanvas(int canvas) {
    if (canvas >= 0 && canvas < static_cast<int>(model::allCanvasAspectRatios.size()))
        change(QT_TRANSLATE_NOOP("Edit", "Change Canvas"), [&](auto& edit) {
            edit.canvasAspectRatio =
                model::allCanvasAspectRatios.at(static_cast<std::size_t>(canvas));
        });
}

QStringList FrameGroup::canvasNames() const {
    QStringList names{tr("Auto")};
    for (const auto aspect : model::allCanvasAspectRatios)
        if (aspect != model::CanvasAspectRatio::automatic)
            names.append(QString::fromStdString(std::string(model::rawValue(aspect))));
    return names;
}

void FrameGroup::reset() {
    change(QT_TRANSLATE_NOOP("Edit", "Reset Frame"), [](auto& edit) {
        const model::Edit fresh;
        edit.background.padding = fresh.background.padding;
        edit.background.cornerRadius = fresh.background.cornerRadius;
        edit.canvasAspectRatio = fresh.canvasAspectRatio;
    });
}

} // namespace vantro::editor::sidebar

#include "editor/sidebar/PointerGroup.h"

namespace vantro::editor::sidebar {
namespace {

constexpr double smallestScale = 0.5;
constexpr double largestScale = 10;

} // namespace

PointerGroup::PointerGroup(app::AppState& state, EditSteps& steps)
    : SettingsGroup(state, steps,
                    [](const auto& a, const auto& b) { return a.cursorScale != b.cursorScale; }) {}

void PointerGroup::setScale(double scale) {
    setNumber(QT_TRANSLATE_NOOP("Edit", "Resize Pointer"), &model::Edit::cursorScale, scale,
              smallestScale, largestScale);
}

void PointerGroup::setShown(bool shown) {
    if (shown == isShown())
        return;
    if (!shown)
        m_scaleShown = edit().cursorScale;
    change(shown ? QT_TRANSLATE_NOOP("Edit", "Show Pointer")
                 : QT_TRANSLATE_NOOP("Edit", "Hide Pointer"),
           [&](auto& edit) { edit.cursorScale = shown ? m_scaleShown : 0; });
}

void PointerGroup::reset() {
    change(QT_TRANSLATE_NOOP("Edit", "Reset Pointer"),
           [](auto& edit) { edit.cursorScale = model::Edit().cursorScale; });
}

} // namespace vantro::editor::sidebar

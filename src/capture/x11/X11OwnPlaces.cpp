#include "capture/x11/X11OwnPlaces.h"

#include <algorithm>

namespace vantro {

PixelRect grown(PixelRect rect, int margin) {
    return {rect.x - margin, rect.y - margin, rect.width + 2 * margin, rect.height + 2 * margin};
}

std::vector<PixelRect> X11OwnPlaces::update(const std::vector<X11Placement>& own, bool isComposited,
                                            HostTime now) {
    const auto isThere = [&own](xcb_window_t window) {
        return std::ranges::find(own, window, &X11Placement::window) != own.end();
    };
    std::erase_if(m_fading, [now](const FadingPlace& each) { return each.end <= now; });
    for (const Place& each : m_shown)
        if (isComposited && !isThere(each.window))
            m_fading.push_back({each.rect, now + fading});
    m_shown.clear();
    for (const X11Placement& each : own)
        m_shown.push_back({each.window, grown(each.rect, reach(isComposited))});
    std::vector<PixelRect> places;
    std::ranges::transform(m_shown, std::back_inserter(places), &Place::rect);
    std::ranges::transform(m_fading, std::back_inserter(places), &FadingPlace::rect);
    return places;
}

bool X11OwnPlaces::hasExpired(HostTime now) const {
    return std::ranges::any_of(m_fading,
                               [now](const FadingPlace& each) { return each.end <= now; });
}

} // namespace vantro

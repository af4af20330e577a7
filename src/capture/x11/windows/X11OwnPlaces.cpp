#include "capture/x11/windows/X11OwnPlaces.h"

#include <algorithm>

namespace vantro::capture::x11 {

media::color::PixelRect grown(media::color::PixelRect rect, int margin) {
    return {rect.x - margin, rect.y - margin, rect.width + 2 * margin, rect.height + 2 * margin};
}

namespace {

/// The smallest rectangle that holds both.
media::color::PixelRect united(media::color::PixelRect a, media::color::PixelRect b) {
    const int x = std::min(a.x, b.x);
    const int y = std::min(a.y, b.y);
    return {x, y, std::max(a.x + a.width, b.x + b.width) - x,
            std::max(a.y + a.height, b.y + b.height) - y};
}

} // namespace

std::vector<media::color::PixelRect> X11OwnPlaces::update(const std::vector<X11Placement>& own,
                                                          bool isComposited, base::HostTime now) {
    std::vector<Place> shown;
    std::ranges::transform(own, std::back_inserter(shown), [&](const X11Placement& each) {
        return Place{each.window, grown(each.rect, reach(isComposited))};
    });
    std::erase_if(m_fading, [now](const FadingPlace& each) { return each.end <= now; });
    for (const Place& before : m_shown)
        if (isComposited && std::ranges::find(shown, before) == shown.end())
            fade(before, now + fading);
    m_shown = std::move(shown);
    std::vector<media::color::PixelRect> places;
    std::ranges::transform(m_shown, std::back_inserter(places), &Place::rect);
    std::ranges::transform(m_fading, std::back_inserter(places), &FadingPlace::rect);
    return places;
}

void X11OwnPlaces::fade(const Place& place, base::HostTime end) {
    const auto known = std::ranges::find(m_fading, place.window, &FadingPlace::window);
    if (known == m_fading.end())
        m_fading.push_back({place.window, place.rect, end});
    else
        *known = {place.window, united(known->rect, place.rect), end};
}

bool X11OwnPlaces::hasExpired(base::HostTime now) const {
    return std::ranges::any_of(m_fading,
                               [now](const FadingPlace& each) { return each.end <= now; });
}

} // namespace vantro::capture::x11

#include "stage/Page.h"

#include "stage/Chart.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantro::stage {
namespace {

constexpr double sidebarWidth = 220;
constexpr double rippleSeconds = 0.5;
constexpr double moveSeconds = 0.25; // a control from one state to the other
constexpr double toastSeconds = 2.0;
constexpr double menuWidth = 210;
constexpr double menuRow = 34;
constexpr std::array menuItems{"Open in new tab", "Copy link", "Rename…", "Move to archive"};
constexpr unsigned accent = 0x4f46e5;
constexpr unsigned ink = 0x111827;
constexpr unsigned faintInk = 0x6b7280;

double progress(double start, double now, double seconds) {
    return std::clamp((now - start) / seconds, 0.0, 1.0);
}

void drawButton(cairo_t* context, Box box, const std::string& label, unsigned color,
                double sincePress) {
    const double glow = 1 - eased(sincePress / 0.6);
    if (glow > 0)
        fillBox(context, {box.x - 4, box.y - 4, box.width + 8, box.height + 8}, 12, color,
                0.35 * glow);
    fillBox(context, box, 9, mixed(color, 0xffffff, 0.25 * glow));
    drawCenteredText(context, box, label, {.size = 15, .rgb = 0xffffff, .isBold = true});
}

void drawToggle(cairo_t* context, Box box, const std::string& label, double share) {
    fillBox(context, box, box.height / 2, mixed(0xcbd5e1, 0x10b981, share));
    const double travel = box.width - box.height;
    fillCircle(context, box.x + box.height / 2 + travel * share, box.centerY(), box.height / 2 - 3,
               0xffffff);
    drawText(context, box.x + box.width + 14, box.centerY() + 5, label, {.size = 15, .rgb = ink});
}

void drawCheckbox(cairo_t* context, Box box, const std::string& label, double share) {
    strokeBox(context, box, 6, 0x94a3b8, 2);
    fillBox(context, box, 6, accent, share);
    cairo_move_to(context, box.x + 5, box.centerY());
    cairo_line_to(context, box.x + 9.5, box.y + box.height - 6);
    cairo_line_to(context, box.x + box.width - 5, box.y + 6);
    setColor(context, 0xffffff, share);
    cairo_set_line_width(context, 2.5);
    cairo_stroke(context);
    drawText(context, box.x + box.width + 14, box.centerY() + 5, label,
             {.size = 15, .rgb = mixed(ink, 0x9ca3af, share)});
}

void drawSlider(cairo_t* context, Box box, const std::string& label, double share) {
    const double y = box.centerY();
    drawText(context, box.x, box.y - 8, label, {.size = 14, .rgb = faintInk});
    fillBox(context, {box.x, y - 3, box.width, 6}, 3, 0xe2e8f0);
    fillBox(context, {box.x, y - 3, box.width * share, 6}, 3, accent);
    fillCircle(context, box.x + box.width * share, y, 11, accent);
    fillCircle(context, box.x + box.width * share, y, 6, 0xffffff);
}

} // namespace

Page::Page() {
    const double x = sidebarWidth + 48;
    const auto add = [this](Kind kind, const char* name, const char* label, Box box, unsigned color,
                            double value) {
        m_controls.push_back({kind, name, label, box, color, value, value});
    };
    add(Kind::button, "save", "Save changes", {x, 372, 170, 46}, accent, 0);
    add(Kind::button, "share", "Share", {x + 190, 372, 120, 46}, 0x0ea5e9, 0);
    add(Kind::button, "delete", "Delete", {x + 330, 372, 120, 46}, 0xe11d48, 0);
    add(Kind::toggle, "notifications", "Notifications", {x, 462, 54, 30}, 0, 0);
    add(Kind::toggle, "sync", "Keep in sync", {x + 260, 462, 54, 30}, 0, 1);
    add(Kind::checkbox, "task-1", "Review the color palette", {x, 540, 24, 24}, 0, 1);
    add(Kind::checkbox, "task-2", "Write the release notes", {x, 580, 24, 24}, 0, 0);
    add(Kind::checkbox, "task-3", "Record the walkthrough", {x, 620, 24, 24}, 0, 0);
    add(Kind::slider, "slider", "Preview size", {x, 694, 440, 30}, 0, 0.35);
}

void Page::press(double x, double y, bool isRight, double now) {
    const bool wasOpen = m_menu.has_value();
    if (wasOpen) {
        m_menu.reset();
        m_menuClosed = now;
    }
    if (isRight) {
        m_menu = Ripple{std::min(x, width - menuWidth - 12), std::min(y, height - 190), now};
        return;
    }
    m_ripple = Ripple{x, y, now};
    if (wasOpen)
        return;
    for (auto& control : m_controls) {
        const Box generous{control.box.x - 6, control.box.y - 6, control.box.width + 12,
                           control.box.height + 12};
        if (generous.contains(x, y))
            activate(control, x, now);
    }
}

void Page::activate(Control& control, double x, double now) {
    control.previous = control.value;
    control.pressed = now;
    if (control.kind == Kind::slider)
        control.value = std::clamp((x - control.box.x) / control.box.width, 0.0, 1.0);
    else
        control.value = 1 - control.value;
    if (control.kind != Kind::button)
        return;
    m_toast = control.name == "save"    ? "All changes saved"
              : control.name == "share" ? "Link copied to the clipboard"
                                        : "Moved to the bin";
    m_toastStart = now;
}

bool Page::isMoving(double now) const {
    const auto within = [now](double start, double seconds) { return now - start < seconds + 0.1; };
    return (m_ripple && within(m_ripple->start, rippleSeconds)) ||
           (m_menu && within(m_menu->start, moveSeconds)) || within(m_menuClosed, moveSeconds) ||
           within(m_toastStart, toastSeconds + moveSeconds) ||
           std::ranges::any_of(m_controls,
                               [&](const Control& each) { return within(each.pressed, 0.6); });
}

void Page::draw(cairo_t* context, double now) const {
    setColor(context, 0xffffff);
    cairo_paint(context);
    drawTitleBar(context, width, "Aurora — Weekly overview", false);
    drawSidebar(context);
    drawArticle(context);
    for (const auto& control : m_controls)
        drawControl(context, control, now);
    if (m_ripple) {
        const double share = progress(m_ripple->start, now, rippleSeconds);
        fillCircle(context, m_ripple->x, m_ripple->y, 8 + 46 * eased(share), accent,
                   0.35 * (1 - share));
    }
    drawMenu(context, now);
    drawToast(context, now);
    strokeBox(context, {0, 0, width, height}, 0, 0xcbd5e1, 1);
}

void Page::drawSidebar(cairo_t* context) const {
    fillBox(context, {0, titleBarHeight, sidebarWidth, height - titleBarHeight}, 0, 0xf8fafc);
    fillBox(context, {sidebarWidth - 1, titleBarHeight, 1, height - titleBarHeight}, 0, 0xe5e7eb);
    drawText(context, 28, 92, "WORKSPACE", {.size = 12, .rgb = 0x9ca3af, .isBold = true});
    double y = 112;
    for (const char* item :
         {"Overview", "Calendar", "Documents", "Analytics", "Team", "Settings"}) {
        const bool isCurrent = item == std::string("Overview");
        if (isCurrent)
            fillBox(context, {16, y, sidebarWidth - 32, 40}, 8, 0xe0e7ff);
        fillCircle(context, 38, y + 20, 5, isCurrent ? accent : 0xcbd5e1);
        drawText(context, 58, y + 25, item,
                 {.size = 15, .rgb = isCurrent ? accent : 0x374151, .isBold = isCurrent});
        y += 46;
    }
}

void Page::drawArticle(cairo_t* context) const {
    const double x = sidebarWidth + 48;
    drawText(context, x, 108, "Weekly overview", {.size = 32, .rgb = ink, .isBold = true});
    double y = 146;
    for (const char* line : {"The new canvas ships on Friday. Shadows, rounded corners and the",
                             "softer background are in; the last open point is how far a zoom",
                             "may travel before the eye loses the pointer."}) {
        drawText(context, x, y, line, {.size = 16, .rgb = 0x4b5563});
        y += 26;
    }
    const std::array<std::array<const char*, 2>, 3> cards{
        {{"Recordings", "128"}, {"Minutes saved", "3 412"}, {"Open tasks", "7"}}};
    double cardX = x;
    for (const auto& card : cards) {
        const Box box{cardX, 236, 216, 96};
        fillBox(context, box, 12, 0xf1f5f9);
        drawText(context, box.x + 20, box.y + 34, card[0], {.size = 14, .rgb = faintInk});
        drawText(context, box.x + 20, box.y + 74, card[1],
                 {.size = 30, .rgb = ink, .isBold = true});
        cardX += 236;
    }
    drawText(context, x, 528, "This week", {.size = 14, .rgb = faintInk, .isBold = true});
}

void Page::drawControl(cairo_t* context, const Control& control, double now) const {
    const double moved = eased(progress(control.pressed, now, moveSeconds));
    const double share = control.previous + (control.value - control.previous) * moved;
    switch (control.kind) {
    case Kind::button:
        drawButton(context, control.box, control.label, control.color, now - control.pressed);
        break;
    case Kind::toggle:
        drawToggle(context, control.box, control.label, share);
        break;
    case Kind::checkbox:
        drawCheckbox(context, control.box, control.label, share);
        break;
    case Kind::slider:
        drawSlider(context, control.box, control.label, share);
        break;
    }
}

void Page::drawMenu(cairo_t* context, double now) const {
    if (!m_menu)
        return;
    const double share = eased(progress(m_menu->start, now, 0.12));
    const double fullHeight = menuRow * static_cast<double>(menuItems.size()) + 16;
    const Box box{m_menu->x, m_menu->y, menuWidth, fullHeight * share};
    for (int layer = 8; layer > 0; --layer)
        fillBox(
            context,
            {box.x - layer, box.y - layer + 4, box.width + 2.0 * layer, box.height + 2.0 * layer},
            10 + layer, 0x0f172a, 0.02);
    fillBox(context, box, 10, 0xffffff);
    strokeBox(context, box, 10, 0xd1d5db, 1);
    double y = box.y + 8;
    for (const char* item : menuItems) {
        if (y + menuRow > box.y + box.height)
            break;
        if (item == menuItems.front())
            fillBox(context, {box.x + 6, y, menuWidth - 12, menuRow}, 6, 0xeef2ff);
        drawText(context, box.x + 18, y + 22, item, {.size = 14, .rgb = ink});
        y += menuRow;
    }
}

void Page::drawToast(cairo_t* context, double now) const {
    const double age = now - m_toastStart;
    const double share =
        std::min(eased(age / moveSeconds), eased((toastSeconds - age) / moveSeconds));
    if (share <= 0)
        return;
    const Box box{sidebarWidth + (width - sidebarWidth - 320) / 2, height - 70 * share, 320, 46};
    fillBox(context, box, 23, 0x111827, 0.95 * share);
    drawCenteredText(context, box, m_toast,
                     {.size = 15, .rgb = 0xffffff, .isBold = true, .opacity = share});
}

std::vector<Page::Place> Page::places() const {
    std::vector<Place> list;
    for (const auto& control : m_controls) {
        const double share = control.kind == Kind::slider ? 0.8 : 0.5;
        list.push_back(
            {control.name, control.box.x + control.box.width * share, control.box.centerY()});
    }
    list.push_back({"card", sidebarWidth + 48 + 108, 284});
    list.push_back({"text", sidebarWidth + 248, 166});
    return list;
}

} // namespace vantro::stage

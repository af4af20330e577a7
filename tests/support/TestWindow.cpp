#include "support/TestWindow.h"

#include "support/XConnection.h"

#include <cstdlib>
#include <stdexcept>
#include <thread>

#include <xcb/shape.h>

namespace vantro::test {
namespace {

void fillRect(const XConnection& connection, xcb_window_t window, media::color::PixelRect rect,
              std::uint32_t color) {
    const xcb_gcontext_t context = xcb_generate_id(connection.get());
    xcb_create_gc(connection.get(), context, window, XCB_GC_FOREGROUND, &color);
    const xcb_rectangle_t area{static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
                               static_cast<std::uint16_t>(rect.width),
                               static_cast<std::uint16_t>(rect.height)};
    xcb_poly_fill_rectangle(connection.get(), window, context, 1, &area);
    xcb_free_gc(connection.get(), context);
    roundTrip(connection);
}

void setText(const XConnection& connection, xcb_window_t window, xcb_atom_t property,
             const std::string& text) {
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING,
                        8, static_cast<std::uint32_t>(text.size()), text.data());
}

} // namespace

/// The screen's visual of 32 bits a pixel.
xcb_visualid_t visualWithAlpha(const xcb_screen_t& screen) {
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0;
         xcb_depth_next(&depth))
        if (depth.data->depth == 32)
            return xcb_depth_visuals(depth.data)->visual_id;
    throw std::runtime_error("the screen knows no windows with alpha");
}

struct TestWindow::Implementation {
    XConnection connection;
    std::string display;
    media::color::PixelRect rect;
    xcb_window_t window = 0;
    std::jthread clicks;

    void stack(std::uint32_t mode) const {
        xcb_configure_window(connection.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
        roundTrip(connection);
    }
    /// Each press is answered on a connection of its own, which ends with the window.
    void answerPresses(std::uint32_t color, int side) {
        XConnection own = connectTo(display);
        const std::uint32_t mask = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(own.get(), window, XCB_CW_EVENT_MASK, &mask);
        roundTrip(own);
        clicks = std::jthread([own = std::move(own), target = window, color, side] {
            while (xcb_generic_event_t* event = xcb_wait_for_event(own.get())) {
                const int type = event->response_type & 0x7f;
                const auto press = *reinterpret_cast<xcb_button_press_event_t*>(event);
                std::free(event);
                if (type == XCB_DESTROY_NOTIFY)
                    return;
                if (type == XCB_BUTTON_PRESS)
                    fillRect(own, target,
                             {press.event_x - side / 2, press.event_y - side / 2, side, side},
                             color);
            }
        });
    }
};

TestWindow::TestWindow(const XServer& server, media::color::PixelRect rect, std::uint32_t color,
                       const Names& names)
    : m_implementation(
          new Implementation{connectTo(server.display()), server.display(), rect, 0, {}}) {
    auto& self = *m_implementation;
    self.window = xcb_generate_id(self.connection.get());
    const auto& screen = screenOf(self.connection);
    const auto visual = names.isBlended ? visualWithAlpha(screen) : screen.root_visual;
    const xcb_colormap_t colors = xcb_generate_id(self.connection.get());
    xcb_create_colormap(self.connection.get(), XCB_COLORMAP_ALLOC_NONE, colors, screen.root,
                        visual);
    const std::uint32_t values[] = {color, 0, 1, colors};
    xcb_create_window(
        self.connection.get(), names.isBlended ? 32 : screen.root_depth, self.window, screen.root,
        static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
        static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rect.height), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
        values);
    if (!names.title.empty())
        setText(self.connection, self.window, XCB_ATOM_WM_NAME, names.title);
    if (!names.applicationClass.empty())
        setText(self.connection, self.window, XCB_ATOM_WM_CLASS,
                "instance" + std::string(1, '\0') + names.applicationClass + '\0');
    if (names.process != 0)
        xcb_change_property(self.connection.get(), XCB_PROP_MODE_REPLACE, self.window,
                            atom(self.connection, "_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1,
                            &names.process);
    show();
}

TestWindow::~TestWindow() {
    close();
}

void TestWindow::close() {
    auto& self = *m_implementation;
    if (self.window == 0)
        return;
    xcb_destroy_window(self.connection.get(), self.window);
    roundTrip(self.connection);
    self.window = 0;
}

void TestWindow::show() {
    xcb_map_window(m_implementation->connection.get(), id());
    roundTrip(m_implementation->connection);
}

void TestWindow::hide() {
    xcb_unmap_window(m_implementation->connection.get(), id());
    roundTrip(m_implementation->connection);
}

void TestWindow::place(media::color::PixelRect rect) {
    const std::uint32_t values[] = {
        static_cast<std::uint32_t>(rect.x), static_cast<std::uint32_t>(rect.y),
        static_cast<std::uint32_t>(rect.width), static_cast<std::uint32_t>(rect.height)};
    xcb_configure_window(m_implementation->connection.get(), id(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values);
    roundTrip(m_implementation->connection);
    m_implementation->rect = rect;
}

void TestWindow::setNumbers(const std::string& property,
                            const std::vector<std::uint32_t>& numbers) {
    const auto& connection = m_implementation->connection;
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, id(), atom(connection, property),
                        XCB_ATOM_CARDINAL, 32, static_cast<std::uint32_t>(numbers.size()),
                        numbers.data());
    roundTrip(connection);
}

void TestWindow::moveInto(const TestWindow& parent, int x, int y) {
    const auto& connection = m_implementation->connection;
    xcb_reparent_window(connection.get(), id(), parent.id(), static_cast<std::int16_t>(x),
                        static_cast<std::int16_t>(y));
    roundTrip(connection);
}

void TestWindow::shape(const std::vector<media::color::PixelRect>& parts) {
    std::vector<xcb_rectangle_t> list;
    for (const media::color::PixelRect& part : parts)
        list.push_back({static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
                        static_cast<std::uint16_t>(part.width),
                        static_cast<std::uint16_t>(part.height)});
    xcb_shape_rectangles(m_implementation->connection.get(), XCB_SHAPE_SO_SET,
                         XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED, id(), 0, 0,
                         static_cast<std::uint32_t>(list.size()), list.data());
    roundTrip(m_implementation->connection);
}

void TestWindow::raise() {
    m_implementation->stack(XCB_STACK_MODE_ABOVE);
}

void TestWindow::lower() {
    m_implementation->stack(XCB_STACK_MODE_BELOW);
}

std::uint32_t TestWindow::id() const {
    return m_implementation->window;
}

void TestWindow::fill(std::uint32_t color) {
    fill({0, 0, m_implementation->rect.width, m_implementation->rect.height}, color);
}

void TestWindow::fill(media::color::PixelRect rect, std::uint32_t color) {
    fillRect(m_implementation->connection, m_implementation->window, rect, color);
}

void TestWindow::flashOnClick(std::uint32_t color, int side) {
    m_implementation->answerPresses(color, side);
}

} // namespace vantro::test

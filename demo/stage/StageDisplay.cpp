#include "stage/StageDisplay.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include <cairo-xcb.h>
#include <poll.h>
#include <xcb/xcb.h>

namespace vantro::stage {
namespace {

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

struct FreeEvent {
    void operator()(xcb_generic_event_t* event) const { std::free(event); }
};

xcb_visualtype_t* visualOf(const xcb_screen_t& screen) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0;
         xcb_depth_next(&depths)) {
        auto visuals = xcb_depth_visuals_iterator(depths.data);
        for (; visuals.rem > 0; xcb_visualtype_next(&visuals))
            if (visuals.data->visual_id == screen.root_visual)
                return visuals.data;
    }
    throw std::runtime_error("the screen has no visual");
}

class XcbWindow final : public StageWindow {
  public:
    XcbWindow(xcb_connection_t* connection, const xcb_screen_t& screen, WindowKind kind, Box frame,
              const std::string& title)
        : m_connection(connection), m_window(xcb_generate_id(connection)), m_frame(frame) {
        const std::uint32_t values[] = {XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_EXPOSURE};
        xcb_create_window(
            connection, XCB_COPY_FROM_PARENT, m_window, screen.root,
            static_cast<std::int16_t>(frame.x), static_cast<std::int16_t>(frame.y),
            static_cast<std::uint16_t>(frame.width), static_cast<std::uint16_t>(frame.height), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, values);
        setNames(title);
        setPlace(frame);
        if (kind == WindowKind::desktop)
            setAtoms("_NET_WM_WINDOW_TYPE", {atom("_NET_WM_WINDOW_TYPE_DESKTOP")});
        const auto width = static_cast<int>(frame.width);
        const auto height = static_cast<int>(frame.height);
        m_onScreen.reset(
            cairo_xcb_surface_create(connection, m_window, visualOf(screen), width, height));
        m_picture.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
        m_context.reset(cairo_create(m_picture.get()));
        xcb_map_window(connection, m_window);
        xcb_flush(connection);
    }

    ~XcbWindow() override {
        m_onScreen.reset();
        xcb_destroy_window(m_connection, m_window);
    }

    unsigned id() const override { return m_window; }
    Box frame() const override { return m_frame; }
    cairo_t* context() override { return m_context.get(); }

    void show() override {
        cairo_surface_flush(m_picture.get());
        const Context painter(cairo_create(m_onScreen.get()));
        cairo_set_operator(painter.get(), CAIRO_OPERATOR_SOURCE);
        cairo_set_source_surface(painter.get(), m_picture.get(), 0, 0);
        cairo_paint(painter.get());
        cairo_surface_flush(m_onScreen.get());
        xcb_flush(m_connection);
    }

  private:
    xcb_atom_t atom(const char* name) const {
        auto* reply = xcb_intern_atom_reply(
            m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
            nullptr);
        const xcb_atom_t result = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
        std::free(reply);
        return result;
    }

    void setNumbers(xcb_atom_t name, xcb_atom_t type, const std::uint32_t* numbers,
                    std::uint32_t count) const {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, name, type, 32, count,
                            numbers);
    }

    void setAtoms(const char* name, std::initializer_list<xcb_atom_t> atoms) const {
        setNumbers(atom(name), XCB_ATOM_ATOM, atoms.begin(),
                   static_cast<std::uint32_t>(atoms.size()));
    }

    void setNames(const std::string& title) const {
        const auto set = [this](xcb_atom_t name, xcb_atom_t type, const std::string& text) {
            xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, name, type, 8,
                                static_cast<std::uint32_t>(text.size()), text.data());
        };
        set(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, title);
        set(atom("_NET_WM_NAME"), atom("UTF8_STRING"), title);
        set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, std::string("stage\0Stage\0", 12));
    }

    /// Where the user put it, static gravity, no frame around it.
    void setPlace(Box frame) const {
        constexpr std::uint32_t userPosition = 1;
        constexpr std::uint32_t hasGravity = 1U << 9;
        std::uint32_t sizeHints[18] = {userPosition | hasGravity,
                                       static_cast<std::uint32_t>(frame.x),
                                       static_cast<std::uint32_t>(frame.y)};
        sizeHints[17] = XCB_GRAVITY_STATIC;
        setNumbers(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, sizeHints, 18);
        constexpr std::uint32_t decorationsGiven = 2;
        const std::uint32_t motifHints[5] = {decorationsGiven, 0, 0, 0, 0};
        const xcb_atom_t motif = atom("_MOTIF_WM_HINTS");
        setNumbers(motif, motif, motifHints, 5);
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_window;
    Box m_frame;
    Surface m_onScreen;
    Surface m_picture;
    Context m_context;
};

} // namespace

struct StageDisplay::Implementation {
    std::unique_ptr<xcb_connection_t, Disconnect> connection;
    const xcb_screen_t* screen = nullptr;

    std::unique_ptr<xcb_generic_event_t, FreeEvent> poll() const {
        return std::unique_ptr<xcb_generic_event_t, FreeEvent>(
            xcb_poll_for_event(connection.get()));
    }
};

StageDisplay::StageDisplay(const std::string& display)
    : m_implementation(std::make_unique<Implementation>()) {
    auto& self = *m_implementation;
    self.connection.reset(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr));
    if (xcb_connection_has_error(self.connection.get()) != 0)
        throw std::runtime_error("cannot open display " + display);
    self.screen = xcb_setup_roots_iterator(xcb_get_setup(self.connection.get())).data;
}

StageDisplay::~StageDisplay() = default;

Box StageDisplay::screen() const {
    const auto& screen = *m_implementation->screen;
    return {0, 0, static_cast<double>(screen.width_in_pixels),
            static_cast<double>(screen.height_in_pixels)};
}

std::unique_ptr<StageWindow> StageDisplay::makeWindow(WindowKind kind, Box frame,
                                                      const std::string& title) {
    return std::make_unique<XcbWindow>(m_implementation->connection.get(),
                                       *m_implementation->screen, kind, frame, title);
}

StageDisplay::Events StageDisplay::await(double seconds) {
    const auto& self = *m_implementation;
    auto event = self.poll();
    if (!event) {
        pollfd source{xcb_get_file_descriptor(self.connection.get()), POLLIN, 0};
        const auto span = static_cast<long>(std::clamp(seconds, 0.0, 1.0) * 1e9);
        const timespec wait{span / 1'000'000'000, span % 1'000'000'000};
        ppoll(&source, 1, &wait, nullptr);
        event = self.poll();
    }
    Events result;
    result.isLost = xcb_connection_has_error(self.connection.get()) != 0;
    if (!event)
        return result;
    const int type = event->response_type & 0x7f;
    if (type == XCB_BUTTON_PRESS) {
        const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(*event);
        result.press = Press{press.event, static_cast<double>(press.event_x),
                             static_cast<double>(press.event_y), press.detail};
    } else if (type == XCB_EXPOSE) {
        result.exposedWindow = reinterpret_cast<const xcb_expose_event_t&>(*event).window;
    }
    return result;
}

} // namespace vantro::stage

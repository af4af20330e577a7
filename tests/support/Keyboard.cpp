#include "support/Keyboard.h"

#include "support/XConnection.h"

#include <cstdlib>
#include <stdexcept>

#include <xcb/xtest.h>

namespace vantro::test {

struct Keyboard::Implementation {
    XConnection connection;

    xcb_keycode_t keyOf(std::uint32_t symbol) const {
        const auto* setup = xcb_get_setup(connection.get());
        const auto first = setup->min_keycode;
        auto* const map = xcb_get_keyboard_mapping_reply(
            connection.get(),
            xcb_get_keyboard_mapping(connection.get(), first,
                                     static_cast<std::uint8_t>(setup->max_keycode - first + 1)),
            nullptr);
        const std::unique_ptr<void, void (*)(void*)> owned(map, std::free);
        const auto* symbols = xcb_get_keyboard_mapping_keysyms(map);
        for (int i = 0; i < xcb_get_keyboard_mapping_keysyms_length(map); ++i)
            if (symbols[i] == symbol)
                return static_cast<xcb_keycode_t>(first + i / map->keysyms_per_keycode);
        throw std::runtime_error("no such key");
    }
    void fake(std::uint8_t type, std::uint32_t symbol) const {
        xcb_test_fake_input(connection.get(), type, keyOf(symbol), 0, screenOf(connection).root, 0,
                            0, 0);
        roundTrip(connection);
    }
};

Keyboard::Keyboard(const XServer& server)
    : m_implementation(new Implementation{connectTo(server.display())}) {}

Keyboard::~Keyboard() = default;

void Keyboard::press(std::uint32_t symbol) {
    m_implementation->fake(XCB_KEY_PRESS, symbol);
}

void Keyboard::release(std::uint32_t symbol) {
    m_implementation->fake(XCB_KEY_RELEASE, symbol);
}

void Keyboard::type(const std::vector<std::uint32_t>& symbols) {
    for (const auto symbol : symbols)
        press(symbol);
    for (auto symbol = symbols.rbegin(); symbol != symbols.rend(); ++symbol)
        release(*symbol);
}

void Keyboard::focus(std::uint32_t window) {
    xcb_set_input_focus(m_implementation->connection.get(), XCB_INPUT_FOCUS_NONE, window,
                        XCB_CURRENT_TIME);
    roundTrip(m_implementation->connection);
}

bool Keyboard::take(std::uint32_t symbol, std::uint16_t modifiers) {
    auto* server = m_implementation->connection.get();
    const std::unique_ptr<void, void (*)(void*)> error(
        xcb_request_check(server, xcb_grab_key_checked(server, 0,
                                                       screenOf(m_implementation->connection).root,
                                                       modifiers, m_implementation->keyOf(symbol),
                                                       XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)),
        std::free);
    return error == nullptr;
}

void Keyboard::remap(std::uint32_t from, std::uint32_t to) {
    const xcb_keysym_t symbols[]{to, to};
    xcb_change_keyboard_mapping(m_implementation->connection.get(), 1,
                                m_implementation->keyOf(from), 2, symbols);
    roundTrip(m_implementation->connection);
}

} // namespace vantro::test

#include "capture/x11/input/X11GlobalKeys.h"

#include "base/SerialQueue.h"
#include "capture/WakeUp.h"
#include "capture/x11/server/X11Connection.h"

#include <algorithm>
#include <thread>
#include <utility>

#include <fmt/format.h>

namespace vantro::capture::x11 {
namespace {

constexpr std::uint32_t numLockSymbol = 0xff7f;
constexpr std::uint32_t altSymbol = 0xffe9;
constexpr std::uint32_t superSymbol = 0xffeb;

/// What the keys of a keyboard stand for.
class Keyboard {
  public:
    explicit Keyboard(const X11Connection& connection)
        : m_first(xcb_get_setup(connection.get())->min_keycode) {
        const auto count =
            static_cast<std::uint8_t>(xcb_get_setup(connection.get())->max_keycode - m_first + 1);
        m_symbols = connection.await(xcb_get_keyboard_mapping_reply,
                                     xcb_get_keyboard_mapping(connection.get(), m_first, count));
        m_modifiers = connection.await(xcb_get_modifier_mapping_reply,
                                       xcb_get_modifier_mapping(connection.get()));
    }

    /// Of the keys with that sign, wherever it is on them; first those that have it without Shift.
    std::vector<xcb_keycode_t> keysOf(std::uint32_t symbol) const {
        std::vector<xcb_keycode_t> keys;
        if (!m_symbols || symbol == 0)
            return keys;
        const int columns = m_symbols->keysyms_per_keycode;
        const auto* symbols = xcb_get_keyboard_mapping_keysyms(m_symbols.get());
        const int rows =
            columns == 0 ? 0 : xcb_get_keyboard_mapping_keysyms_length(m_symbols.get()) / columns;
        for (int column = 0; column < columns && keys.empty(); ++column)
            for (int row = 0; row < rows; ++row)
                if (symbols[row * columns + column] == symbol)
                    keys.push_back(static_cast<xcb_keycode_t>(m_first + row));
        return keys;
    }
    /// The modifier that a key with that sign sets; 0 where there is none.
    std::uint16_t maskOf(std::uint32_t symbol) const {
        constexpr int modifiers = 8;
        for (const auto key : keysOf(symbol)) {
            const int width = m_modifiers ? m_modifiers->keycodes_per_modifier : 0;
            const auto* codes =
                width > 0 ? xcb_get_modifier_mapping_keycodes(m_modifiers.get()) : nullptr;
            for (int i = 0; i < modifiers * width; ++i)
                if (codes[i] == key)
                    return static_cast<std::uint16_t>(1U << (i / width));
        }
        return 0;
    }

  private:
    xcb_keycode_t m_first;
    XcbOwned<xcb_get_keyboard_mapping_reply_t> m_symbols;
    XcbOwned<xcb_get_modifier_mapping_reply_t> m_modifiers;
};

struct Grab {
    GlobalAction action = GlobalAction::toggle;
    xcb_keycode_t key = 0;
    std::uint16_t modifiers = 0;
};

class Grabs final : public GlobalKeys {
  public:
    Grabs(std::vector<GlobalKey> wished, Listener listener, std::string display)
        : m_wished(std::move(wished))
        , m_listener(std::move(listener))
        , m_display(std::move(display))
        , m_thread([this](const std::stop_token& stop) { run(stop); }) {}
    ~Grabs() override {
        m_thread.request_stop();
        m_wakeUp.ring();
    }

  private:
    void run(const std::stop_token& stop) {
        base::setThreadName("com.vantro.keys");
        const auto connection = X11Connection::open(m_display);
        if (!connection)
            return tell(GlobalKeysState::Kind::failed,
                        fmt::format("No keys: {}.", connection.error()));
        if (!bind(*connection, GlobalKeysState::Kind::failed))
            return;
        m_listener.changed({GlobalKeysState::Kind::bound, m_wished, {}});
        while (!stop.stop_requested()) {
            while (const XcbEvent event = connection->pollEvent())
                if (!handle(*connection, *event))
                    return;
            if (connection->isLost())
                return tell(GlobalKeysState::Kind::ended,
                            "The display is gone, and the keys with it.");
            connection->wait(m_wakeUp.fd());
        }
    }

    void tell(GlobalKeysState::Kind kind, std::string whyNot) const {
        m_listener.changed({kind, {}, std::move(whyNot)});
    }

    /// Tells why not, as `otherwise`.
    bool bind(const X11Connection& connection, GlobalKeysState::Kind otherwise) {
        const Keyboard keyboard(connection);
        m_grabs.clear();
        m_locks = {0, XCB_MOD_MASK_LOCK};
        if (const auto numLock = keyboard.maskOf(numLockSymbol))
            for (const auto lock : {0, static_cast<int>(XCB_MOD_MASK_LOCK)})
                m_locks.push_back(static_cast<std::uint16_t>(numLock | lock));
        for (const auto& each : m_wished)
            if (auto why = whyNotGrabbed(connection, keyboard, each); !why.empty()) {
                tell(otherwise, std::move(why));
                return false;
            }
        return true;
    }

    /// Empty where the key is ours now.
    std::string whyNotGrabbed(const X11Connection& connection, const Keyboard& keyboard,
                              const GlobalKey& wished) {
        if (wished.keys.empty())
            return {}; // the user wants none for it
        const auto wanted = parseKeys(wished.keys);
        if (!wanted)
            return fmt::format("{} cannot be used from anywhere.", wished.keys);
        const auto codes = keyboard.keysOf(wanted->symbol);
        if (codes.empty())
            return fmt::format("The keyboard has no key for {}.", wished.keys);
        const auto modifiers = modifiersOf(*wanted, keyboard);
        for (const auto code : codes)
            if (std::ranges::any_of(m_grabs, [&](const Grab& each) {
                    return each.key == code && each.modifiers == modifiers;
                }))
                return fmt::format("{} cannot do two things; take another key.", wished.keys);
        for (const auto code : codes)
            if (!grab(connection, {wished.action, code, modifiers}))
                return fmt::format("Another program has {} already; take another key.",
                                   wished.keys);
        return {};
    }

    static std::uint16_t modifiersOf(const KeyCombination& keys, const Keyboard& keyboard) {
        const auto either = [](std::uint16_t mask, std::uint16_t usual) {
            return mask != 0 ? mask : usual;
        };
        std::uint16_t modifiers = 0;
        modifiers |= keys.control ? XCB_MOD_MASK_CONTROL : 0;
        modifiers |= keys.shift ? XCB_MOD_MASK_SHIFT : 0;
        modifiers |= keys.alt ? either(keyboard.maskOf(altSymbol), XCB_MOD_MASK_1) : 0;
        modifiers |= keys.super ? either(keyboard.maskOf(superSymbol), XCB_MOD_MASK_4) : 0;
        return modifiers;
    }

    bool grab(const X11Connection& connection, const Grab& wanted) {
        for (const auto lock : m_locks) {
            const XcbError error(xcb_request_check(
                connection.get(),
                xcb_grab_key_checked(connection.get(), 1, connection.root(),
                                     static_cast<std::uint16_t>(wanted.modifiers | lock),
                                     wanted.key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
            if (error)
                return false;
        }
        m_grabs.push_back(wanted);
        return true;
    }

    /// False where the keys are gone.
    bool handle(const X11Connection& connection, const xcb_generic_event_t& event) {
        const int type = event.response_type & 0x7f;
        if (type == XCB_KEY_PRESS)
            press(reinterpret_cast<const xcb_key_press_event_t&>(event));
        else if (type == XCB_KEY_RELEASE)
            m_released = reinterpret_cast<const xcb_key_release_event_t&>(event);
        else if (type == XCB_MAPPING_NOTIFY &&
                 reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request !=
                     XCB_MAPPING_POINTER) {
            xcb_ungrab_key(connection.get(), XCB_GRAB_ANY, connection.root(), XCB_MOD_MASK_ANY);
            return bind(connection, GlobalKeysState::Kind::ended);
        }
        return true;
    }

    /// A key that is held repeats itself: it is released and pressed again at one time.
    void press(const xcb_key_press_event_t& press) const {
        if (m_released.detail == press.detail && m_released.time == press.time)
            return;
        std::uint16_t locks = 0;
        for (const auto lock : m_locks)
            locks |= lock;
        constexpr std::uint16_t allModifiers = 0xff; // above are the buttons
        const auto modifiers = static_cast<std::uint16_t>(press.state & allModifiers & ~locks);
        for (const auto& each : m_grabs)
            if (each.key == press.detail && each.modifiers == modifiers)
                return m_listener.pressed(each.action);
    }

    const std::vector<GlobalKey> m_wished;
    const Listener m_listener;
    const std::string m_display;
    WakeUp m_wakeUp;
    // Of the thread:
    std::vector<Grab> m_grabs;
    std::vector<std::uint16_t> m_locks; ///< modifiers that may be on as well
    xcb_key_release_event_t m_released{};
    std::jthread m_thread; // goes first
};

} // namespace

std::unique_ptr<GlobalKeys> grabKeys(const std::vector<GlobalKey>& wished,
                                     GlobalKeys::Listener listener, const std::string& display) {
    return std::make_unique<Grabs>(wished, std::move(listener), display);
}

} // namespace vantro::capture::x11

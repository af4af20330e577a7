// A hand for demonstrations: moves the pointer along smooth paths and clicks, through XTEST.
#include "base/CommandOptions.h"
#include "pointer/PointerScript.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <numbers>
#include <stdexcept>
#include <thread>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace vantro::pointer {
namespace {

using Seconds = std::chrono::duration<double>;
using Instant = std::chrono::time_point<std::chrono::steady_clock, Seconds>;

constexpr Seconds stepInterval{1.0 / 120}; // two positions for each recorded frame
constexpr double bend = 0.06;              // of the distance: how far a path swings out
constexpr Seconds holdTime{0.08};          // from a press to its release, as a finger does

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// Carries steps out, each when the one before has taken its full time: delays do not add up.
class Hand {
  public:
    explicit Hand(const std::string& display)
        : m_connection(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr)) {
        if (xcb_connection_has_error(m_connection.get()) != 0)
            throw std::runtime_error("cannot open display " + display);
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
        m_time = std::chrono::steady_clock::now();
    }

    void operator()(const Wait& wait) { sleepFor(Seconds(wait.seconds)); }

    void operator()(const Click& click) {
        fake(XCB_BUTTON_PRESS, click.button);
        sleepFor(holdTime);
        fake(XCB_BUTTON_RELEASE, click.button);
    }

    /// Starts and arrives at rest, on a slight arc.
    void operator()(const Move& move) {
        const auto [startX, startY] = location();
        const Instant start = m_time;
        for (double share = 0; share < 1;) {
            sleepFor(stepInterval);
            share = move.seconds > 0 ? (m_time - start).count() / move.seconds : 1;
            share = std::min(share, 1.0);
            const double along = share * share * share * (share * (6 * share - 15) + 10);
            const double aside = bend * std::sin(std::numbers::pi * along);
            fake(XCB_MOTION_NOTIFY, 0,
                 startX + (move.x - startX) * along + (move.y - startY) * aside,
                 startY + (move.y - startY) * along - (move.x - startX) * aside);
        }
    }

  private:
    void sleepFor(Seconds span) {
        m_time += span;
        std::this_thread::sleep_until(m_time);
    }

    void fake(int type, int detail, double x = 0, double y = 0) {
        xcb_test_fake_input(m_connection.get(), static_cast<std::uint8_t>(type),
                            static_cast<std::uint8_t>(detail), 0, m_root,
                            static_cast<std::int16_t>(std::lround(x)),
                            static_cast<std::int16_t>(std::lround(y)), 0);
        xcb_flush(m_connection.get());
        if (xcb_connection_has_error(m_connection.get()) != 0)
            throw std::runtime_error("the display has gone");
    }

    std::pair<double, double> location() {
        auto* reply = xcb_query_pointer_reply(
            m_connection.get(), xcb_query_pointer(m_connection.get(), m_root), nullptr);
        if (reply == nullptr)
            throw std::runtime_error("the display has gone");
        const std::pair<double, double> result(reply->root_x, reply->root_y);
        std::free(reply);
        return result;
    }

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_root = 0;
    Instant m_time;
};

std::string readAll(const std::string& path) {
    if (path == "-")
        return {std::istreambuf_iterator<char>(std::cin), {}};
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace
} // namespace vantro::pointer

int main(int argumentCount, char** arguments) {
    std::string display;
    std::string file;
    std::vector<std::string> steps;
    vantro::base::CommandLineReader app(
        "Moves the pointer and clicks. Steps: \"move X Y SECONDS\", "
        "\"click left|middle|right\", \"wait SECONDS\".");
    app.option("--display", display, "X display; else that of DISPLAY");
    app.option("--file", file, "read the steps from a file, one a line; - is standard input");
    app.option("steps", steps, "steps, each one argument or separated by \";\"");
    if (const auto exitCode = app.read(argumentCount, arguments))
        return *exitCode;
    try {
        std::string text = file.empty() ? std::string() : vantro::pointer::readAll(file);
        for (const auto& step : steps)
            text += "\n" + step;
        const auto script = vantro::pointer::parseScript(text);
        vantro::pointer::Hand hand(display);
        for (const auto& step : script)
            std::visit(hand, step);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantro-pointer: %s\n", error.what());
        return 1;
    }
}

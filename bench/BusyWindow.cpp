// A full-screen window for benchmarks: `moving` repaints all of it 60 times a second, as a video or
// a game would; `typing` changes one small glyph-sized cell about eight times a second.

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <thread>
#include <vector>

#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;

struct Window {
    xcb_connection_t* connection = nullptr;
    xcb_window_t id = 0;
    xcb_gcontext_t context = 0;
    std::uint8_t depth = 24;
    int width = 0;
    int height = 0;
};

Window openFullScreen() {
    Window window;
    window.connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(window.connection) != 0) {
        std::fprintf(stderr, "busy-window: cannot open the display\n");
        std::exit(1);
    }
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(window.connection)).data;
    window.width = screen->width_in_pixels;
    window.height = screen->height_in_pixels;
    window.depth = screen->root_depth;
    window.id = xcb_generate_id(window.connection);
    const std::array<std::uint32_t, 2> values{0xffffffU, 1U}; // white, override-redirect
    xcb_create_window(window.connection, XCB_COPY_FROM_PARENT, window.id, screen->root, 0, 0,
                      screen->width_in_pixels, screen->height_in_pixels, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    window.context = xcb_generate_id(window.connection);
    xcb_create_gc(window.connection, window.context, window.id, 0, nullptr);
    xcb_map_window(window.connection, window.id);
    xcb_flush(window.connection);
    return window;
}

/// Slanted bands of color that slide: every pixel changes, as in a moving picture.
void paintBands(std::vector<std::uint32_t>& row, int frame) {
    for (std::size_t x = 0; x < row.size(); ++x) {
        const double phase = static_cast<double>(x) * 0.01 + frame * 0.05;
        const auto level = static_cast<std::uint32_t>(128 + 100 * std::sin(phase));
        const auto other = static_cast<std::uint32_t>(128 + 100 * std::cos(phase * 0.7));
        row[x] = level << 16 | other << 8 | (255 - level);
    }
}

void runMoving(const Window& window) {
    const auto bytes = static_cast<std::size_t>(window.width) * window.height * 4;
    const int memory = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    auto* pixels = static_cast<std::uint32_t*>(shmat(memory, nullptr, 0));
    const auto segment = xcb_generate_id(window.connection);
    xcb_shm_attach(window.connection, segment, memory, 0);
    std::vector<std::uint32_t> band(static_cast<std::size_t>(window.width + window.height));
    auto next = Clock::now();
    for (int frame = 0; xcb_connection_has_error(window.connection) == 0; ++frame) {
        paintBands(band, frame);
        for (int y = 0; y < window.height; ++y)
            std::memcpy(pixels + static_cast<std::size_t>(y) * window.width, band.data() + y,
                        static_cast<std::size_t>(window.width) * 4);
        xcb_shm_put_image(window.connection, window.id, window.context, window.width, window.height,
                          0, 0, window.width, window.height, 0, 0, window.depth,
                          XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segment, 0);
        std::free(xcb_get_input_focus_reply(window.connection,
                                            xcb_get_input_focus(window.connection), nullptr));
        next += std::chrono::microseconds(16'667);
        std::this_thread::sleep_until(next);
    }
    shmctl(memory, IPC_RMID, nullptr);
}

void runTyping(const Window& window) {
    constexpr int cellWidth = 9;
    constexpr int cellHeight = 18;
    int x = 100;
    int y = 100;
    for (auto next = Clock::now(); xcb_connection_has_error(window.connection) == 0;) {
        const std::uint32_t ink = 0x202020;
        xcb_change_gc(window.connection, window.context, XCB_GC_FOREGROUND, &ink);
        const std::array strokes{
            xcb_rectangle_t{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 2, 14},
            xcb_rectangle_t{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y + 6), 7, 2}};
        xcb_poly_fill_rectangle(window.connection, window.id, window.context, strokes.size(),
                                strokes.data());
        xcb_flush(window.connection);
        x += cellWidth;
        if (x > window.width - 100) {
            x = 100;
            y = y + cellHeight > window.height - 100 ? 100 : y + cellHeight;
        }
        next += std::chrono::milliseconds(120);
        std::this_thread::sleep_until(next);
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view scene = argc == 2 ? argv[1] : "";
    if (scene != "moving" && scene != "typing") {
        std::fprintf(stderr, "usage: vantro-busy-window moving|typing\n");
        return 2;
    }
    const auto window = openFullScreen();
    if (scene == "moving")
        runMoving(window);
    else
        runTyping(window);
    xcb_disconnect(window.connection);
    return 0;
}

#include "session/StripedScreen.h"

#include "export/RecordingFixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>

#include <fmt/format.h>

namespace vantro::test {
namespace {

// Far enough apart to survive two encoders, and all far from black.
constexpr std::array levels{63, 111, 159, 207, 255};
constexpr int tolerance = 20;
constexpr int dark = 35;

using Pixel = std::array<std::uint8_t, 3>;

std::uint32_t colorOf(int tick) {
    const auto level = [](int digit) {
        return static_cast<std::uint32_t>(levels[static_cast<std::size_t>(digit % 5)]);
    };
    return level(tick) << 16 | level(tick / 5) << 8 | level(tick / 25);
}

std::optional<int> digitOf(int value) {
    for (std::size_t digit = 0; digit < levels.size(); ++digit)
        if (std::abs(value - levels[digit]) <= tolerance)
            return static_cast<int>(digit);
    return {};
}

int tickOf(const Pixel& color) {
    const auto red = digitOf(color[0]);
    const auto green = digitOf(color[1]);
    const auto blue = digitOf(color[2]);
    return red && green && blue ? *red + 5 * *green + 25 * *blue : -1;
}

bool isLit(const Pixel& pixel) {
    return std::ranges::max(pixel) > dark;
}

std::size_t medianGap(const std::vector<std::size_t>& places) {
    std::vector<std::size_t> gaps;
    for (std::size_t i = 1; i < places.size(); ++i)
        gaps.push_back(places[i] - places[i - 1]);
    std::ranges::nth_element(gaps, gaps.begin() + static_cast<std::ptrdiff_t>(gaps.size() / 2));
    return gaps[gaps.size() / 2];
}

/// The middle of the line, where there is no background. What an encoder leaves between two stripes
/// may look like one more.
Stripes readLine(const std::vector<Pixel>& line) {
    const auto first = line.size() / 5;
    const auto last = line.size() - first;
    std::vector<std::size_t> rises;
    for (auto x = first; x < last; ++x)
        if (isLit(line[x]) && !isLit(line[x - 1]))
            rises.push_back(x);
    if (rises.size() < 3)
        return {};
    const auto gap = medianGap(rises);
    const auto isOne = [&](std::size_t left, std::size_t right) {
        return right - left > gap * 3 / 4 && right - left < gap * 5 / 4;
    };
    while (rises.size() > 2 && !isOne(rises[0], rises[1]))
        rises.erase(rises.begin());
    while (rises.size() > 2 && !isOne(rises[rises.size() - 2], rises.back()))
        rises.pop_back();
    const auto span = static_cast<double>(rises.back() - rises.front());
    const double period = span / std::round(span / static_cast<double>(gap));
    return {tickOf(line[rises[rises.size() / 2] + static_cast<std::size_t>(period / 4)]), period};
}

} // namespace

StripedScreen::StripedScreen(const XServer& server, int width, int height)
    : m_window(server, {0, 0, width, height}, 0x000000), m_size{0, 0, width, height} {
    m_window.lower();
    follow();
}

void StripedScreen::follow() {
    const int now = static_cast<int>((Clock::now() - m_start) / tick);
    if (now == m_shown)
        return;
    m_shown = now;
    for (int x = 0; x < m_size.width; x += period)
        m_window.fill({x, 0, period / 2, m_size.height}, colorOf(now % ticks));
}

std::vector<Stripes> stripesOf(const std::filesystem::path& film) {
    const auto width = probeStreams(film)[0]["width"].get<std::size_t>();
    const auto command =
        fmt::format("ffmpeg -v error -i '{}' -vf 'fps=30,format=rgb24,crop=iw:1:0:ih*3/4' "
                    "-f rawvideo -",
                    film.string());
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    std::vector<Stripes> found;
    std::vector<Pixel> line(width);
    while (std::fread(line.data(), sizeof(Pixel), width, pipe.get()) == width)
        found.push_back(readLine(line));
    return found;
}

} // namespace vantro::test

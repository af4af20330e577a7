// Puts something worth recording on an X screen: a wallpaper, a page with controls that answer
// clicks, and a chart that never stops moving.
#include "base/CommandOptions.h"
#include "stage/Chart.h"
#include "stage/Page.h"
#include "stage/StageDisplay.h"
#include "stage/Wallpaper.h"

#include <chrono>
#include <cstdio>
#include <exception>

namespace vantro::stage {
namespace {

struct Options {
    std::string display;
    double framesPerSecond = 60;
    double seconds = 0; ///< 0: until the display goes
    bool hasWallpaper = true;
    bool hasPage = true;
    bool hasChart = true;
    std::vector<double> pagePlace{100, 110};
    std::vector<double> chartPlace{1200, 110, 620, 440};
    std::vector<double> shadow; ///< of one window more, which another program shows
};

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

class Stage {
  public:
    explicit Stage(const Options& options)
        : m_options(options), m_display(options.display), m_start(secondsNow()) {
        const Box pageFrame{options.pagePlace[0], options.pagePlace[1], Page::width, Page::height};
        const Box chartFrame{options.chartPlace[0], options.chartPlace[1], options.chartPlace[2],
                             options.chartPlace[3]};
        if (options.hasWallpaper) {
            m_wallpaper = m_display.makeWindow(WindowKind::desktop, m_display.screen(), "Desktop");
            drawWallpaper(m_wallpaper->context(), m_display.screen(),
                          shadows(pageFrame, chartFrame));
            m_wallpaper->show();
        }
        if (options.hasPage)
            m_pageWindow = m_display.makeWindow(WindowKind::ordinary, pageFrame, "Aurora");
        if (options.hasChart)
            m_chartWindow = m_display.makeWindow(WindowKind::ordinary, chartFrame, "Live signals");
    }

    /// For a script: where on the screen each control is to be clicked.
    void tellPlaces() const {
        if (m_pageWindow)
            for (const auto& place : m_page.places())
                std::printf("%s %.0f %.0f\n", place.name.c_str(), m_pageWindow->frame().x + place.x,
                            m_pageWindow->frame().y + place.y);
        std::printf("ready\n");
        std::fflush(stdout);
    }

    void run() {
        const double interval = 1 / m_options.framesPerSecond;
        double next = secondsNow();
        for (;;) {
            const double now = secondsNow();
            if (m_options.seconds > 0 && now - m_start > m_options.seconds)
                return;
            if (now >= next) {
                drawFrame(now);
                next = std::max(next + interval, now);
            }
            const auto events = m_display.await(next - secondsNow());
            if (events.isLost)
                return;
            handle(events);
        }
    }

  private:
    std::vector<Box> shadows(Box page, Box chart) const {
        std::vector<Box> list;
        if (m_options.hasPage)
            list.push_back(page);
        if (m_options.hasChart)
            list.push_back(chart);
        if (m_options.shadow.size() == 4)
            list.push_back({m_options.shadow[0], m_options.shadow[1], m_options.shadow[2],
                            m_options.shadow[3]});
        return list;
    }

    void drawFrame(double now) {
        if (m_chartWindow) {
            drawChart(m_chartWindow->context(), m_chartWindow->frame(), now - m_start);
            m_chartWindow->show();
        }
        const bool isMoving = m_page.isMoving(now);
        if (m_pageWindow && (isMoving || m_isPageStale)) {
            m_page.draw(m_pageWindow->context(), now);
            m_pageWindow->show();
            m_isPageStale = false;
        }
    }

    void handle(const StageDisplay::Events& events) {
        if (events.press && m_pageWindow && events.press->window == m_pageWindow->id() &&
            (events.press->button == 1 || events.press->button == 3)) {
            const double now = secondsNow();
            m_page.press(events.press->x, events.press->y, events.press->button == 3, now);
            m_page.draw(m_pageWindow->context(), now); // at once: an answer does not wait
            m_pageWindow->show();
        }
        if (!events.exposedWindow)
            return;
        if (m_wallpaper && *events.exposedWindow == m_wallpaper->id())
            m_wallpaper->show();
        m_isPageStale |= m_pageWindow && *events.exposedWindow == m_pageWindow->id();
    }

    Options m_options;
    StageDisplay m_display;
    double m_start;
    Page m_page;
    bool m_isPageStale = true;
    std::unique_ptr<StageWindow> m_wallpaper;
    std::unique_ptr<StageWindow> m_pageWindow;
    std::unique_ptr<StageWindow> m_chartWindow;
};

} // namespace
} // namespace vantro::stage

int main(int argumentCount, char** arguments) {
    vantro::stage::Options options;
    vantro::base::CommandLineReader app(
        "Shows windows that are worth recording. Prints \"NAME X Y\" for each control, "
        "then \"ready\".");
    app.option("--display", options.display, "X display; else that of DISPLAY");
    app.option("--fps", options.framesPerSecond, "frames a second of the chart").within(1, 240);
    app.option("--seconds", options.seconds, "end after this time; else with the display");
    app.flag("!--no-wallpaper", options.hasWallpaper, "leave the desktop as it is");
    app.flag("!--no-page", options.hasPage, "no page");
    app.flag("!--no-chart", options.hasChart, "no chart, so nothing moves by itself");
    app.option("--page", options.pagePlace, "X Y of the page, which is 1040 by 800").count(2);
    app.option("--chart", options.chartPlace, "X Y WIDTH HEIGHT of the chart").count(4);
    app.option("--shadow", options.shadow,
               "X Y WIDTH HEIGHT of another program's window, for the wallpaper's shadow")
        .count(4);
    if (const auto exitCode = app.read(argumentCount, arguments))
        return *exitCode;
    try {
        vantro::stage::Stage stage(options);
        stage.tellPlaces();
        stage.run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantro-stage: %s\n", error.what());
        return 1;
    }
}

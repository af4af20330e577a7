#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/cli/StatusLine.h"
#include "base/HostClock.h"
#include "export/GIFExporter.h"
#include "export/VideoExporter.h"

#include <iostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace vantro {
namespace {

using nlohmann::ordered_json;

struct Options {
    std::filesystem::path project;
    std::filesystem::path output;
    ExportResolution resolution = ExportResolution::original;
    std::string renderer = "auto";
    bool force = false;
    bool json = false;
};

/// Shows how far an export is: a bar on a terminal, lines of JSON for programs.
class ProgressDisplay {
  public:
    ProgressDisplay(double outputDuration, bool json)
        : m_started(hostNow()), m_outputDuration(outputDuration), m_json(json) {
        update(0);
    }

    double elapsed() const { return inSeconds(hostNow() - m_started); }
    double speed(double fraction) const {
        return elapsed() > 0 ? fraction * m_outputDuration / elapsed() : 0;
    }

    void update(double fraction) {
        const double left = fraction > 0 ? elapsed() * (1 - fraction) / fraction : 0;
        if (m_json)
            std::cout << ordered_json{{"event", "progress"},
                                      {"fraction", fraction},
                                      {"speed", speed(fraction)},
                                      {"secondsLeft", left}}
                      << std::endl;
        else
            m_line.show(fmt::format("Exporting {} {:3.0f} %  {:.2f}x  {} left",
                                    progressBar(fraction, barWidth), fraction * 100,
                                    speed(fraction), clockText(left)));
    }

    void clear() { m_line.clear(); }

  private:
    static constexpr int barWidth = 30;
    StatusLine m_line;
    HostTime m_started;
    double m_outputDuration;
    bool m_json;
};

void printSummary(const Options& options, const ExportSummary& summary,
                  const ProgressDisplay& display) {
    const auto bytes = std::filesystem::file_size(options.output);
    if (options.json)
        std::cout << ordered_json{{"event", "finished"},
                                  {"output", options.output.string()},
                                  {"width", summary.width},
                                  {"height", summary.height},
                                  {"frames", summary.frameCount},
                                  {"duration", summary.duration},
                                  {"bytes", bytes},
                                  {"seconds", display.elapsed()},
                                  {"speed", display.speed(1)}}
                  << std::endl;
    else if (::isatty(STDOUT_FILENO) == 1)
        fmt::print("Exported {}: {}x{}, {} frames, {:.2f} s, {} in {:.1f} s ({:.2f}x)\n",
                   options.output.string(), summary.width, summary.height, summary.frameCount,
                   summary.duration, sizeText(static_cast<double>(bytes)), display.elapsed(),
                   display.speed(1));
}

int runExport(const Options& options, const std::stop_token& interrupted) {
    requireWritableOutput(options.output, options.force);
    const auto project = loadProject(options.project);
    const auto duration = openRecording(project.recording).timeMap.totalDuration();

    auto renderer = makeRequestedRenderer(options.renderer);
    ProgressDisplay display(duration, options.json);
    const auto report = [&](double fraction) { display.update(fraction); };
    const auto summary =
        options.output.extension() == ".gif"
            ? GIFExporter(std::move(renderer))
                  .run(project.recording, options.output, report, interrupted)
            : VideoExporter(std::move(renderer))
                  .run(project.recording, options.resolution, options.output, report, interrupted);
    display.clear();
    if (summary.outcome == ExportOutcome::cancelled) {
        if (options.json)
            std::cout << ordered_json{{"event", "cancelled"}} << std::endl;
        return exitInterrupted;
    }
    printSummary(options, summary, display);
    return exitSuccess;
}

} // namespace

void addExportCommand(CLI::App& app, CommandAction& action, const std::stop_token& interrupted) {
    auto options = std::make_shared<Options>();
    auto* command =
        app.add_subcommand("export", "Write a project as an MP4 video or an animated GIF");
    addProjectArgument(*command, options->project);
    command->add_option("--output,-o", options->output, "The file to write, FILE.mp4 or FILE.gif")
        ->required()
        ->type_name("FILE")
        ->check(endsIn({".mp4", ".gif"}));
    addResolutionOption(*command, options->resolution);
    addRendererOption(*command, options->renderer);
    command->add_flag("--force", options->force, "Replace an existing file");
    command->add_flag("--json", options->json, "Report progress as lines of JSON");
    command->callback([options, &action, interrupted] {
        action = [options, interrupted] { return runExport(*options, interrupted); };
    });
}

} // namespace vantro

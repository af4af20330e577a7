#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/cli/StatusLine.h"
#include "base/HostClock.h"
#include "export/GIFExporter.h"
#include "export/OutputRange.h"
#include "export/VideoExporter.h"
#include "model/VantroError.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <limits>
#include <set>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace vantro {
namespace {

using nlohmann::ordered_json;

namespace fs = std::filesystem;

/// A stretch of the output, seconds.
struct OutputRange {
    double start = 0;
    double end = std::numeric_limits<double>::infinity();
};

struct Options {
    std::vector<fs::path> projects;
    fs::path output; ///< a file, or for several projects a folder
    std::optional<OutputRange> range;
    std::optional<int> frameRate;
    bool toleratesDamage = false;
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

/// One project on its way to one file.
struct Job {
    fs::path project;
    fs::path output;
    bool isGif() const { return output.extension() == ".gif"; }
};

void printSummary(const Options& options, const Job& job, const ExportSummary& summary,
                  const ProgressDisplay& display) {
    const auto bytes = fs::file_size(job.output);
    if (!summary.damage.empty())
        fmt::print(stderr, "vantro: {}; exported up to there\n", summary.damage);
    if (options.json)
        std::cout << ordered_json{{"event", "finished"},
                                  {"output", job.output.string()},
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
                   job.output.string(), summary.width, summary.height, summary.frameCount,
                   summary.duration, sizeText(static_cast<double>(bytes)), display.elapsed(),
                   display.speed(1));
}

/// The recording with what the options change of it.
EditedRecording requestedRecording(const Options& options, const fs::path& project) {
    auto recording = loadProject(project).recording;
    if (options.frameRate)
        recording.metadata.frameRate = *options.frameRate;
    if (options.range) {
        const auto timeMap = openRecording(recording).timeMap;
        recording.segments = segmentsWithin(recording.segments, timeMap.sourceDuration(),
                                            options.range->start, options.range->end);
        if (recording.segments.empty())
            throw VantroError(VantroError::Kind::exportFailed,
                              fmt::format("The range begins at {:.2f} s, but {} lasts {:.2f} s",
                                          options.range->start, project.string(),
                                          timeMap.totalDuration()));
    }
    return recording;
}

int exportOne(const Options& options, const Job& job, const std::stop_token& interrupted) {
    requireWritableOutput(job.output, options.force);
    const auto recording = requestedRecording(options, job.project);
    const auto duration = openRecording(recording).timeMap.totalDuration();

    auto renderer = makeRequestedRenderer(options.renderer);
    ProgressDisplay display(duration, options.json);
    const auto report = [&](double fraction) { display.update(fraction); };
    ExportSummary summary;
    if (job.isGif()) {
        summary = GIFExporter(std::move(renderer)).run(recording, job.output, report, interrupted);
    } else {
        VideoExporter exporter(std::move(renderer));
        exporter.setToleratesDamage(options.toleratesDamage);
        summary = exporter.run(recording, options.resolution, job.output, report, interrupted);
    }
    display.clear();
    if (summary.outcome == ExportOutcome::cancelled) {
        if (options.json)
            std::cout << ordered_json{{"event", "cancelled"}} << std::endl;
        return exitInterrupted;
    }
    printSummary(options, job, summary, display);
    return exitSuccess;
}

/// PROJECT.vantro becomes PROJECT.mp4 in the output folder.
std::vector<Job> jobsOf(const Options& options) {
    if (options.projects.size() == 1)
        return {{options.projects.front(), options.output}};
    std::vector<Job> jobs;
    for (const auto& project : options.projects) {
        const auto name = project.has_filename() ? project : project.parent_path();
        jobs.push_back({project, options.output / name.stem().concat(".mp4")});
    }
    return jobs;
}

void reportFailure(const Options& options, const Job& job, const std::exception& error) {
    fmt::print(stderr, "vantro: {}: {}\n", job.project.string(), error.what());
    if (options.json)
        std::cout << ordered_json{{"event", "failed"},
                                  {"project", job.project.string()},
                                  {"error", error.what()}}
                  << std::endl;
}

/// Exports all that can be exported; one that fails does not keep the others from it.
int exportAll(const Options& options, const std::vector<Job>& jobs,
              const std::stop_token& interrupted) {
    std::size_t exported = 0;
    for (const auto& job : jobs) {
        try {
            if (exportOne(options, job, interrupted) == exitInterrupted)
                return exitInterrupted;
            ++exported;
        } catch (const std::exception& error) {
            reportFailure(options, job, error);
        }
    }
    if (options.json)
        std::cout << ordered_json{{"event", "summary"},
                                  {"exported", exported},
                                  {"failed", jobs.size() - exported}}
                  << std::endl;
    else
        fmt::print("Exported {} of {} projects to {}\n", exported, jobs.size(),
                   options.output.string());
    return exported == jobs.size() ? exitSuccess : exitFailure;
}

int runExport(const Options& options, const std::stop_token& interrupted) {
    const auto jobs = jobsOf(options);
    return jobs.size() == 1 ? exportOne(options, jobs.front(), interrupted)
                            : exportAll(options, jobs, interrupted);
}

double secondsIn(const std::string& text, double whenEmpty) {
    if (text.empty())
        return whenEmpty;
    double value = 0;
    const auto* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    return error == std::errc() && end == last ? value : -1;
}

OutputRange rangeFrom(const std::string& text) {
    const auto colon = text.find(':');
    const OutputRange range{
        secondsIn(text.substr(0, colon), 0),
        colon == std::string::npos ? -1 : secondsIn(text.substr(colon + 1), OutputRange{}.end)};
    if (!(range.start >= 0 && range.start < range.end))
        throw CLI::ValidationError("--range", text + " is no START:END in seconds");
    return range;
}

/// What no single option can check.
void checkTogether(const Options& options) {
    if (options.projects.size() == 1) {
        if (const auto problem = endsIn({".mp4", ".gif"})(options.output.string());
            !problem.empty())
            throw CLI::ValidationError("--output", problem);
        if (options.frameRate && options.output.extension() == ".gif")
            throw CLI::ValidationError("--fps", "a GIF always has 12 frames a second");
        return;
    }
    std::set<fs::path> outputs;
    for (const auto& job : jobsOf(options)) {
        if (!outputs.insert(job.output).second)
            throw CLI::ValidationError("project",
                                       "two projects would become " + job.output.string());
    }
}

} // namespace

void addExportCommand(CLI::App& app, CommandAction& action, const std::stop_token& interrupted) {
    auto options = std::make_shared<Options>();
    auto* command =
        app.add_subcommand("export", "Write a project as an MP4 video or an animated GIF");
    command->add_option("project", options->projects, "The project, PROJECT.vantro, or several")
        ->required()
        ->type_name("PROJECT");
    command
        ->add_option("--output,-o", options->output,
                     "The file to write, FILE.mp4 or FILE.gif; a folder for several projects")
        ->required()
        ->type_name("FILE");
    command
        ->add_option_function<std::string>(
            "--range", [options](const std::string& text) { options->range = rangeFrom(text); },
            "Export only this part of the output, seconds; either side may be left out")
        ->type_name("START:END");
    command
        ->add_option("--fps", options->frameRate,
                     "Frames a second of a video (default: the recording's)")
        ->type_name("N")
        ->check(CLI::Range(1, 240));
    command->add_flag("--tolerate-damage", options->toleratesDamage,
                      "Export a movie that breaks off up to there");
    addResolutionOption(*command, options->resolution);
    addRendererOption(*command, options->renderer);
    command->add_flag("--force", options->force, "Replace an existing file");
    command->add_flag("--json", options->json, "Report progress as lines of JSON");
    command->callback([options, &action, interrupted] {
        checkTogether(*options);
        action = [options, interrupted] { return runExport(*options, interrupted); };
    });
}

} // namespace vantro

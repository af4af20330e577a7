#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/cli/ExportOptions.h"
#include "app/cli/StatusLine.h"
#include "app/files/ProjectStores.h"
#include "base/HostClock.h"
#include "export/GifExporter.h"
#include "export/OutputRange.h"
#include "export/VideoExporter.h"
#include "model/VantroError.h"

#include <iostream>
#include <system_error>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace vantro::app::cli {
namespace {

using nlohmann::ordered_json;

namespace fs = std::filesystem;

/// One line at once, for programs that follow.
void printEvent(const ordered_json& event) {
    std::cout << event << '\n' << std::flush;
}

/// Shows how far an export is: a bar on a terminal, lines of JSON for programs.
class ProgressDisplay {
  public:
    ProgressDisplay(double outputDuration, bool json)
        : m_started(base::hostNow()), m_outputDuration(outputDuration), m_json(json) {
        update(0);
    }

    double elapsed() const { return base::inSeconds(base::hostNow() - m_started); }
    double speed(double fraction) const {
        return elapsed() > 0 ? fraction * m_outputDuration / elapsed() : 0;
    }

    void update(double fraction) {
        const double left = fraction > 0 ? elapsed() * (1 - fraction) / fraction : 0;
        if (m_json)
            printEvent(ordered_json{{"event", "progress"},
                                    {"fraction", fraction},
                                    {"speed", speed(fraction)},
                                    {"secondsLeft", left}});
        else
            m_line.show(fmt::format("Exporting {} {:3.0f} %  {:.2f}x  {} left",
                                    progressBar(fraction, barWidth), fraction * 100,
                                    speed(fraction), clockText(left)));
    }

    void clear() { m_line.clear(); }

  private:
    static constexpr int barWidth = 30;
    StatusLine m_line;
    base::HostTime m_started;
    double m_outputDuration;
    bool m_json;
};

ordered_json finishedEvent(const ProjectExport& job, const exporting::ExportSummary& summary,
                           std::uintmax_t bytes, const ProgressDisplay& display) {
    ordered_json event{
        {"event", "finished"},      {"output", job.output.string()}, {"width", summary.width},
        {"height", summary.height}, {"frames", summary.frameCount},  {"duration", summary.duration},
        {"bytes", bytes},           {"seconds", display.elapsed()},  {"speed", display.speed(1)}};
    if (!summary.encoder.empty())
        event["encoder"] = summary.encoder;
    return event;
}

void printSummary(const ExportOptions& options, const ProjectExport& job,
                  const exporting::ExportSummary& summary, const ProgressDisplay& display) {
    const auto bytes = fs::file_size(job.output);
    if (!summary.damage.empty())
        tell(fmt::format("vantro: {}; exported up to there\n", summary.damage));
    if (options.json)
        printEvent(finishedEvent(job, summary, bytes, display));
    else if (::isatty(STDOUT_FILENO) == 1)
        fmt::print("Exported {}: {}x{}, {} frames, {:.2f} s, {} in {:.1f} s ({:.2f}x)\n",
                   job.output.string(), summary.width, summary.height, summary.frameCount,
                   summary.duration, sizeText(static_cast<double>(bytes)), display.elapsed(),
                   display.speed(1));
}

/// Leaves of the film the range that was asked for.
void cutToRange(render::MovieSession& session, const OutputRange& range, const fs::path& project) {
    auto edit = session.edit();
    edit.segments = exporting::segmentsWithin(edit.segments.list(), session.sourceDuration(),
                                              range.start, range.end);
    if (edit.segments.empty())
        throw model::VantroError(model::VantroError::Kind::exportFailed,
                                 fmt::format("The range begins at {:.2f} s, but {} lasts {:.2f} s",
                                             range.start, project.string(),
                                             session.duration().seconds()));
    session.setEdit(std::move(edit));
}

exporting::ExportSummary writeFilm(const ExportOptions& options, const ProjectExport& job,
                                   render::MovieSession& session,
                                   const exporting::ExportProgress& report,
                                   const std::stop_token& interrupted) {
    if (job.isGif()) {
        exporting::GifExporter exporter;
        exporter.setFrameRate(options.frameRate.value_or(exporting::GifExporter::usualFrameRate));
        exporter.setToleratesDamage(options.toleratesDamage);
        return exporter.run(session, job.output, report, interrupted);
    }
    exporting::VideoExporter exporter;
    if (options.frameRate)
        exporter.setFrameRate(*options.frameRate);
    exporter.setToleratesDamage(options.toleratesDamage);
    exporter.setEncoder(options.encoder);
    exporter.setQuality(options.quality.value_or(media::VideoQuality::fast));
    return exporter.run(session, options.resolution, job.output, report, interrupted);
}

int exportOne(const ExportOptions& options, const ProjectExport& job,
              const std::stop_token& interrupted) {
    requireWritableOutput(job.output, options.force);
    const auto project = files::readProjectFile(job.project);
    render::MovieSession session(project.recording, project.edit,
                                 makeRequestedRenderer(options.renderer));
    if (options.range)
        cutToRange(session, *options.range, job.project);
    ProgressDisplay display(session.duration().seconds(), options.json);
    const auto summary = writeFilm(
        options, job, session, [&](double fraction) { display.update(fraction); }, interrupted);
    display.clear();
    if (summary.outcome == exporting::ExportOutcome::cancelled) {
        if (options.json)
            printEvent(ordered_json{{"event", "cancelled"}});
        return exitInterrupted;
    }
    printSummary(options, job, summary, display);
    return exitSuccess;
}

void reportFailure(const ExportOptions& options, const ProjectExport& job,
                   const std::exception& error) {
    tell(fmt::format("vantro: {}: {}\n", job.project.string(), error.what()));
    if (options.json)
        printEvent(ordered_json{
            {"event", "failed"}, {"project", job.project.string()}, {"error", error.what()}});
}

/// Exports all that can be exported; one that fails does not keep the others from it.
int exportAll(const ExportOptions& options, const std::vector<ProjectExport>& jobs,
              const std::stop_token& interrupted) {
    std::error_code ignored; // each project tells where it cannot go
    fs::create_directory(options.output, ignored);
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
        printEvent(ordered_json{
            {"event", "summary"}, {"exported", exported}, {"failed", jobs.size() - exported}});
    else
        fmt::print("Exported {} of {} projects to {}\n", exported, jobs.size(),
                   options.output.string());
    return exported == jobs.size() ? exitSuccess : exitFailure;
}

int runExport(const ExportOptions& options, const std::stop_token& interrupted) {
    const auto jobs = jobsOf(options);
    return jobs.size() == 1 ? exportOne(options, jobs.front(), interrupted)
                            : exportAll(options, jobs, interrupted);
}

} // namespace

void addExportCommand(base::Command app, CommandAction& action,
                      const std::stop_token& interrupted) {
    auto options = std::make_shared<ExportOptions>();
    auto command = app.command("export", "Write a project as an MP4 video or an animated GIF");
    addExportOptions(command, *options);
    command.whenChosen([options, &action, interrupted] {
        checkTogether(*options);
        action = [options, interrupted] { return runExport(*options, interrupted); };
    });
}

} // namespace vantro::app::cli

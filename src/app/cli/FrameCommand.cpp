#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "media/PictureFile.h"
#include "render/MovieSession.h"

#include <fmt/format.h>

namespace vantro::app::cli {
namespace {

struct Options {
    std::filesystem::path project;
    std::filesystem::path output;
    std::optional<double> time;
    std::optional<double> sourceTime;
    exporting::ExportResolution resolution = exporting::ExportResolution::original;
    std::string renderer = "auto";
    bool force = false;
};

int runFrame(const Options& options) {
    requireWritableOutput(options.output, options.force);
    const auto project = loadProject(options.project);
    const auto timeLine = options.sourceTime ? render::TimeLine::source : render::TimeLine::film;
    render::MovieSession session(project.recording, project.edit,
                                 makeRequestedRenderer(options.renderer), timeLine);
    const auto canvas =
        session.canvas(exporting::baseSize(options.resolution, session.videoSize()));
    const auto pixels =
        session.still(options.sourceTime ? *options.sourceTime : *options.time, canvas);
    media::writePng(options.output, *pixels);
    return exitSuccess;
}

} // namespace

void addFrameCommand(base::Command app, CommandAction& action) {
    auto options = std::make_shared<Options>();
    auto command = app.command("frame", "Write one composed frame as a PNG picture");
    addProjectArgument(command, options->project);
    const auto time = command.option("--time,-t", options->time, "Output second of the frame");
    command
        .option("--source-time", options->sourceTime,
                "Second of the recording instead, also where the film leaves it out")
        .excludes(time);
    command.option("--output,-o", options->output, "The picture to write, FILE.png")
        .required()
        .valueName("FILE")
        .check(endsIn({".png"}));
    addResolutionOption(command, options->resolution);
    addRendererOption(command, options->renderer);
    command.flag("--force", options->force, "Replace an existing file");
    command.whenChosen([options, &action] {
        if (!options->time && !options->sourceTime)
            throw base::UsageError("--time", "is required, or --source-time");
        action = [options] { return runFrame(*options); };
    });
}

} // namespace vantro::app::cli

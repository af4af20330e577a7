#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/files/ProjectStores.h"
#include "media/PictureFile.h"
#include "render/MovieSession.h"

#include <algorithm>

#include <fmt/format.h>

namespace vantro::app::cli {
namespace {

struct Options {
    std::filesystem::path project;
    std::filesystem::path output;
    std::optional<double> time;
    std::optional<double> sourceTime;
    exporting::ExportResolution resolution = exporting::ExportResolution::original;
    std::optional<int> thumbnail; ///< its longest side, pixels
    std::string renderer = "auto";
    bool force = false;
};

render::PixelSize canvasFor(const render::MovieSession& session, const Options& options) {
    const auto canvas =
        session.canvas(exporting::baseSize(options.resolution, session.videoSize()));
    if (!options.thumbnail)
        return canvas;
    const double scale = double(*options.thumbnail) / std::max(canvas.width, canvas.height);
    const auto video = session.videoSize();
    return session.canvas({video.width * scale, video.height * scale});
}

/// `time` in seconds of the film, or of the recording where that was asked for.
int runFrame(const Options& options, double time) {
    requireWritableOutput(options.output, options.force);
    const auto project = files::readProjectFile(options.project);
    const auto timeLine = options.sourceTime ? render::TimeLine::source : render::TimeLine::film;
    render::MovieSession session(project.recording, project.edit,
                                 makeRequestedRenderer(options.renderer), timeLine);
    const auto canvas = canvasFor(session, options);
    media::writePng(options.output, *session.still(time, canvas));
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
        .valueName("FILE");
    command
        .option("--thumbnail", options->thumbnail,
                "Make it so small that its longest side has this many pixels; the file may then "
                "have any name, as file managers want it")
        .valueName("PIXELS")
        .within(16, 1024);
    addResolutionOption(command, options->resolution);
    addRendererOption(command, options->renderer);
    command.flag("--force", options->force, "Replace an existing file");
    command.whenChosen([options, &action] {
        const auto wanted = options->sourceTime ? options->sourceTime : options->time;
        if (!wanted)
            throw base::UsageError("--time", "is required, or --source-time");
        if (const auto problem = endsIn({".png"})(options->output.string());
            !options->thumbnail && !problem.empty())
            throw base::UsageError("--output", problem);
        action = [options, wanted = *wanted] { return runFrame(*options, wanted); };
    });
}

} // namespace vantro::app::cli

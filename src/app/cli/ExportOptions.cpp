#include "app/cli/ExportOptions.h"

#include "app/cli/CommonOptions.h"
#include "export/GifExporter.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <set>

#include <fmt/ranges.h>

namespace vantro::app::cli {
namespace {

namespace fs = std::filesystem;

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
        throw base::UsageError("--range", text + " is no START:END in seconds");
    return range;
}

/// What a single output's name must say.
void checkName(const ExportOptions& options) {
    const std::vector<std::string> extensions = options.format.empty()
                                                    ? std::vector<std::string>{".mp4", ".gif"}
                                                    : std::vector{"." + options.format};
    if (const auto problem = endsIn(extensions)(options.output.string()); !problem.empty())
        throw base::UsageError("--output", problem);
}

void checkNamesDiffer(const std::vector<ProjectExport>& jobs) {
    std::set<fs::path> outputs;
    for (const auto& job : jobs) {
        if (!outputs.insert(job.output).second)
            throw base::UsageError("project", "two projects would become " + job.output.string());
    }
}

/// An option whose values are the names of an enumeration's cases.
template <typename Cases, typename FromName, typename Target>
void addNamedOption(base::Command command, const std::string& option, const Cases& cases,
                    FromName fromName, Target& target, const std::string& help) {
    std::vector<std::string_view> names;
    std::ranges::transform(cases, std::back_inserter(names),
                           [](auto value) { return optionName(value); });
    command
        .option(
            option,
            [=, &target](const std::string& name) {
                target = fromName(name).value_or(cases.front()); // checked below
            },
            help)
        .valueName(fmt::format("{}", fmt::join(names, "|")))
        .check([=](const std::string& name) {
            return fromName(name) ? std::string{}
                                  : fmt::format("{} is none of {}", name, fmt::join(names, ", "));
        });
}

} // namespace

std::vector<ProjectExport> jobsOf(const ExportOptions& options) {
    if (options.projects.size() == 1)
        return {{options.projects.front(), options.output}};
    const auto extension = options.format == "gif" ? ".gif" : ".mp4";
    std::vector<ProjectExport> jobs;
    for (const auto& project : options.projects) {
        const auto name = project.has_filename() ? project : project.parent_path();
        jobs.push_back({project, options.output / name.stem().concat(extension)});
    }
    return jobs;
}

void checkTogether(const ExportOptions& options) {
    if (options.projects.size() == 1)
        checkName(options);
    const auto jobs = jobsOf(options);
    checkNamesDiffer(jobs);
    if (!jobs.front().isGif())
        return;
    if (options.frameRate > exporting::GifExporter::highestFrameRate)
        throw base::UsageError("--fps", fmt::format("a GIF plays at most {} frames a second",
                                                    exporting::GifExporter::highestFrameRate));
    if (options.encoder != media::VideoEncoderChoice::automatic)
        throw base::UsageError("--encoder", "a GIF is not encoded as video");
    if (options.quality)
        throw base::UsageError("--quality", "a GIF has one quality only");
}

void addExportOptions(base::Command command, ExportOptions& options) {
    command.option("project", options.projects, "The project, PROJECT.vantro, or several")
        .required()
        .valueName("PROJECT");
    command
        .option("--output,-o", options.output,
                "The file to write, FILE.mp4 or FILE.gif; a folder for several projects, made "
                "where it is missing")
        .required()
        .valueName("FILE");
    command.option("--format", options.format, "What several projects become (default: mp4)")
        .valueName("mp4|gif")
        .oneOf({"mp4", "gif"});
    command
        .option(
            "--range", [&options](const std::string& text) { options.range = rangeFrom(text); },
            "Export only this part of the output, seconds; either side may be left out")
        .valueName("START:END");
    command
        .option("--fps", options.frameRate,
                "Frames a second (default: the recording's; 12 for a GIF, which takes at most 50)")
        .valueName("N")
        .within(1, 240);
    command.flag("--tolerate-damage", options.toleratesDamage,
                 "Export a movie that breaks off up to there");
    addNamedOption(command, "--encoder", media::allVideoEncoderChoices,
                   media::videoEncoderChoiceFrom, options.encoder,
                   "What encodes a video (default: auto, a graphics card that can, else libx264)");
    addNamedOption(command, "--quality", media::allVideoQualities, media::videoQualityFrom,
                   options.quality,
                   "What matters most about a video (default: fast): the wait, the picture at the "
                   "same size, or a small file with the same picture");
    addResolutionOption(command, options.resolution);
    addRendererOption(command, options.renderer);
    command.flag("--force", options.force, "Replace an existing file");
    command.flag("--json", options.json, "Report progress as lines of JSON");
}

} // namespace vantro::app::cli

#include "app/cli/CommonOptions.h"

#include "model/VantroError.h"
#include "render/RendererFactory.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace vantro::app::cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failExport(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, message);
}

} // namespace

void addProjectArgument(base::Command command, fs::path& target) {
    command.option("project", target, "The project, PROJECT.vantro")
        .required()
        .valueName("PROJECT");
}

void addResolutionOption(base::Command command, exporting::ExportResolution& target) {
    command
        .option(
            "--resolution",
            [&target](const std::string& name) {
                target = exporting::exportResolutionFrom(name).value_or(target); // checked below
            },
            "Size of the output before the canvas aspect (default: original)")
        .valueName("original|4k|1080p|720p")
        .check([](const std::string& name) {
            return exporting::exportResolutionFrom(name)
                       ? std::string{}
                       : name + " is none of original, 4k, 1080p, 720p";
        });
}

void addRendererOption(base::Command command, std::string& target) {
    command.option("--renderer", target, "What draws the frames (default: auto)")
        .valueName("auto|software|gpu")
        .oneOf({"auto", "software", "gpu"});
}

std::unique_ptr<render::Renderer> makeRequestedRenderer(const std::string& name) {
    const auto choice = name == "gpu"        ? render::RendererChoice::gpu
                        : name == "software" ? render::RendererChoice::software
                                             : render::RendererChoice::automatic;
    std::string why;
    auto renderer = render::makeRenderer(choice, &why);
    if (!renderer)
        failExport(why);
    return renderer;
}

std::function<std::string(const std::string&)> endsIn(std::vector<std::string> extensions) {
    return [extensions = std::move(extensions)](const std::string& file) {
        return std::ranges::count(extensions, fs::path(file).extension().string()) > 0
                   ? std::string{}
                   : fmt::format("{}: the name must end in {}", file,
                                 fmt::join(extensions, " or "));
    };
}

void requireWritableOutput(const fs::path& output, bool replace) {
    std::error_code error;
    const auto folder = fs::absolute(output).parent_path();
    if (!fs::is_directory(folder, error))
        failExport(fmt::format("{}: no such folder", folder.string()));
    if (fs::is_directory(output, error))
        failExport(fmt::format("{} is a folder", output.string()));
    if (!replace && fs::exists(output, error))
        failExport(fmt::format("{} exists; use --force to replace it", output.string()));
    if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        failExport(fmt::format("{}: {}", output.string(), std::generic_category().message(errno)));
}

} // namespace vantro::app::cli

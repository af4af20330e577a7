#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/cli/StatusLine.h"
#include "app/files/ProjectPackage.h"
#include "app/files/ProjectStores.h"
#include "archive/ArchivePath.h"

#include <fmt/format.h>

namespace vantro::app::cli {
namespace {

using files::ProjectForm;

struct Options {
    std::filesystem::path project;
    std::filesystem::path output;
    bool force = false;
};

int saveIn(ProjectForm form, const Options& options) {
    // What is there in the other form is not replaced: the store says so.
    const auto& store = files::storeFor(form);
    const auto project = files::readProjectFile(options.project);
    const auto saved = store.save(options.output, project, options.force, {}).project;
    const auto movie = archive::locate(saved.recording.movie());
    fmt::print("{} {}: {}\n", form == ProjectForm::oneFile ? "Packed" : "Unpacked",
               options.output.string(), sizeText(static_cast<double>(movie.size)));
    return exitSuccess;
}

void addCommand(base::Command app, CommandAction& action, const char* name, const char* help,
                ProjectForm form) {
    auto options = std::make_shared<Options>();
    auto command = app.command(name, help);
    addProjectArgument(command, options->project);
    command.option("--output,-o", options->output, "The project to make, NAME.vantro")
        .required()
        .valueName("NAME")
        .check(endsIn({files::package::extension}));
    command.flag("--force", options->force, "Replace an existing project");
    command.whenChosen(
        [options, form, &action] { action = [options, form] { return saveIn(form, *options); }; });
}

} // namespace

void addPackCommands(base::Command app, CommandAction& action) {
    addCommand(app, action, "pack", "Put a project into one file, to pass it on",
               ProjectForm::oneFile);
    addCommand(app, action, "unpack", "Make a project's folder of a project in one file",
               ProjectForm::folder);
}

} // namespace vantro::app::cli

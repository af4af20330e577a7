#include "app/flows/ProjectReading.h"

#include "app/files/BackgroundPicture.h"
#include "app/files/ProjectStores.h"
#include "app/files/UnsavedRecordings.h"
#include "model/VantroError.h"

#include <fmt/format.h>

namespace vantro::app::flows {
namespace {

constexpr auto openFailed = model::VantroError::Kind::projectOpenFailed;

void requireSameRecording(const model::Recording& found, const files::JournalledEdit& edit) {
    if (files::outlineOf(found.metadata()) != edit.project.recording.metadata())
        throw model::VantroError(
            openFailed, fmt::format("{}: it holds another recording than the one that was edited",
                                    found.movie().string()));
}

} // namespace

OpenedProject readPackage(const std::filesystem::path& package) {
    const auto& store = files::storeOf(package);
    auto access = store.access(package); // before it is read, so that nobody changes it after
    OpenedProject found{.project = store.read(package),
                        .package = package,
                        .lock = std::move(access.lock),
                        .whyReadOnly = std::move(access.whyReadOnly)};
    found.pictureProblem = files::pictureProblem(found.project.edit);
    return found;
}

OpenedProject readRecording(const Recoverer& recover, const std::filesystem::path& movie,
                            const NewEdit& begin) {
    auto lock = files::ProjectLock::take(movie.parent_path());
    if (!lock) // it may be on the way of being recovered there
        throw model::VantroError(openFailed, fmt::format("{}: {}", movie.string(), lock.error()));
    auto recording = recover(movie);
    auto edit = model::freshEdit(recording.metadata(), begin.choices, begin.look);
    return {.project = {.name = files::recordingName(movie),
                        .recording = std::move(recording),
                        .edit = std::move(edit)},
            .lock = std::move(*lock)};
}

OpenedProject readEdited(const Recoverer& recover, const files::JournalledEdit& edit) {
    auto found = edit.package ? readPackage(*edit.package)
                              : readRecording(recover, edit.project.recording.movie(), {});
    requireSameRecording(found.project.recording, edit);
    found.pictureProblem = files::pictureProblem(edit.project.edit);
    return found;
}

} // namespace vantro::app::flows

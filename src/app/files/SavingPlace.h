#pragma once

#include "app/files/ProjectLock.h"
#include "model/Edit.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

/// What the forms of projects have in common.
namespace vantro::app::files {

/// Throw VantroError projectOpenFailed and projectSaveFailed.
[[noreturn]] void failOpen(std::string_view message);
[[noreturn]] void failSave(std::string_view message);

/// Bytes, more than can be shown.
constexpr std::uint64_t largestPicture = 256'000'000;

/// The user's own picture in the background; null where there is none.
model::BackgroundImageSource* customPicture(model::Edit& edit);

/// The lock of a project that is there: `held`, or one that nobody else has. Throws VantroError
/// projectSaveFailed.
std::shared_ptr<const ProjectLock> lockOf(const std::filesystem::path& target,
                                          const std::shared_ptr<const ProjectLock>& held);

/// Why no project can be saved there, whatever lies there, if it may be replaced; empty when it
/// can.
std::string placeProblem(const std::filesystem::path& target, bool replace);

} // namespace vantro::app::files

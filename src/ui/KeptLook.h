#pragma once

#include "model/Edit.h"

#include <QString>
#include <filesystem>
#include <optional>

namespace vantro::ui {

/// A look as the preferences keep it. A picture of the user's own is copied into the folder
/// `pictures`, since its project may go; where that fails the background is the usual one, which
/// the log tells. Never fails.
QString keptLook(model::Look look, const std::filesystem::path& pictures);

/// The look that was kept, with the usual background where its picture is gone. Nothing, and a line
/// in the log, when the text is none.
std::optional<model::Look> lookFrom(const QString& kept, const std::filesystem::path& pictures);

} // namespace vantro::ui

#pragma once

#include <QString>
#include <string>
#include <vector>

namespace vantro::ui {

/// What a layer without Qt tells the user, an error or a reason, in the language of the window.
///
/// Such texts are put together with ": ": each part that the catalog knows is translated, whatever
/// is else in it, as names and paths, stays. Numbers in it get the locale's decimal sign. Main
/// thread.
QString sentence(const std::string& text);

/// "1.5x" as it is written here: "1,5x" where the decimal sign is a comma.
QString localNumber(const std::string& text);

/// What those layers say; %1 stands for what differs from case to case.
const std::vector<const char*>& knownSentences();

} // namespace vantro::ui

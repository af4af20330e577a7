#include "app/files/RecordingFolder.h"

#include "model/Uuid.h"

#include <cstdlib>
#include <ctime>
#include <system_error>

#include <fmt/chrono.h>
#include <fmt/format.h>

namespace vantro::app::files {
namespace {

std::filesystem::path temporaryDirectory() {
    const char* configured = std::getenv("TMPDIR"); // NOLINT(concurrency-mt-unsafe): never set here
    return configured != nullptr && *configured != '\0' ? configured : "/var/tmp";
}

} // namespace

std::string defaultRecordingName() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return fmt::format("vantro_{:%Y-%m-%d_%H-%M-%S}", local);
}

std::filesystem::path recordingsDirectory() {
    return temporaryDirectory() / "Vantro";
}

std::filesystem::path makeRecordingDirectory() {
    const auto folder = recordingsDirectory() / model::Uuid::random().toString();
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return folder;
}

} // namespace vantro::app::files

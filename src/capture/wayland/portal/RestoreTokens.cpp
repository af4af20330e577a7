#include "capture/wayland/portal/RestoreTokens.h"

#include "base/Log.h"
#include "base/OutputFile.h"
#include "base/UserFolders.h"

#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

namespace vantro::capture::wayland {
namespace {

using nlohmann::json;

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// An object, which is empty where the file has none.
json read(const std::filesystem::path& file) {
    auto all = json::parse(contentOf(file), nullptr, false);
    return all.is_object() ? all : json::object();
}

bool write(const std::filesystem::path& file, const json& all) {
    try {
        std::filesystem::create_directories(file.parent_path());
        base::writeWholeFile(file, all.dump(2));
        return true;
    } catch (const std::exception& error) { // a name may be no text that JSON can hold, too
        base::logWarning("What was chosen in the desktop's dialog is not remembered: {}",
                         error.what());
        return false;
    }
}

json toJson(const RememberedChoice& choice) {
    const ChosenSource& source = choice.source;
    json made{
        {"token", choice.token}, {"id", source.id}, {"pixels", {source.width, source.height}}};
    if (source.position)
        made["position"] = {source.position->x, source.position->y};
    if (source.size)
        made["size"] = {source.size->width, source.size->height};
    return made;
}

RememberedChoice choiceFrom(const json& stored) {
    RememberedChoice choice{.token = stored.at("token"), .source = {}};
    ChosenSource& source = choice.source;
    source.id = stored.at("id");
    source.width = stored.at("pixels").at(0);
    source.height = stored.at("pixels").at(1);
    if (const auto at = stored.find("position"); at != stored.end())
        source.position = {at->at(0).get<double>(), at->at(1).get<double>()};
    if (const auto size = stored.find("size"); size != stored.end())
        source.size = {size->at(0).get<double>(), size->at(1).get<double>()};
    return choice;
}

} // namespace

bool isSame(const ChosenSource& remembered, const ChosenSource& now) {
    ChosenSource known = remembered;
    if (known.width == 0) {
        known.width = now.width;
        known.height = now.height;
    }
    return known == now;
}

RestoreTokens::RestoreTokens(std::filesystem::path file, std::string application)
    : m_file(std::move(file)), m_application(std::move(application)) {}

RestoreTokens RestoreTokens::usual() {
    const auto state = base::userFolder("XDG_STATE_HOME", ".local/state");
    return {state ? *state / "vantro" / "screen-cast.json" : std::filesystem::path(),
            applicationOf(contentOf("/proc/self/cgroup"))};
}

std::string RestoreTokens::key(model::CaptureMode mode) const {
    const auto kind = mode == model::CaptureMode::area ? model::CaptureMode::screen : mode;
    return std::string(model::rawValue(kind)) + "/" + m_application;
}

std::optional<RememberedChoice> RestoreTokens::take(model::CaptureMode mode) {
    if (m_file.empty())
        return {};
    auto all = read(m_file);
    const auto found = all.find(key(mode));
    if (found == all.end())
        return {};
    const json stored = std::move(*found);
    all.erase(found);
    if (!write(m_file, all))
        return {}; // it would be used twice
    try {
        return choiceFrom(stored);
    } catch (const json::exception& error) {
        base::logInfo("A remembered choice makes no sense: {}", error.what());
        return {};
    }
}

void RestoreTokens::keep(model::CaptureMode mode, const RememberedChoice& choice) {
    if (m_file.empty() || choice.token.empty())
        return;
    auto all = read(m_file);
    all[key(mode)] = toJson(choice);
    write(m_file, all);
}

/// Session managers put each program into a unit app[-LAUNCHER]-ID[-RANDOM].scope or .service.
std::string applicationOf(const std::string& cgroups) {
    std::string_view unit = cgroups;
    unit = unit.substr(0, unit.find('\n'));
    unit = unit.substr(unit.rfind('/') + 1);
    if (!unit.starts_with("app-"))
        return {};
    unit.remove_prefix(4);
    const bool isScope = unit.ends_with(".scope");
    unit = unit.substr(0, unit.rfind('.'));
    if (isScope)
        unit = unit.substr(0, unit.rfind('-'));
    return std::string(unit.substr(0, unit.find('@')));
}

} // namespace vantro::capture::wayland

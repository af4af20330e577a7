#include "app/Desktop.h"
#include "app/cli/Commands.h"
#include "app/cli/InstallAdvice.h"
#include "model/VantroError.h"

#include <array>
#include <cstdlib>
#include <iostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace vantro::app::cli {
namespace {

using capture::Ability;
using capture::PlatformAbilities;

struct Finding {
    const char* key;
    Ability PlatformAbilities::* ability;
    const char* sentence;            ///< where the desktop is able
    const char* onWayland = nullptr; ///< where that differs
};

constexpr std::array<Finding, 11> findings{{
    {"screens", &PlatformAbilities::screens, "Whole screens can be recorded."},
    {"windows", &PlatformAbilities::windows, "Single windows can be recorded."},
    {"areas", &PlatformAbilities::areas, "Areas of a screen can be recorded."},
    {"listsContent", &PlatformAbilities::listsContent, "Displays and windows can be listed."},
    {"ownWindowsLeftOut", &PlatformAbilities::ownWindowsLeftOut,
     "Vantro's own windows are left out of recordings."},
    {"pointer", &PlatformAbilities::pointer, "The pointer is recorded apart from the picture."},
    {"clicks", &PlatformAbilities::clicks, "Clicks are recorded, each with its place."},
    {"systemAudio", &PlatformAbilities::systemSound, "What the computer plays can be recorded."},
    {"microphone", &PlatformAbilities::microphone, "A microphone can be recorded."},
    {"camera", &PlatformAbilities::camera, "A camera can be recorded."},
    {"globalKeys", &PlatformAbilities::globalKeys,
     "Vantro's options set up keys that work in every program.",
     "Vantro's options and the desktop's dialog set up keys that work in every program."},
}};

struct Examination {
    PlatformAbilities able;
    std::vector<InstallAdvice> advice;
};

/// Sound and cameras are there or not whatever the display can do.
Examination examine() {
    PlatformAbilities able;
    try {
        able = connectDesktop()->abilities();
        able.globalKeys = globalKeysAbility();
    } catch (const model::VantroError& error) {
        able = capture::noAbilities("The desktop cannot be reached: " + error.message() + ".");
    }
    const auto sounds = desktopSound()->list();
    auto sound = capture::abilitiesOf(sounds);
    able.systemSound = std::move(sound.system);
    able.microphone = std::move(sound.microphone);
    able.camera = capture::abilityOf(desktopCameras()->list());

    const char* desktop =
        std::getenv("XDG_CURRENT_DESKTOP"); // NOLINT(concurrency-mt-unsafe): one thread
    auto advice = installAdvice(
        {.isWayland = isWaylandSession(),
         .desktop = desktop != nullptr ? desktop : "",
         .canRecordScreens = able.screens.isAvailable(),
         .hasSoundServer = sounds.has_value(),
         .hasClickService = isClickServiceInstalled({"/usr/local/share", "/usr/share"})});
    return {.able = std::move(able), .advice = std::move(advice)};
}

const char* sentenceOf(const Finding& finding, const Ability& ability) {
    if (!ability.isAvailable())
        return ability.whyNot.c_str();
    if (!ability.remark.empty())
        return ability.remark.c_str();
    return finding.onWayland != nullptr && isWaylandSession() ? finding.onWayland
                                                              : finding.sentence;
}

int runDoctor(bool json) {
    const auto [able, advice] = examine();
    const auto* desktop = isWaylandSession() ? "wayland" : "x11";
    nlohmann::ordered_json abilities;
    if (!json)
        fmt::print("{:<19} {}\n", "desktop", desktop);
    for (const Finding& finding : findings) {
        const Ability& ability = able.*finding.ability;
        const auto* sentence = sentenceOf(finding, ability);
        if (json)
            abilities[finding.key] = {{"available", ability.isAvailable()}, {"sentence", sentence}};
        else
            fmt::print("{:<19} {:<4} {}\n", finding.key, ability.isAvailable() ? "yes" : "no",
                       sentence);
    }
    auto install = nlohmann::ordered_json::array();
    for (const auto& [packages, purpose] : advice) {
        if (json)
            install.push_back({{"packages", packages}, {"purpose", purpose}});
        else
            fmt::print("{:<19} {}, {}\n", "install", packages, purpose);
    }
    if (json)
        std::cout << nlohmann::ordered_json{{"desktop", desktop},
                                            {"abilities", abilities},
                                            {"install", install}}
                         .dump(2)
                  << '\n';
    return able.screens.isAvailable() ? exitSuccess : exitFailure;
}

} // namespace

void addDoctorCommand(base::Command app, CommandAction& action) {
    auto json = std::make_shared<bool>(false);
    auto command = app.command(
        "doctor", "Tell what can be recorded here, why not what cannot, and what to install");
    command.flag("--json", *json, "Print JSON");
    command.whenChosen([json, &action] { action = [json] { return runDoctor(*json); }; });
}

} // namespace vantro::app::cli

#include "app/cli/Commands.h"
#include "control/ControlClient.h"

namespace vantro::app::cli {

void addControlCommands(base::Command app, CommandAction& action) {
    const auto add = [&](const char* name, const char* purpose, void (*command)()) {
        app.command(name, purpose).whenChosen([&action, command] {
            action = [command] {
                command();
                return exitSuccess;
            };
        });
    };
    add("stop", "End the recording under way, and wait until its files are finished",
        control::stopRecording);
    add("toggle", "End the recording under way, or have Vantro's window start one",
        control::toggleRecording);
    add("pause", "Pause the recording under way, or resume it when it is paused",
        control::pauseRecording);
    add("mark", "Zoom to where the pointer is now, in the recording under way", control::markZoom);
}

} // namespace vantro::app::cli

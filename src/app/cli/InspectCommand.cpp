#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/files/ProjectStores.h"
#include "export/Inspection.h"
#include "render/RendererFactory.h"
#include "render/timing/SegmentTimeMap.h"

#include <iostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace vantro::app::cli {
namespace {

using nlohmann::ordered_json;

struct Options {
    std::filesystem::path project;
    bool json = false;
    int keyframesPerSecond = 0;
};

ordered_json toJson(const exporting::KeyframeSample& sample) {
    const auto& pointer = sample.pointer;
    return {{"outputTime", sample.outputTime},
            {"sourceTime", sample.sourceTime},
            {"scale", sample.keyframe.scale},
            {"centerX", sample.keyframe.centerX},
            {"centerY", sample.keyframe.centerY},
            {"cursorX", pointer ? ordered_json(pointer->x) : ordered_json(nullptr)},
            {"cursorY", pointer ? ordered_json(pointer->y) : ordered_json(nullptr)}};
}

ordered_json toJson(const model::TimelineSegment& segment) {
    return {{"id", segment.id.toString()},
            {"startFraction", segment.startFraction},
            {"endFraction", segment.endFraction},
            {"speed", segment.speed}};
}

ordered_json toJson(const model::ClickEvent& click) {
    return {{"id", click.id.toString()},
            {"x", click.x},
            {"y", click.y},
            {"timestamp", click.timestamp},
            {"isRightClick", click.isRightClick},
            {"startOffset", click.startOffset},
            {"endOffset", click.endOffset},
            {"zoomLevel", click.zoomLevel}};
}

template <typename Records>
ordered_json toJsonList(const Records& records) {
    auto list = ordered_json::array();
    for (const auto& record : records)
        list.push_back(toJson(record));
    return list;
}

/// What would draw an export here, and why not the GPU where it does not.
struct RendererReport {
    std::string name;
    std::string reason;
};

RendererReport rendererInUse() {
    RendererReport report;
    report.name =
        render::makeRenderer(render::RendererChoice::automatic, &report.reason)->description();
    return report;
}

void printJson(const exporting::Inspection& found, const model::Edit& edit,
               const RendererReport& renderer, bool withKeyframes) {
    ordered_json document{{"sourceDuration", found.sourceDuration},
                          {"outputDuration", found.outputDuration},
                          {"videoWidth", found.videoSize.width},
                          {"videoHeight", found.videoSize.height},
                          {"canvasWidth", found.canvasSize.width},
                          {"canvasHeight", found.canvasSize.height},
                          {"segments", toJsonList(edit.segments)},
                          {"clickEvents", toJsonList(edit.clickEvents)},
                          {"renderer", {{"name", renderer.name}, {"reason", renderer.reason}}}};
    if (withKeyframes)
        document["keyframes"] = toJsonList(found.keyframes);
    std::cout << document.dump(2) << '\n';
}

void printText(const exporting::Inspection& found, const model::Edit& edit,
               const RendererReport& renderer, bool withKeyframes) {
    fmt::print("Recording  {:.3f} s, {}x{}\n", found.sourceDuration, found.videoSize.width,
               found.videoSize.height);
    fmt::print("Output     {:.3f} s, {}x{}\n", found.outputDuration, found.canvasSize.width,
               found.canvasSize.height);
    fmt::print("Renderer   {}{}{}\n", renderer.name, renderer.reason.empty() ? "" : "; ",
               renderer.reason);
    fmt::print("Segments\n");
    for (const auto& segment : edit.segments)
        fmt::print("  {:8.3f} s to {:8.3f} s at {}\n", segment.startFraction * found.sourceDuration,
                   segment.endFraction * found.sourceDuration, render::speedLabel(segment.speed));
    fmt::print("Zooms\n");
    for (const auto& click : edit.clickEvents)
        fmt::print("  {:8.3f} s  {:>5} click at ({:.0f}, {:.0f})  {}\n", click.timestamp,
                   click.isRightClick ? "right" : "left", click.x, click.y,
                   model::isSilenced(click)
                       ? std::string("merged into an earlier one")
                       : fmt::format("{:.2f}x from -{:.2f} s to +{:.2f} s", click.zoomLevel,
                                     click.startOffset, click.endOffset));
    if (!withKeyframes)
        return;
    fmt::print("Keyframes\n    output    source   scale        center          cursor\n");
    for (const auto& sample : found.keyframes)
        fmt::print("  {:8.3f}  {:8.3f}  {:6.3f}  {:7.1f},{:7.1f}  {}\n", sample.outputTime,
                   sample.sourceTime, sample.keyframe.scale, sample.keyframe.centerX,
                   sample.keyframe.centerY,
                   sample.pointer
                       ? fmt::format("{:7.1f},{:7.1f}", sample.pointer->x, sample.pointer->y)
                       : std::string("none"));
}

int runInspect(const Options& options) {
    const auto project = files::readProjectFile(options.project);
    const render::MovieSession session(project.recording, project.edit, nullptr);
    const auto found = exporting::inspect(session, options.keyframesPerSecond);
    const bool withKeyframes = options.keyframesPerSecond > 0;
    if (options.json)
        printJson(found, project.edit, rendererInUse(), withKeyframes);
    else
        printText(found, project.edit, rendererInUse(), withKeyframes);
    return exitSuccess;
}

} // namespace

void addInspectCommand(base::Command app, CommandAction& action) {
    constexpr int mostKeyframesPerSecond = 1000;
    auto options = std::make_shared<Options>();
    auto command = app.command("inspect", "Tell what a project holds");
    addProjectArgument(command, options->project);
    command.flag("--json", options->json, "Print JSON");
    command
        .option("--keyframes", options->keyframesPerSecond,
                "Also sample the camera, N times a second of output")
        .valueName("N")
        .within(1, mostKeyframesPerSecond);
    command.whenChosen([options, &action] { action = [options] { return runInspect(*options); }; });
}

} // namespace vantro::app::cli

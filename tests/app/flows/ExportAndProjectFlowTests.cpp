#include "app/files/ProjectStores.h"
#include "app/flows/EditedState.h"
#include "app/flows/ExportFlow.h"
#include "app/flows/ProjectFlow.h"
#include "media/PictureFile.h"

#include <fstream>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

namespace fs = std::filesystem;
using Kind = model::VantroError::Kind;

class ExportFlowTest : public test::EditedState {
  protected:
    std::vector<ExportJob> jobs;
    std::function<void(const std::function<void(double)>&, const std::stop_token&)> script =
        [](const auto&, const auto&) {};
    std::unique_ptr<ExportFlow> flow = std::make_unique<ExportFlow>(
        state, panels, tasks, [this](const auto& job, const auto& progress, const auto& cancelled) {
            jobs.push_back(job);
            script(progress, cancelled);
        });

    void startExport() {
        flow->exportRecording(ExportFormat::mp4, exporting::ExportResolution::hd720);
        panels.answer(folder / "out.mp4");
    }
};

using testing::ElementsAre;

TEST_F(ExportFlowTest, AClosedPanelExportsNothing) {
    state.setRecordingName("../etc/demo");
    flow->exportRecording(ExportFormat::mp4, exporting::ExportResolution::original);
    flow->exportRecording(ExportFormat::gif, exporting::ExportResolution::original);
    EXPECT_EQ(panels.proposedName, "-etc-demo.mp4") << "one panel at a time, and no path";
    panels.answer({});
    EXPECT_EQ(tasks.waitingWork(), 0U);
}

TEST_F(ExportFlowTest, AFailureIsShownAndTheEditorIsBack) {
    script = [](const auto& progress, const auto&) {
        progress(0.5);
        throw model::VantroError(Kind::exportFailed, "No video track found");
    };
    startExport();
    tasks.runAll();
    test::expectError(state, Kind::exportFailed, "No video track found");
    EXPECT_EQ(state.error()->description(), "Export failed: No video track found");
    EXPECT_EQ(state.phase(), AppPhase::previewing());
    EXPECT_FALSE(flow->isRunning());
}

TEST_F(ExportFlowTest, WhatIsCancelledOrLeftBehindReportsNothingMore) {
    for (const bool reset : {false, true}) {
        script = [&](const auto& progress, const auto& cancelled) {
            progress(0.5);
            tasks.runMain();
            EXPECT_EQ(state.phase(), AppPhase::exporting(0.5));
            reset ? state.reset() : flow->cancel();
            EXPECT_TRUE(cancelled.stop_requested());
            progress(0.6);
            throw std::runtime_error("interrupted");
        };
        startExport();
        tasks.runAll();
        EXPECT_EQ(state.phase(), reset ? AppPhase::idle() : AppPhase::previewing());
        EXPECT_FALSE(state.showError());
    }
    // Without a recording there is nothing to export.
    flow->exportRecording(ExportFormat::mp4, exporting::ExportResolution::original);
    test::expectError(state, Kind::noRecordingData, "");
    EXPECT_FALSE(panels.kind);
}

TEST_F(ExportFlowTest, AnExportOutlivesTheFlowAtQuit) {
    script = [&](const auto& progress, const auto& cancelled) {
        flow.reset();
        EXPECT_TRUE(cancelled.stop_requested());
        progress(0.5);
    };
    startExport();
    tasks.runAll();
    EXPECT_TRUE(phases.empty());
}

class ProjectFlowTest : public test::EditedState {
  protected:
    ProjectFlow flow{state, panels, tasks};

    fs::path save(const std::string& name) {
        const auto package = folder / name;
        flow.saveProjectAs();
        EXPECT_EQ(panels.kind, PanelKind::saveProject);
        panels.answer(package);
        tasks.runAll();
        return package;
    }
};

TEST_F(ProjectFlowTest, ASavedProjectOpensAgainWithTheWholeEdit) {
    state.setCursorScale(1.25);
    state.setEditableClickEvents({{model::ClickEvent{.timestamp = 1, .zoomLevel = 2.5}}});
    const auto package = save("demo.vantro");
    EXPECT_EQ(panels.proposedName, "demo.vantro");
    EXPECT_EQ(state.projectPath(), package);
    EXPECT_EQ(state.recordingPath(), package / "recording.mov");
    EXPECT_FALSE(state.document().isModified());

    AppState fresh{1};
    ProjectFlow other{fresh, panels, tasks};
    other.openProject();
    EXPECT_EQ(panels.kind, PanelKind::openProject);
    panels.answer(package);
    tasks.runAll();
    EXPECT_EQ(fresh.phase(), AppPhase::previewing());
    EXPECT_EQ(fresh.document().project(), state.document().project());
    EXPECT_FALSE(fresh.document().isModified());
    EXPECT_FALSE(fresh.metadataPath());
}

TEST_F(ProjectFlowTest, ABackgroundPictureThatIsGoneIsToldWhenTheProjectOpens) {
    const auto picture = folder / "beach.png";
    media::writePng(picture, *media::PixelBuffer::allocate(media::PixelFormat::bgra, 4, 4));
    auto background = state.backgroundSettings();
    background.type = model::BackgroundImageSource::custom(picture);
    state.setBackgroundSettings(background);
    const auto package = save("demo.vantro");
    background.type = model::BackgroundImageSource::custom(package / "beach.png");
    for (const bool isThere : {true, false}) {
        if (!isThere)
            std::filesystem::remove(package / "beach.png");
        flow.open(package);
        tasks.runAll();
        EXPECT_EQ(flow.pictureNotice().find("beach.png") == std::string::npos, isThere);
        EXPECT_EQ(state.backgroundSettings(), background) << "the choice stays";
        EXPECT_FALSE(state.showError());
    }
    flow.dismissPictureNotice();
    EXPECT_TRUE(flow.pictureNotice().empty());
}

TEST_F(ProjectFlowTest, SavingAsksForAPlaceTheFirstTimeOnly) {
    flow.saveProject();
    EXPECT_EQ(panels.kind, PanelKind::saveProject);
    panels.answer(folder / "demo.vantro");
    tasks.runAll();
    state.setCursorScale(1);
    flow.saveProject();
    EXPECT_FALSE(panels.kind);
    state.setCursorScale(2); // while it is being written
    tasks.runAll();
    EXPECT_EQ(files::readProjectFile(folder / "demo.vantro").edit.cursorScale, 1);
    EXPECT_TRUE(state.document().isModified());
    save("copy.vantro");
    EXPECT_EQ(state.projectPath(), folder / "copy.vantro");
}

TEST_F(ProjectFlowTest, APackageThatIsGoneIsNotSavedAnewWithoutItsMovie) {
    const auto package = save("demo.vantro");
    std::filesystem::rename(package, folder / "moved.vantro");
    state.setCursorScale(1);
    flow.saveProject();
    tasks.runAll();
    ASSERT_TRUE(state.error());
    EXPECT_EQ(state.error()->message(),
              (package / "recording.mov").string() + ": No such file or directory");
    EXPECT_TRUE(state.document().isModified());
    EXPECT_FALSE(std::filesystem::exists(package));
    EXPECT_EQ(files::readProjectFile(folder / "moved.vantro").edit.cursorScale,
              model::Edit{}.cursorScale);
}

TEST_F(ProjectFlowTest, AFailedOpenLeavesTheStateUnchanged) {
    const auto package = save("demo.vantro");
    std::ofstream(package / "project.json") << "{\"version\": 1}";
    const auto before = state.document().project();
    for (const auto* name : {"demo.vantro", "nowhere.vantro"}) {
        flow.open(folder / name);
        tasks.runAll();
        test::expectError(state, Kind::projectOpenFailed, name);
        EXPECT_EQ(state.document().project(), before);
    }
    EXPECT_TRUE(phases.empty());
}

TEST_F(ProjectFlowTest, AFailedSaveIsShownAndKeepsTheRecordingWhereItIs) {
    folder.write("file", "in the way");
    save("file/demo.vantro");
    test::expectError(state, Kind::projectSaveFailed, "file");
    EXPECT_EQ(state.recordingPath(), folder / "source/recording.mov");
    EXPECT_FALSE(state.projectPath());
    EXPECT_FALSE(flow.isBusy());

    state.reset();
    flow.saveProject();
    test::expectError(state, Kind::projectSaveFailed, "No recording metadata available");
    EXPECT_FALSE(panels.kind);
}

TEST_F(ProjectFlowTest, NothingIsOpenedOverARunningRecording) {
    const auto package = save("demo.vantro");
    state.reset();
    flow.openProject();
    panels.answer({}); // which lets the next one open
    flow.open(package);
    state.setPhase(AppPhase::recording()); // begins while the project is being read
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::recording());
    EXPECT_FALSE(state.metadata());
    flow.openProject();
    EXPECT_FALSE(panels.kind);
}

} // namespace
} // namespace vantro::app::flows

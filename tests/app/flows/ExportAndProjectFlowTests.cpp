#include "app/files/ProjectPackage.h"
#include "app/flows/ExportFlow.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/ScriptedServices.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

namespace fs = std::filesystem;
using Kind = model::VantroError::Kind;

/// A state with a recording in its editor, in a folder of its own.
class EditedStateTest : public testing::Test {
  protected:
    EditedStateTest()
        : folder(fs::temp_directory_path() / ("edit-" + model::Uuid::random().toString())) {
        fs::create_directories(folder / "source");
        std::ofstream(folder / "source/recording.mov") << "movie";
        model::RecordingMetadata metadata;
        metadata.endTime = 5;
        state.show({"demo", model::Recording(folder / "source/recording.mov", metadata), {}});
        QObject::connect(&state, &AppState::phaseChanged,
                         [this] { phases.push_back(state.phase()); });
    }
    ~EditedStateTest() override { fs::remove_all(folder); }

    void expectError(Kind kind, std::string_view message) {
        ASSERT_TRUE(state.error());
        EXPECT_TRUE(state.showError());
        EXPECT_EQ(state.error()->kind(), kind);
        EXPECT_THAT(state.error()->message(), testing::HasSubstr(message));
    }

    fs::path folder;
    AppState state{1};
    test::ScriptedPanels panels;
    test::ManualTasks tasks;
    std::vector<AppPhase> phases;
};

class ExportFlowTest : public EditedStateTest {
  protected:
    std::vector<ExportJob> jobs;
    std::function<void(const std::function<void(double)>&, const std::stop_token&)> script =
        [](const auto&, const auto&) {};
    ExportFlow flow{state, panels, tasks,
                    [this](const auto& job, const auto& progress, const auto& cancelled) {
                        jobs.push_back(job);
                        script(progress, cancelled);
                    }};

    void startExport() {
        flow.exportRecording(ExportFormat::mp4, exporting::ExportResolution::hd720);
        panels.answer(folder / "out.mp4");
    }
};

using testing::ElementsAre;

TEST_F(ExportFlowTest, ProposesTheRecordingsNameAndExportsTheEditWithProgress) {
    script = [](const auto& progress, const auto&) {
        progress(0.25);
        progress(0.25);
        progress(1.0);
    };
    std::vector<QString> exported;
    QObject::connect(&flow, &ExportFlow::exported,
                     [&](const auto& path) { exported.push_back(path); });
    startExport();
    EXPECT_EQ(panels.proposedName, "demo.mp4");
    tasks.runAll();
    ASSERT_EQ(jobs.size(), 1U);
    EXPECT_EQ(jobs[0].output, folder / "out.mp4");
    EXPECT_EQ(jobs[0].resolution, exporting::ExportResolution::hd720);
    EXPECT_EQ(jobs[0].recording.movie(), folder / "source/recording.mov");
    EXPECT_THAT(phases, ElementsAre(AppPhase::exporting(0.25), AppPhase::exporting(1.0),
                                    AppPhase::previewing()));
    EXPECT_EQ(exported.size(), 1U);
    EXPECT_FALSE(state.showError());

    flow.exportRecording(ExportFormat::gif, exporting::ExportResolution::original);
    EXPECT_EQ(panels.kind, PanelKind::saveGif);
    EXPECT_EQ(panels.proposedName, "demo.gif");
}

TEST_F(ExportFlowTest, AClosedPanelExportsNothing) {
    flow.exportRecording(ExportFormat::mp4, exporting::ExportResolution::original);
    flow.exportRecording(ExportFormat::gif, exporting::ExportResolution::original);
    EXPECT_EQ(panels.proposedName, "demo.mp4") << "one panel at a time";
    panels.answer({});
    tasks.runAll();
    EXPECT_TRUE(jobs.empty());
    EXPECT_TRUE(phases.empty());
}

TEST_F(ExportFlowTest, AFailureIsShownAndTheEditorIsBack) {
    script = [](const auto& progress, const auto&) {
        progress(0.5);
        throw model::VantroError(Kind::exportFailed, "No video track found");
    };
    startExport();
    tasks.runAll();
    expectError(Kind::exportFailed, "No video track found");
    EXPECT_EQ(state.error()->description(), "Export failed: No video track found");
    EXPECT_EQ(state.phase(), AppPhase::previewing());
    EXPECT_FALSE(flow.isRunning());
}

TEST_F(ExportFlowTest, CancellingIsNoErrorAndLateReportsAreDropped) {
    bool cancelSeen = false;
    script = [&](const auto& progress, const auto& cancelled) {
        progress(0.5);
        tasks.runMain();
        EXPECT_EQ(state.phase(), AppPhase::exporting(0.5));
        flow.cancel();
        cancelSeen = cancelled.stop_requested();
        progress(0.6);
        throw std::runtime_error("interrupted");
    };
    startExport();
    tasks.runAll();
    EXPECT_TRUE(cancelSeen);
    EXPECT_THAT(phases, ElementsAre(AppPhase::exporting(0.5), AppPhase::previewing()));
    EXPECT_FALSE(state.showError());
}

TEST_F(ExportFlowTest, ANewRecordingLeavesTheExportBehind) {
    script = [&](const auto& progress, const auto& cancelled) {
        progress(0.5);
        tasks.runMain();
        state.reset();
        EXPECT_TRUE(cancelled.stop_requested());
        progress(0.6);
    };
    startExport();
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::idle());
}

TEST_F(ExportFlowTest, WithoutARecordingThereIsNothingToExport) {
    state.reset();
    flow.exportRecording(ExportFormat::mp4, exporting::ExportResolution::original);
    expectError(Kind::noRecordingData, "");
    EXPECT_FALSE(panels.kind);
}

class ProjectFlowTest : public EditedStateTest {
  protected:
    ProjectFlow flow{state, panels, tasks};

    fs::path save(const std::string& name) {
        const auto package = folder / name;
        flow.saveProject();
        panels.answer(package);
        tasks.runAll();
        return package;
    }
};

TEST_F(ProjectFlowTest, ASavedProjectOpensAgainWithTheWholeEdit) {
    state.setCursorScale(1.25);
    state.setCanvasAspectRatio(model::CanvasAspectRatio::ratio4x3);
    state.setWebcamPosition(model::WebcamPosition::topLeft);
    state.setWebcamSize(0.3);
    model::TimelineSegment half;
    half.endFraction = 0.5;
    half.speed = 2;
    state.setSegments({{half}});
    model::ClickEvent zoom;
    zoom.timestamp = 1;
    zoom.zoomLevel = 2.5;
    state.setEditableClickEvents({{zoom}});
    const auto edit = state.document().edit();
    const auto package = save("demo.vantro");
    EXPECT_EQ(panels.proposedName, "demo.vantro");
    EXPECT_EQ(state.projectPath(), package);
    EXPECT_EQ(state.recordingPath(), package / "recording.mov");
    EXPECT_TRUE(fs::equivalent(package / "recording.mov", folder / "source/recording.mov"));

    AppState fresh{1};
    ProjectFlow other{fresh, panels, tasks};
    std::vector<QString> used;
    QObject::connect(&other, &ProjectFlow::opened, [&](const auto& path) { used.push_back(path); });
    other.openProject();
    EXPECT_EQ(panels.kind, PanelKind::openProject);
    panels.answer(package);
    tasks.runAll();
    EXPECT_EQ(fresh.phase(), AppPhase::previewing());
    EXPECT_EQ(fresh.document().edit(), edit);
    EXPECT_FALSE(state.document().isModified() || fresh.document().isModified());
    EXPECT_EQ(fresh.recordingPath(), package / "recording.mov");
    EXPECT_FALSE(fresh.metadataPath());
    EXPECT_EQ(used.size(), 1U);
}

TEST_F(ProjectFlowTest, AFailedOpenLeavesTheStateUnchanged) {
    const auto package = save("demo.vantro");
    std::ofstream(package / "project.json") << "{\"version\": 1}";
    const auto before = state.document().project();
    flow.openPackage(package);
    tasks.runAll();
    expectError(Kind::projectOpenFailed, "project.json");
    EXPECT_EQ(state.document().project(), before);
    flow.openPackage(folder / "nowhere.vantro");
    tasks.runAll();
    expectError(Kind::projectOpenFailed, "nowhere.vantro");
    EXPECT_TRUE(phases.empty());
}

TEST_F(ProjectFlowTest, AFailedSaveIsShownAndKeepsTheRecordingWhereItIs) {
    std::ofstream(folder / "file") << "in the way";
    save("file/demo.vantro");
    expectError(Kind::projectSaveFailed, "file");
    EXPECT_EQ(state.recordingPath(), folder / "source/recording.mov");
    EXPECT_FALSE(state.projectPath());
    EXPECT_FALSE(flow.isBusy());

    state.reset();
    flow.saveProject();
    expectError(Kind::projectSaveFailed, "No recording metadata available");
    EXPECT_FALSE(panels.kind);
}

TEST_F(ProjectFlowTest, ClosedPanelsChangeNothingAndLetTheNextOneOpen) {
    flow.saveProject();
    panels.answer({});
    flow.openProject();
    EXPECT_EQ(panels.kind, PanelKind::openProject);
    panels.answer({});
    EXPECT_EQ(tasks.waitingWork(), 0U);
    EXPECT_FALSE(flow.isBusy());
}

TEST_F(ProjectFlowTest, NothingIsOpenedOverARunningRecording) {
    const auto package = save("demo.vantro");
    state.reset();
    flow.openPackage(package);
    state.setPhase(AppPhase::recording()); // begins while the project is being read
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::recording());
    EXPECT_FALSE(state.metadata());
    flow.openProject();
    EXPECT_FALSE(panels.kind);
}

} // namespace
} // namespace vantro::app::flows

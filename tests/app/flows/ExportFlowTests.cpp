#include "app/flows/EditedState.h"
#include "app/flows/ExportFlow.h"

#include <memory>

namespace vantro::app::flows {
namespace {

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

} // namespace
} // namespace vantro::app::flows

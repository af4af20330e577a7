#pragma once

namespace vantro::app::flows {

class ExportFlow;
class JournalFlow;
class ProjectFlow;
class RecordingFlow;
class RecoveryFlow;

/// The flows that a window drives; all of it outlives the models that are given this.
struct Flows {
    RecordingFlow& recording;
    ExportFlow& exports;
    ProjectFlow& projects;
    RecoveryFlow& recovery;
    JournalFlow& journals;
};

} // namespace vantro::app::flows

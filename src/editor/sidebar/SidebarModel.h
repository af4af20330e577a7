#pragma once

#include "editor/sidebar/AllZoomsGroup.h"
#include "editor/sidebar/BackgroundGroup.h"
#include "editor/sidebar/FrameGroup.h"
#include "editor/sidebar/PointerGroup.h"
#include "editor/sidebar/SegmentGroup.h"
#include "editor/sidebar/SoundGroup.h"
#include "editor/sidebar/WebcamGroup.h"
#include "editor/sidebar/ZoomGroup.h"

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// The groups of the editor's sidebar, and the gestures in which they are used: what happens
/// between begin and end is one step to undo. Main thread.
class SidebarModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(vantro::editor::sidebar::ZoomGroup* zoom READ zoom CONSTANT)
    Q_PROPERTY(vantro::editor::sidebar::SegmentGroup* segment READ segment CONSTANT)
    Q_PROPERTY(vantro::editor::sidebar::BackgroundGroup* background READ background CONSTANT)
    Q_PROPERTY(vantro::editor::sidebar::FrameGroup* frame READ frame CONSTANT)
    Q_PROPERTY(vantro::editor::sidebar::PointerGroup* pointer READ pointer CONSTANT)
    Q_PROPERTY(vantro::editor::sidebar::AllZoomsGroup* allZooms READ allZooms CONSTANT)
    Q_PROPERTY(vantro::editor::sidebar::WebcamGroup* webcam READ webcam CONSTANT)
    Q_PROPERTY(vantro::editor::sidebar::SoundGroup* sound READ sound CONSTANT)

  public:
    SidebarModel(app::AppState& state, app::flows::FilePanels& panels,
                 app::flows::TaskRunner& tasks)
        : m_steps(state.document(), "sidebar ")
        , m_zoom(state, m_steps)
        , m_segment(state, m_steps)
        , m_background(state, m_steps, panels, tasks)
        , m_frame(state, m_steps)
        , m_pointer(state, m_steps)
        , m_allZooms(state, m_steps)
        , m_webcam(state, m_steps)
        , m_sound(state, m_steps) {}

    ZoomGroup* zoom() { return &m_zoom; }
    SegmentGroup* segment() { return &m_segment; }
    BackgroundGroup* background() { return &m_background; }
    FrameGroup* frame() { return &m_frame; }
    PointerGroup* pointer() { return &m_pointer; }
    AllZoomsGroup* allZooms() { return &m_allZooms; }
    WebcamGroup* webcam() { return &m_webcam; }
    SoundGroup* sound() { return &m_sound; }

    Q_INVOKABLE void beginGesture() { m_steps.begin(); }
    Q_INVOKABLE void continueGesture() { m_steps.goOn(); }
    Q_INVOKABLE void endGesture() { m_steps.end(); }

  private:
    EditSteps m_steps;
    ZoomGroup m_zoom;
    SegmentGroup m_segment;
    BackgroundGroup m_background;
    FrameGroup m_frame;
    PointerGroup m_pointer;
    AllZoomsGroup m_allZooms;
    WebcamGroup m_webcam;
    SoundGroup m_sound;
};

} // namespace vantro::editor::sidebar

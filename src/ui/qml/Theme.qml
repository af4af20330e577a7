pragma Singleton
import QtQuick

// Colors, type and spacing of the whole program. `dark` is set by the main window.
QtObject {
    property bool dark: false

    readonly property color window: dark ? "#1e1e20" : "#f6f6f7"
    readonly property color surface: dark ? "#2b2b2e" : "#ffffff"
    readonly property color sunken: dark ? "#161618" : "#e9e9ec"
    readonly property color groove: dark ? "#56565c" : "#c9c9ce"
    readonly property color raised: dark ? "#47474b" : "#ffffff"
    readonly property color stage: "#000000"
    readonly property color stageText: "#ffffff"
    readonly property color border: dark ? "#3d3d41" : "#d6d6da"
    readonly property color text: dark ? "#ececee" : "#1d1d1f"
    readonly property color secondaryText: dark ? "#a0a0a6" : "#606066"
    readonly property color disabledText: dark ? "#5f5f64" : "#a9a9ae"
    readonly property color hover: dark ? "#18ffffff" : "#0d000000"
    readonly property color pressed: dark ? "#28ffffff" : "#1a000000"
    readonly property color accent: dark ? "#2bb88a" : "#157f5c"
    readonly property color accentHover: dark ? "#37c497" : "#17845f"
    readonly property color accentPressed: dark ? "#239a73" : "#106a4c"
    readonly property color accentInk: dark ? "#06241a" : "#ffffff"
    readonly property color focusRing: dark ? "#2bb88a" : "#157f5c"
    readonly property color record: dark ? "#f2555a" : "#dc3d43"
    readonly property color recordHover: dark ? "#ff6b6f" : "#e5484d"
    readonly property color recordPressed: dark ? "#d63f45" : "#c03036"
    // Under white text, so darker than the symbol of the record button.
    readonly property color stop: dark ? "#cf3b41" : "#cf3339"
    readonly property color stopHover: dark ? "#d04147" : "#d6383e"
    readonly property color stopPressed: dark ? "#b3282e" : "#b02a30"
    readonly property color stopInk: "#ffffff"
    readonly property color tip: dark ? "#3d3d41" : "#202022"
    readonly property color tipText: dark ? "#ececee" : "#ffffff"
    readonly property color warning: dark ? "#f0b429" : "#9a6200"
    readonly property color scrim: dark ? "#99000000" : "#66000000"

    // The time line is dark in both themes, so that its colors mean the same.
    readonly property color timelineGround: "#19191b"
    readonly property color timelineInk: "#ffffff"
    readonly property color timelineText: "#a8a8ae"
    readonly property color timelineTick: "#6c6c72"
    readonly property color timelineGap: "#e02a2a2e"
    readonly property color timelineSegment: "#235c63"
    readonly property color timelineKept: "#26235c63"
    readonly property color timelineKeptSelected: "#4d2f7a82"
    readonly property color timelineWave: "#5ba3ab"
    readonly property color timelineSegmentOutline: "#6fd3dc"
    readonly property color timelineBadge: "#99000000"
    readonly property color timelineHandle: "#e8e8ea"
    readonly property color timelineZoom: "#7c5cf0"
    readonly property color timelineZoomOutline: "#8f73f5"
    readonly property color timelinePlayhead: "#f2555a"
    readonly property color timelineMark: "#40f0b429"
    readonly property color timelineMarkOutline: "#f0b429"
    readonly property color timelineFocus: "#ffffff"

    readonly property int caption: 11
    readonly property int body: 13
    readonly property int headline: 15
    readonly property int title2: 17
    readonly property int title: 22
    readonly property int display: 40

    readonly property int tight: 4
    readonly property int gap: 8
    readonly property int wide: 12
    readonly property int margin: 16

    readonly property int radius: 7
    readonly property int controlHeight: 30
    readonly property int quick: 90 // ms; colors follow the pointer without flicker
}

#pragma once

#include "app/state/EditDocument.h"

#include <array>
#include <filesystem>
#include <optional>

namespace vantro::app {

/// The document in the editor with what belongs to it but is no part of it. A value.
struct ShownDocument {
    struct Links {
        std::optional<std::filesystem::path> metadataPath;
        std::optional<std::filesystem::path> projectPath;
        std::optional<model::Uuid> selectedSegmentID;
        std::optional<model::Uuid> selectedClickID;
    };

    EditDocument::Content content;
    Links links;
};

/// What the state shows of it, each told of on its own.
enum class ShownField {
    recordingPath,
    metadataPath,
    metadata,
    clicks,
    segments,
    selectedSegment,
    selectedClick,
    background,
    canvas,
    cursorScale,
    webcamPosition,
    webcamSize,
    name,
    projectPath
};

// The order in which they are told of, as a document is shown or edited, and as it is left.
inline constexpr auto orderOfShowing = [] {
    using enum ShownField;
    return std::array{recordingPath,   metadataPath,  metadata,   clicks,     segments,
                      selectedSegment, selectedClick, background, canvas,     cursorScale,
                      webcamPosition,  webcamSize,    name,       projectPath};
}();
inline constexpr auto orderOfReset = [] {
    using enum ShownField;
    return std::array{recordingPath,  metadataPath,  metadata,    segments,   selectedSegment,
                      clicks,         selectedClick, cursorScale, background, canvas,
                      webcamPosition, webcamSize,    projectPath};
}();

bool differs(ShownField field, const ShownDocument& a, const ShownDocument& b);

} // namespace vantro::app

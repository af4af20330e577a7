#pragma once

#include "app/state/EditDocument.h"

#include <string>

namespace vantro::editor::sidebar {

/// Makes changes of the edit steps that can be undone: all those of one gesture, as a drag of a
/// slider, are one step. Main thread.
class EditSteps {
  public:
    /// `place` tells the gestures of several such objects apart.
    EditSteps(app::EditDocument& document, std::string place)
        : m_document(document), m_place(std::move(place)) {}

    app::EditDocument& document() const { return m_document; }

    void begin() {
        ++m_gesture;
        m_isOpen = true;
    }
    /// What comes now still belongs to the gesture before: the second half of a double click.
    void goOn() { m_isOpen = true; }
    void end() { m_isOpen = false; }

    /// `name` as in EditDocument::Step. Without a gesture under way a step of its own.
    void apply(model::Edit edit, std::string name) {
        m_document.apply(std::move(edit),
                         {.name = std::move(name),
                          .mergeKey = m_isOpen ? m_place + std::to_string(m_gesture) : ""});
    }

  private:
    app::EditDocument& m_document;
    std::string m_place;
    int m_gesture = 0;
    bool m_isOpen = false;
};

} // namespace vantro::editor::sidebar

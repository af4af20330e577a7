#pragma once

#include "app/state/AppState.h"
#include "editor/sidebar/EditSteps.h"

#include <QObject>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// Settings that stand together in the sidebar: shows a part of the edit and makes what is changed
/// there steps of the document. Values that are no numbers change nothing; others are limited to
/// what a project may hold. Holds no truth. Main thread.
class SettingsGroup : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

  Q_SIGNALS:
    void changed();

  protected:
    /// Whether the group shows the two differently.
    using Differ = bool (*)(const model::Edit& a, const model::Edit& b);

    SettingsGroup(app::AppState& state, EditSteps& steps, Differ differ);

    app::AppState& state() const { return m_state; }
    const model::Edit& edit() const { return m_state.document().edit(); }
    /// Of the recording; 0 without one.
    double duration() const;

    template <typename Change>
    void change(std::string name, const Change& change) {
        auto changed = edit();
        change(changed);
        m_steps.apply(std::move(changed), std::move(name));
    }
    /// Sets one number of the edit.
    void setNumber(std::string name, double model::Edit::* field, double value, double least,
                   double most);

  private:
    app::AppState& m_state;
    EditSteps& m_steps;
};

} // namespace vantro::editor::sidebar

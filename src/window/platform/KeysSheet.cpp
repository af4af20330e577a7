#include "window/platform/KeysSheet.h"

#include "ui/Sentences.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QPushButton>

namespace vantro::window {
namespace {

using capture::GlobalAction;
using Kind = capture::GlobalKeysState::Kind;

} // namespace

KeysSheet::KeysSheet(KeysFromAnywhere& keys) : m_keys(keys) {
    auto* form = new QFormLayout(this); // Qt's from now on, as all below
    auto* explanation = new QLabel(
        keys.desktopChooses()
            ? tr("These keys work whatever program you are in. Your desktop asks which they are.")
            : tr("These keys work whatever program you are in."));
    explanation->setWordWrap(true);
    form->addRow(explanation);
    addRow(GlobalAction::toggle, tr("Start or stop a recording"));
    addRow(GlobalAction::mark, tr("Zoom to the pointer"));
    m_status = new QLabel;
    m_status->setObjectName(QStringLiteral("status"));
    m_status->setWordWrap(true);
    m_status->setTextInteractionFlags(Qt::TextSelectableByMouse); // commands are copied from it
    form->addRow(m_status);
    auto* buttons = new QDialogButtonBox;
    m_setUp = buttons->addButton(keys.desktopChooses() ? tr("Set Up…") : tr("Use These Keys"),
                                 QDialogButtonBox::ActionRole);
    m_setUp->setObjectName(QStringLiteral("setUp"));
    m_turnOff = buttons->addButton(tr("Turn Off"), QDialogButtonBox::ActionRole);
    m_turnOff->setObjectName(QStringLiteral("turnOff"));
    form->addRow(buttons);
    connect(m_setUp, &QPushButton::clicked, this, &KeysSheet::setUp);
    connect(m_turnOff, &QPushButton::clicked, &m_keys, &KeysFromAnywhere::turnOff);
    connect(&m_keys, &KeysFromAnywhere::changed, this, [this] { tell(m_keys.state()); });
    tell(m_keys.state());
}

void KeysSheet::addRow(GlobalAction action, const QString& name) {
    auto* form = static_cast<QFormLayout*>(layout());
    Row& row = m_rows[action];
    if (m_keys.desktopChooses()) {
        row.bound = new QLabel;
        form->addRow(name, row.bound);
        return;
    }
    row.field = new QKeySequenceEdit;
    row.field->setAccessibleName(name);
    for (const auto& each : m_keys.wished())
        if (each.action == action)
            row.field->setKeySequence(QKeySequence::fromString(QString::fromStdString(each.keys),
                                                               QKeySequence::PortableText));
    form->addRow(name, row.field);
}

void KeysSheet::setUp() {
    auto wished = m_keys.wished();
    for (auto& [action, keys] : wished)
        if (const auto* field = m_rows[action].field) // one key, not a sequence
            keys = field->keySequence().isEmpty() ? std::string()
                                                  : QKeySequence(field->keySequence()[0])
                                                        .toString(QKeySequence::PortableText)
                                                        .toStdString();
    m_keys.setUp(wished);
}

void KeysSheet::tell(const std::optional<capture::GlobalKeysState>& state) {
    const bool isAsking = state && state->kind == Kind::asking;
    m_setUp->setEnabled(!isAsking || m_keys.desktopChooses()); // a dialog may have been lost
    m_turnOff->setEnabled(state.has_value());
    for (const auto& [action, row] : m_rows)
        if (row.bound != nullptr) {
            row.bound->setText(tr("none"));
            for (const auto& each : state ? state->keys : std::vector<capture::GlobalKey>())
                if (each.action == action && !each.keys.empty())
                    row.bound->setText(QString::fromStdString(each.keys));
        }
    if (!state)
        m_status->setText(tr("No keys are set up."));
    else if (isAsking)
        m_status->setText(m_keys.desktopChooses() ? tr("Your desktop is asking.") : QString());
    else if (state->kind == Kind::bound)
        m_status->setText(tr("The keys work now, and will at each start of Vantro."));
    else if (state->kind == Kind::refused)
        m_status->setText(tr("The desktop was told not to give these keys to Vantro."));
    else
        m_status->setText(ui::sentence(state->whyNot));
}

} // namespace vantro::window

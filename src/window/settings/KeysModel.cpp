#include "window/settings/KeysModel.h"

#include "ui/Sentences.h"

#include <QKeySequence>
#include <algorithm>

namespace vantro::window::settings {
namespace {

using capture::GlobalAction;
using Kind = capture::GlobalKeysState::Kind;

bool isModifier(int key) {
    return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt ||
           key == Qt::Key_Meta || key == Qt::Key_AltGr || key == Qt::Key_Super_L ||
           key == Qt::Key_Super_R || key == Qt::Key_CapsLock || key == Qt::Key_NumLock ||
           key == Qt::Key_unknown || key == 0;
}

/// Taken from every program, it would be missing in most of them.
bool isNeededElsewhere(int key, Qt::KeyboardModifiers modifiers) {
    if ((modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0)
        return false;
    return key < Qt::Key_F1 && key != Qt::Key_Print && key != Qt::Key_Pause &&
           key != Qt::Key_SysReq;
}

QString nameOf(GlobalAction action) {
    switch (action) {
    case GlobalAction::toggle:
        return KeysModel::tr("Start or stop a recording");
    case GlobalAction::pause:
        return KeysModel::tr("Pause or resume it");
    case GlobalAction::mark:
        return KeysModel::tr("Zoom to the pointer");
    }
    return {};
}

} // namespace

KeysModel::KeysModel(KeysFromAnywhere& keys) : m_keys(keys), m_wished(keys.wished()) {
    connect(&keys, &KeysFromAnywhere::changed, this, &KeysModel::takeNews);
}

void KeysModel::takeNews() {
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    Q_EMIT changed();
}

/// A desktop's dialog may have been lost, so that it can be asked again at any time.
bool KeysModel::canSetUp() const {
    const auto& state = m_keys.state();
    if (desktopChooses() || !state)
        return true;
    return state->kind != Kind::asking &&
           (state->kind != Kind::bound || m_wished != m_keys.wished());
}

QString KeysModel::status() const {
    const auto& state = m_keys.state();
    if (!m_problem.isEmpty())
        return m_problem;
    if (!state)
        return tr("These keys are not in use yet.");
    switch (state->kind) {
    case Kind::asking:
        return desktopChooses() ? tr("Your desktop is asking.") : QString();
    case Kind::bound:
        return !desktopChooses() && m_wished != m_keys.wished()
                   ? tr("The keys from before still work.")
                   : tr("The keys work now, and will at each start of Vantro.");
    case Kind::refused:
        return tr("The desktop was told not to give these keys to Vantro.");
    case Kind::failed:
    case Kind::ended:
        break;
    }
    return ui::sentence(state->whyNot);
}

int KeysModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_wished.size());
}

QString KeysModel::textOf(const capture::GlobalKey& wished) const {
    if (!desktopChooses())
        return QKeySequence::fromString(QString::fromStdString(wished.keys),
                                        QKeySequence::PortableText)
            .toString(QKeySequence::NativeText);
    if (const auto& state = m_keys.state())
        for (const auto& each : state->keys)
            if (each.action == wished.action)
                return QString::fromStdString(each.keys);
    return {};
}

QVariant KeysModel::data(const QModelIndex& index, int role) const {
    const auto& wished = m_wished.at(static_cast<std::size_t>(index.row()));
    if (role == static_cast<int>(Role::name))
        return nameOf(wished.action);
    return role == static_cast<int>(Role::keys) ? textOf(wished) : QVariant();
}

QHash<int, QByteArray> KeysModel::roleNames() const {
    return {{static_cast<int>(Role::name), "name"}, {static_cast<int>(Role::keys), "keys"}};
}

bool KeysModel::press(int row, int key, int modifiers) {
    if (isModifier(key))
        return false;
    const auto held = Qt::KeyboardModifiers(modifiers) & ~Qt::KeypadModifier;
    const QKeySequence keys(QKeyCombination(held, static_cast<Qt::Key>(key)));
    if (isNeededElsewhere(key, held)) {
        m_problem = tr("%1 alone is needed in other programs: hold Ctrl, Alt or Meta with it.")
                        .arg(keys.toString(QKeySequence::NativeText));
        Q_EMIT changed();
        return false;
    }
    set(row, keys.toString(QKeySequence::PortableText).toStdString());
    return true;
}

void KeysModel::clear(int row) {
    set(row, {});
}

void KeysModel::set(int row, const std::string& keys) {
    m_wished.at(static_cast<std::size_t>(row)).keys = keys;
    m_problem.clear();
    takeNews();
}

void KeysModel::setUp() {
    m_problem.clear();
    m_keys.setUp(m_wished);
}

void KeysModel::turnOff() {
    m_problem.clear();
    m_keys.turnOff();
}

} // namespace vantro::window::settings

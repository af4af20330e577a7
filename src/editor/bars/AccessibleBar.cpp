#include "editor/bars/AccessibleBar.h"

#include "editor/bars/BarNodes.h"

#include <QQuickWindow>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace vantro::editor::bars {
namespace {

constexpr std::array kindNames{
    std::pair{BarPart::Kind::whole, ""}, std::pair{BarPart::Kind::start, " start"},
    std::pair{BarPart::Kind::end, " end"}, std::pair{BarPart::Kind::cut, " cut"},
    std::pair{BarPart::Kind::remove, " delete"}};
constexpr std::size_t idLength = 36; // characters

/// Of what is shown in `item`; made by a Repeater, they are no children of it as objects.
QQuickItem* itemOf(const QString& part, const QQuickItem& item) {
    for (auto* child : item.childItems()) {
        if (child->property("part").toString() == part)
            return child;
        if (auto* found = itemOf(part, *child))
            return found;
    }
    return nullptr;
}

} // namespace

QString BarPart::key() const {
    const auto* named = std::ranges::find(kindNames, kind, &decltype(kindNames)::value_type::first);
    return QString::fromStdString(id.toString() + named->second);
}

std::optional<BarPart> BarPart::ofKey(const QString& key) {
    const auto text = key.toStdString();
    const auto id = model::Uuid::parse(std::string_view(text).substr(0, idLength));
    for (const auto& [kind, name] : kindNames)
        if (id && text.substr(idLength) == name)
            return BarPart{*id, kind};
    return {};
}

AccessibleBar::AccessibleBar() : BarPicture(QImage::Format_ARGB32_Premultiplied) {
    installBarNodes();
}

AccessibleBar::~AccessibleBar() {
    for (const auto& [part, node] : m_nodes)
        QAccessible::deleteAccessibleInterface(node);
}

void AccessibleBar::setActions(EditorActions* actions) {
    if (actions == m_actions)
        return;
    m_actions = actions;
    setTimeline(actions == nullptr ? nullptr : actions->timeline());
    Q_EMIT actionsChanged();
}

const std::vector<BarPart>& AccessibleBar::parts() const {
    if (!m_parts)
        m_parts = m_actions ? listedParts() : std::vector<BarPart>();
    return *m_parts;
}

QAccessibleInterface* AccessibleBar::nodeOf(const BarPart& part) {
    const auto known = m_nodes.find(part);
    const auto id = known == m_nodes.end() ? makePartNode(*this, part) : known->second;
    m_nodes[part] = id;
    return QAccessible::accessibleInterface(id);
}

std::optional<BarPart> AccessibleBar::focused() const {
    const auto* item = window() == nullptr ? nullptr : window()->activeFocusItem();
    if (item == nullptr || !isAncestorOf(item))
        return {};
    return BarPart::ofKey(item->property("part").toString());
}

void AccessibleBar::takeFocus(const BarPart& part) {
    select(part);
    if (auto* item = itemOf(part.key(), *this))
        item->forceActiveFocus(Qt::OtherFocusReason);
}

QRect AccessibleBar::placeOf(double x, double extent) const {
    const QRectF seen = QRectF(x, 0, extent, height()) & boundingRect();
    return seen.isEmpty() ? QRect() : QRectF(mapToGlobal(seen.topLeft()), seen.size()).toRect();
}

void AccessibleBar::refresh() {
    m_parts.reset();
    polish();
    if (!QAccessible::isActive() || !m_actions)
        return;
    if (const auto count = parts().size(); count != std::exchange(m_toldCount, count)) {
        QAccessibleEvent event(this, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
    tellFocus();
}

/// Of what has the keyboard: an item may stand for another part, or that part somewhere else.
void AccessibleBar::tellFocus() {
    const auto part = focused();
    const auto now = part ? told(*part) : std::nullopt;
    const auto seconds = now ? now->seconds : std::nullopt;
    const auto before = std::exchange(m_toldFocus, part);
    const auto secondsBefore = std::exchange(m_toldSeconds, seconds);
    if (!now || !QAccessible::isActive())
        return;
    if (before != part) {
        QAccessibleEvent event(nodeOf(*part), QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    } else if (seconds && secondsBefore != seconds) {
        QAccessibleEvent name(nodeOf(*part), QAccessible::NameChanged);
        QAccessible::updateAccessibility(&name);
        QAccessibleValueChangeEvent value(nodeOf(*part), *seconds);
        QAccessible::updateAccessibility(&value);
    }
}

void AccessibleBar::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange) {
        disconnect(m_focusChanges);
        if (data.window != nullptr)
            m_focusChanges = connect(data.window, &QQuickWindow::activeFocusItemChanged, this,
                                     &AccessibleBar::tellFocus, Qt::QueuedConnection);
    }
    BarPicture::itemChange(change, data);
}

} // namespace vantro::editor::bars

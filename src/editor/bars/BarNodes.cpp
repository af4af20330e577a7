#include "editor/bars/BarNodes.h"

#include <QAccessibleObject>
#include <QQuickItem>
#include <QQuickWindow>
#include <algorithm>

namespace vantro::editor::bars {
namespace {

constexpr double stepSize = 0.1; // seconds

class PartNode final : public QAccessibleInterface,
                       public QAccessibleActionInterface,
                       public QAccessibleValueInterface {
  public:
    PartNode(BarParts& bar, const BarPart& part) : m_bar(bar), m_part(part) {}

    const BarPart& part() const { return m_part; }

    bool isValid() const override { return m_bar.told(m_part).has_value(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_bar.bar().window(); }
    QAccessibleInterface* parent() const override {
        const auto parent = m_bar.parentOf(m_part);
        return parent ? m_bar.nodeOf(*parent) : QAccessible::queryAccessibleInterface(&m_bar.bar());
    }
    int childCount() const override { return static_cast<int>(m_bar.partsOf(m_part).size()); }
    QAccessibleInterface* child(int index) const override {
        const auto parts = m_bar.partsOf(m_part);
        return index >= 0 && index < std::ssize(parts)
                   ? m_bar.nodeOf(parts[static_cast<std::size_t>(index)])
                   : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* node) const override {
        for (int i = 0; i < childCount(); ++i)
            if (child(i) == node)
                return i;
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < childCount(); ++i)
            if (auto* node = child(i); node->rect().contains(x, y))
                return node;
        return nullptr;
    }

    QString text(QAccessible::Text kind) const override {
        const auto told = m_bar.told(m_part);
        if (!told)
            return {};
        if (kind == QAccessible::Name)
            return told->name;
        return kind == QAccessible::Value && told->seconds ? QString::number(*told->seconds)
                                                           : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override { return m_bar.told(m_part).value_or(ToldPart()).place; }
    QAccessible::Role role() const override { return m_bar.told(m_part).value_or(ToldPart()).role; }
    QAccessible::State state() const override {
        QAccessible::State state;
        const auto told = m_bar.told(m_part);
        state.invalid = !told;
        state.focusable = told.has_value();
        state.selectable = told && told->role != QAccessible::Button;
        state.offscreen = told && told->place.isEmpty();
        state.selected = told && told->isSelected;
        state.focused = m_bar.focused() == m_part;
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ActionInterface)
            return static_cast<QAccessibleActionInterface*>(this);
        const auto told = m_bar.told(m_part);
        return type == QAccessible::ValueInterface && told && told->seconds
                   ? static_cast<QAccessibleValueInterface*>(this)
                   : nullptr;
    }

    QStringList actionNames() const override {
        const auto told = m_bar.told(m_part);
        if (!told)
            return {};
        QStringList names{pressAction(), setFocusAction()};
        if (told->seconds)
            names << increaseAction() << decreaseAction();
        return names;
    }
    void doAction(const QString& name) override {
        const auto told = m_bar.told(m_part);
        if (!told)
            return;
        if (name == pressAction())
            m_bar.press(m_part);
        else if (name == setFocusAction())
            m_bar.takeFocus(m_part);
        else if (told->seconds && name == increaseAction())
            m_bar.setSeconds(m_part, *told->seconds + stepSize);
        else if (told->seconds && name == decreaseAction())
            m_bar.setSeconds(m_part, *told->seconds - stepSize);
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

    QVariant currentValue() const override {
        return m_bar.told(m_part).value_or(ToldPart()).seconds.value_or(0);
    }
    void setCurrentValue(const QVariant& value) override {
        bool isNumber = false;
        const double seconds = value.toDouble(&isNumber);
        if (isNumber && isValid())
            m_bar.setSeconds(m_part, seconds);
    }
    QVariant maximumValue() const override { return m_bar.latest(); }
    QVariant minimumValue() const override { return 0.0; }
    QVariant minimumStepSize() const override { return stepSize; }

  private:
    BarParts& m_bar;
    const BarPart m_part;
};

class BarNode final : public QAccessibleObject {
  public:
    BarNode(QObject* object, BarParts& bar) : QAccessibleObject(object), m_bar(bar) {}

    QWindow* window() const override { return m_bar.bar().window(); }
    QAccessibleInterface* parent() const override {
        for (auto* item = m_bar.bar().parentItem(); item != nullptr; item = item->parentItem())
            if (auto* node = QAccessible::queryAccessibleInterface(item);
                node != nullptr && node->indexOfChild(this) >= 0)
                return node;
        return QAccessible::queryAccessibleInterface(m_bar.bar().window());
    }
    int childCount() const override { return static_cast<int>(m_bar.parts().size()); }
    QAccessibleInterface* child(int index) const override {
        const auto& parts = m_bar.parts();
        return index >= 0 && index < std::ssize(parts)
                   ? m_bar.nodeOf(parts[static_cast<std::size_t>(index)])
                   : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* node) const override {
        const auto* part = dynamic_cast<const PartNode*>(node);
        const auto& parts = m_bar.parts();
        const auto found = part == nullptr ? parts.end() : std::ranges::find(parts, part->part());
        return found == parts.end() ? -1 : static_cast<int>(found - parts.begin());
    }
    QAccessibleInterface* focusChild() const override {
        const auto part = m_bar.focused();
        return part ? m_bar.nodeOf(*part) : nullptr;
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_bar.barName() : QString();
    }
    QRect rect() const override {
        const auto& item = m_bar.bar();
        return QRectF(item.mapToGlobal(QPointF()), item.size()).toRect();
    }
    QAccessible::Role role() const override { return QAccessible::List; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !m_bar.bar().isVisible();
        return state;
    }

  private:
    BarParts& m_bar;
};

QAccessibleInterface* makeBarNode(const QString& /*className*/, QObject* object) {
    auto* bar = dynamic_cast<BarParts*>(object);
    return bar == nullptr ? nullptr : new BarNode(object, *bar); // Qt's from now on
}

} // namespace

void installBarNodes() {
    [[maybe_unused]] static const bool once = (QAccessible::installFactory(makeBarNode), true);
}

QAccessible::Id makePartNode(BarParts& bar, const BarPart& part) {
    return QAccessible::registerAccessibleInterface(new PartNode(bar, part)); // Qt's from now on
}

} // namespace vantro::editor::bars

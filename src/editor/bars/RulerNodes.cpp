#include "editor/bars/RulerNodes.h"

#include "editor/bars/RulerPicture.h"

#include <QAccessibleObject>
#include <QQuickWindow>

namespace vantro::editor::bars {
namespace {

class LabelNode final : public QAccessibleInterface {
  public:
    LabelNode(RulerPicture& ruler, std::size_t label) : m_ruler(ruler), m_label(label) {}

    std::size_t label() const { return m_label; }

    bool isValid() const override { return m_label < m_ruler.labels().size(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_ruler.window(); }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&m_ruler);
    }
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface* /*node*/) const override { return -1; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    QString text(QAccessible::Text kind) const override {
        const auto labels = m_ruler.labels();
        return kind == QAccessible::Name && m_label < labels.size() ? labels[m_label].text
                                                                    : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override {
        const auto labels = m_ruler.labels();
        if (m_label >= labels.size())
            return {};
        const auto& [text, left, extent] = labels[m_label];
        return QRectF(m_ruler.mapToGlobal(QPointF(left, 0)), QSizeF(extent, m_ruler.height()))
            .toRect();
    }
    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.readOnly = true;
        return state;
    }

  private:
    RulerPicture& m_ruler;
    const std::size_t m_label;
};

class RulerNode final : public QAccessibleObject {
  public:
    explicit RulerNode(RulerPicture& ruler) : QAccessibleObject(&ruler), m_ruler(ruler) {}

    QWindow* window() const override { return m_ruler.window(); }
    QAccessibleInterface* parent() const override {
        for (auto* item = m_ruler.parentItem(); item != nullptr; item = item->parentItem())
            if (auto* node = QAccessible::queryAccessibleInterface(item);
                node != nullptr && node->indexOfChild(this) >= 0)
                return node;
        return QAccessible::queryAccessibleInterface(m_ruler.window());
    }
    int childCount() const override { return static_cast<int>(m_ruler.labels().size()); }
    QAccessibleInterface* child(int index) const override {
        return index >= 0 && index < childCount() ? m_ruler.nodeOf(static_cast<std::size_t>(index))
                                                  : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* node) const override {
        const auto* label = dynamic_cast<const LabelNode*>(node);
        return label != nullptr && label->parent() == this ? static_cast<int>(label->label()) : -1;
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_ruler.name() : QString();
    }
    QRect rect() const override {
        return QRectF(m_ruler.mapToGlobal(QPointF()), m_ruler.size()).toRect();
    }
    QAccessible::Role role() const override { return QAccessible::Grouping; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !m_ruler.isVisible();
        return state;
    }

  private:
    RulerPicture& m_ruler;
};

QAccessibleInterface* makeRulerNode(const QString& /*className*/, QObject* object) {
    auto* ruler = qobject_cast<RulerPicture*>(object);
    return ruler == nullptr ? nullptr : new RulerNode(*ruler); // Qt's from now on
}

} // namespace

void installRulerNodes() {
    [[maybe_unused]] static const bool once = (QAccessible::installFactory(makeRulerNode), true);
}

QAccessible::Id makeLabelNode(RulerPicture& ruler, std::size_t label) {
    return QAccessible::registerAccessibleInterface(
        new LabelNode(ruler, label)); // Qt's from now on
}

} // namespace vantro::editor::bars

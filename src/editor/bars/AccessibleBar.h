#pragma once

#include "editor/bars/BarParts.h"
#include "editor/bars/BarPicture.h"
#include "editor/bars/EditorActions.h"

#include <map>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// A bar whose parts are painted as one picture and told to assistive technology one by one. Items
/// stand only for those that the keyboard reaches; they are children of this one, have a property
/// "part" with the key of theirs, and are no part of the tree themselves. Main thread.
class AccessibleBar : public vantro::editor::bars::BarPicture, public BarParts {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("the bars are")
    Q_PROPERTY(vantro::editor::bars::EditorActions* actions READ actions WRITE setActions NOTIFY
                   actionsChanged REQUIRED)
    Q_PROPERTY(QString name MEMBER m_name NOTIFY madeFor) ///< of the bar

  public:
    ~AccessibleBar() override;

    EditorActions* actions() const { return m_actions; }
    void setActions(EditorActions* actions);

    QQuickItem& bar() override { return *this; }
    QString barName() const override { return m_name; }
    const std::vector<BarPart>& parts() const override;
    std::vector<BarPart> partsOf(const BarPart& /*part*/) const override { return {}; }
    std::optional<BarPart> parentOf(const BarPart& /*part*/) const override { return {}; }
    double latest() const override { return timeline()->duration(); }
    std::optional<BarPart> focused() const override;
    QAccessibleInterface* nodeOf(const BarPart& part) override;
    void press(const BarPart& part) override { select(part); }
    void takeFocus(const BarPart& part) override;

  Q_SIGNALS:
    void actionsChanged();

  protected:
    AccessibleBar();

    virtual std::vector<BarPart> listedParts() const = 0;
    /// And brings it into view.
    virtual void select(const BarPart& part) = 0;
    /// Where x lies on the screen, as far as it is in view.
    QRect placeOf(double x, double width) const;
    /// The bar shows something else now.
    void refresh();
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    void tellFocus();

    QPointer<EditorActions> m_actions;
    QString m_name;
    mutable std::optional<std::vector<BarPart>> m_parts; ///< none: to be listed anew
    std::size_t m_toldCount = 0;                         ///< of parts
    std::map<BarPart, QAccessible::Id> m_nodes;          ///< of the parts that were asked about
    std::optional<BarPart> m_toldFocus;
    std::optional<double> m_toldSeconds; ///< of `m_toldFocus`
    QMetaObject::Connection m_focusChanges;
};

} // namespace vantro::editor::bars

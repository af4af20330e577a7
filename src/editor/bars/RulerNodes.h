#pragma once

#include <QAccessible>
#include <QString>
#include <vector>

class QQuickItem;

namespace vantro::editor::bars {

/// The times that a ruler shows. Main thread.
class RulerLabels {
  public:
    struct Label {
        QString text;
        double left = 0;   ///< points
        double extent = 0; ///< points
    };

    virtual ~RulerLabels() = default;
    virtual QQuickItem& ruler() = 0;
    virtual QString rulerName() const = 0;
    /// Those in view, from left to right.
    virtual std::vector<Label> labels() const = 0;
    /// Of one of them: whichever stands at that place.
    virtual QAccessibleInterface* nodeOf(std::size_t label) = 0;
};

/// Has assistive technology told of rulers, as a group with a text for each time. Main thread.
void installRulerNodes();
/// The node of the label at that place in the ruler, registered; whoever asks deletes it.
QAccessible::Id makeLabelNode(RulerLabels& labels, std::size_t label);

} // namespace vantro::editor::bars

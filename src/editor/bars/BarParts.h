#pragma once

#include "model/Uuid.h"

#include <QAccessible>
#include <QRect>
#include <QString>
#include <optional>
#include <vector>

class QQuickItem;

namespace vantro::editor::bars {

/// A block, segment, handle or button on a bar, which stays the same one wherever it is moved and
/// however the bar shows it.
struct BarPart {
    enum class Kind { whole, start, end, cut, remove };
    model::Uuid id; ///< the zoom's or segment's; of a cut that of the segment before it
    Kind kind = Kind::whole;
    auto operator<=>(const BarPart&) const = default;

    /// How QML calls it.
    QString key() const;
    static std::optional<BarPart> ofKey(const QString& key);
};

/// What assistive technology is told of a part.
struct ToldPart {
    QString name;
    QAccessible::Role role = QAccessible::Slider;
    std::optional<double> seconds = {}; ///< where it stands; of one that can be moved
    QRect place = {};                   ///< on the screen; empty where it is out of view
    bool isSelected = false;
};

/// The parts of one bar, whether they have an item of their own or not: of thousands of blocks only
/// those that the keyboard reaches have one. Main thread.
class BarParts {
  public:
    virtual ~BarParts() = default;
    virtual QQuickItem& bar() = 0;
    virtual QString barName() const = 0;
    /// From left to right; those below `part`, or, without one, those of the bar itself.
    virtual const std::vector<BarPart>& parts() const = 0;
    virtual std::vector<BarPart> partsOf(const BarPart& part) const = 0;
    virtual std::optional<BarPart> parentOf(const BarPart& part) const = 0;
    /// Nothing where it is gone.
    virtual std::optional<ToldPart> told(const BarPart& part) const = 0;
    /// The last time that can be set.
    virtual double latest() const = 0;
    /// The one that has the keyboard.
    virtual std::optional<BarPart> focused() const = 0;
    virtual QAccessibleInterface* nodeOf(const BarPart& part) = 0;

    // By assistive technology. Each selects the part and brings it into view.
    /// Does what a button does.
    virtual void press(const BarPart& part) = 0;
    virtual void setSeconds(const BarPart& part, double seconds) = 0;
    virtual void takeFocus(const BarPart& part) = 0;
};

} // namespace vantro::editor::bars

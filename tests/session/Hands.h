#pragma once

#include "session/AccessibilityBus.h"

#include <memory>
#include <string>

namespace vantro::test {

/// Somebody who uses the program: finds what it shows by role and name, and does things to it.
/// Throws std::runtime_error when something does not come, with all that is there.
class Hand {
  public:
    Hand(DesktopSession& desktop, const AccessibilityBus& bus) : m_desktop(desktop), m_bus(bus) {}
    virtual ~Hand() = default;

    /// What is, or soon will be, there, or in a dialog of that name. Names are regular expressions.
    Accessible find(const QString& role, const QString& name, const QString& dialog = {}) const;
    void press(const QString& role, const QString& name, const QString& dialog = {}) {
        pressIt(find(role, name, dialog));
    }
    /// To a time, something on the time line; as near as it can be placed.
    virtual void moveTo(const QString& name, double seconds) = 0;
    virtual void moveBy(const QString& name, double seconds) = 0;
    virtual void markRange(double from, double to) = 0;
    /// To whatever has the keyboard: "ctrl+s".
    void keys(const QString& keys) const { m_desktop.xdo({QStringLiteral("key"), keys}); }
    /// Answers the panel for a file.
    void chooseFile(const QString& panel, const std::filesystem::path& file);

  protected:
    virtual void pressIt(const Accessible& control) = 0;

    DesktopSession& m_desktop;
    const AccessibilityBus& m_bus;
};

/// With the pointer, where the accessibility tree says that things are.
class PointerHand : public Hand {
  public:
    using Hand::Hand;
    void moveTo(const QString& name, double seconds) override;
    void moveBy(const QString& name, double seconds) override;
    void markRange(double from, double to) override;

  protected:
    void pressIt(const Accessible& control) override;

  private:
    void drag(QPoint from, QPoint to);
    void scrollTo(const Accessible& control);
    int pixels(double seconds) const; ///< of the time line
};

/// Without one: by the actions and values of the tree, and keys.
class ReaderHand : public Hand {
  public:
    using Hand::Hand;
    void moveTo(const QString& name, double seconds) override;
    void moveBy(const QString& name, double seconds) override;
    void markRange(double from, double to) override;

  protected:
    void pressIt(const Accessible& control) override;
};

} // namespace vantro::test

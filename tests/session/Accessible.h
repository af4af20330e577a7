#pragma once

#include <QDBusConnection>
#include <QRect>
#include <QRegularExpression>
#include <QString>
#include <vector>

namespace vantro::test {

/// Something that a program tells assistive technology of (AT-SPI), and what that can do with it.
/// Cheap to copy. What is asked of one that is gone, or of none, is empty.
class Accessible {
  public:
    Accessible() = default;
    Accessible(const QDBusConnection& connection, QString program, QString path)
        : m_connection(connection), m_program(std::move(program)), m_path(std::move(path)) {}
    explicit operator bool() const { return !m_path.isEmpty(); }
    bool operator==(const Accessible& other) const {
        return m_program == other.m_program && m_path == other.m_path;
    }

    QString name() const;
    QString role() const; ///< "push button"
    QString text() const; ///< in a field
    /// On the screen, in pixels; empty when it is hidden, not when it is scrolled out of sight.
    QRect place() const;
    bool isFocused() const;
    bool isChecked() const;
    double value() const;
    double largest() const; ///< that `value` can be
    std::vector<Accessible> children() const;
    /// The first below it that is not hidden; null without one.
    Accessible find(const QString& role, const QRegularExpression& name) const;

    /// Whether it has such an action and carried it out: "Press".
    bool act(const QString& action) const;
    void setValue(double value) const;
    void setText(const QString& text) const;
    void focus() const;

  private:
    QDBusMessage call(const char* interface, const char* method,
                      const QVariantList& arguments = {}) const;
    QVariant property(const char* interface, const char* name) const;
    bool is(int state) const;

    QDBusConnection m_connection{QString()};
    QString m_program;
    QString m_path;
};

} // namespace vantro::test

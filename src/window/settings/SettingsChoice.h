#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

#include <QtQml/qqmlregistration.h>

namespace vantro::window::settings {

/// One of a few values, by its place among them. Main thread.
class SettingsChoice : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QStringList names READ names CONSTANT)
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY changed)

  public:
    using Read = std::function<int()>;
    using Write = std::function<void(int)>;

    SettingsChoice(QStringList names, Read read, Write write)
        : m_names(std::move(names)), m_read(std::move(read)), m_write(std::move(write)) {}

    const QStringList& names() const { return m_names; }
    int current() const { return m_read(); }
    void setCurrent(int current) {
        if (current < 0 || current >= m_names.size() || current == m_read())
            return;
        m_write(current);
        Q_EMIT changed();
    }

  Q_SIGNALS:
    void changed();

  private:
    const QStringList m_names;
    const Read m_read;
    const Write m_write;
};

} // namespace vantro::window::settings

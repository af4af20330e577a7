#pragma once

#include "window/platform/KeysFromAnywhere.h"

#include <QAbstractListModel>

#include <QtQml/qqmlregistration.h>

namespace vantro::window::settings {

/// The keys from anywhere, one row for each thing that they do. On a desktop that chooses them
/// itself the rows tell what it chose; elsewhere the user presses them here. Main thread.
class KeysModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool desktopChooses READ desktopChooses CONSTANT)
    Q_PROPERTY(bool canSetUp READ canSetUp NOTIFY changed)
    Q_PROPERTY(bool canTurnOff READ canTurnOff NOTIFY changed)
    /// How they stand, in a sentence; empty while there is nothing to say.
    Q_PROPERTY(QString status READ status NOTIFY changed)

  public:
    enum class Role { name = Qt::UserRole, keys };

    /// `keys` outlive this.
    explicit KeysModel(KeysFromAnywhere& keys);

    bool desktopChooses() const { return m_keys.desktopChooses(); }
    bool canSetUp() const;
    bool canTurnOff() const { return m_keys.state().has_value(); }
    QString status() const;
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Takes what was pressed for a row: `key` and `modifiers` of Qt's key event. Returns whether
    /// that was all; a modifier alone is the beginning of a combination.
    Q_INVOKABLE bool press(int row, int key, int modifiers);
    /// The row has no key from now on.
    Q_INVOKABLE void clear(int row);
    /// Makes the keys work as they are shown.
    Q_INVOKABLE void setUp();
    Q_INVOKABLE void turnOff();

  Q_SIGNALS:
    void changed();

  private:
    void set(int row, const std::string& keys);
    void takeNews();
    QString textOf(const capture::GlobalKey& wished) const;

    KeysFromAnywhere& m_keys;
    std::vector<capture::GlobalKey> m_wished;
    QString m_problem; ///< with what was pressed last
};

} // namespace vantro::window::settings

#pragma once

#include "app/flows/RecoveryFlow.h"

#include <QAbstractListModel>

#include <QtQml/qqmlregistration.h>

namespace vantro::window::start {

/// The recordings that nobody saved, as the start screen lists them. Holds no truth. Main thread.
class UnsavedRecordingsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

  public:
    /// `about` is length and size; `picture` names an image of RecordingPictures, empty for none.
    enum Role { name = Qt::UserRole, about, picture };

    explicit UnsavedRecordingsModel(app::flows::RecoveryFlow& recovery);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Rows that are not there do nothing.
    Q_INVOKABLE void open(int row);
    Q_INVOKABLE void askDelete(int row);

  Q_SIGNALS:
    void countChanged();

  private:
    const app::flows::RecoveryFlow::Listed* at(int row) const;

    app::flows::RecoveryFlow& m_recovery;
};

/// "0:12, 3.4 MB"; without a length where that is not known.
QString aboutText(const app::flows::RecoveryFlow::Listed& recording);

} // namespace vantro::window::start

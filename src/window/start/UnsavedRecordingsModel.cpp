#include "window/start/UnsavedRecordingsModel.h"

#include "ui/TimeText.h"

#include <QLocale>

namespace vantro::window::start {

using app::flows::RecoveryFlow;

UnsavedRecordingsModel::UnsavedRecordingsModel(RecoveryFlow& recovery) : m_recovery(recovery) {
    connect(&recovery, &RecoveryFlow::recordingsChanged, this, [this] {
        beginResetModel();
        endResetModel();
        Q_EMIT countChanged();
    });
    connect(&recovery, &RecoveryFlow::detailsChanged, this,
            [this](int row) { Q_EMIT dataChanged(index(row), index(row)); });
}

const RecoveryFlow::Listed* UnsavedRecordingsModel::at(int row) const {
    if (row < 0 || row >= rowCount())
        return nullptr;
    return &m_recovery.recordings()[static_cast<std::size_t>(row)];
}

int UnsavedRecordingsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_recovery.recordings().size());
}

QString aboutText(const RecoveryFlow::Listed& listed) {
    const auto size = QLocale().formattedDataSize(static_cast<qint64>(listed.recording.bytes), 1,
                                                  QLocale::DataSizeSIFormat);
    if (listed.recording.isInterrupted)
        return QObject::tr("Interrupted, %1").arg(size);
    if (!listed.details || !listed.details->seconds)
        return size;
    return QObject::tr("%1, %2").arg(ui::elapsedText(*listed.details->seconds), size);
}

QVariant UnsavedRecordingsModel::data(const QModelIndex& index, int role) const {
    const auto* listed = at(index.row());
    if (listed == nullptr)
        return {};
    switch (role) {
    case name:
        return QString::fromStdString(listed->recording.name);
    case about:
        return aboutText(*listed);
    case picture:
        return listed->details && listed->details->picture
                   ? QString::fromStdString(listed->recording.movie.parent_path().filename())
                   : QString();
    default:
        return {};
    }
}

QHash<int, QByteArray> UnsavedRecordingsModel::roleNames() const {
    return {{name, "name"}, {about, "about"}, {picture, "picture"}};
}

void UnsavedRecordingsModel::open(int row) {
    if (const auto* listed = at(row))
        m_recovery.open(listed->recording.movie);
}

void UnsavedRecordingsModel::askDelete(int row) {
    if (const auto* listed = at(row))
        m_recovery.askDelete(listed->recording.movie);
}

} // namespace vantro::window::start

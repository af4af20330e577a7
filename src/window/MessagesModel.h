#pragma once

#include "app/flows/Flows.h"

#include <QObject>
#include <QString>

#include <QtQml/qqmlregistration.h>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::window {

/// What the messages over the window name, and what their answers do. Which of them is shown, the
/// ActionGuard says. Holds no truth. Main thread.
class MessagesModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString alertText READ alertText NOTIFY alertChanged)
    Q_PROPERTY(QString alertSuggestion READ alertSuggestion NOTIFY alertChanged)
    Q_PROPERTY(QString projectName READ projectName NOTIFY questionChanged)
    Q_PROPERTY(QString stopNotice READ stopNotice NOTIFY questionChanged)
    Q_PROPERTY(QString readOnlyReason READ readOnlyReason NOTIFY questionChanged)
    Q_PROPERTY(QString pictureReason READ pictureReason NOTIFY questionChanged)
    Q_PROPERTY(QString deletedName READ deletedName NOTIFY questionChanged)
    /// Its length and size.
    Q_PROPERTY(QString deletedAbout READ deletedAbout NOTIFY questionChanged)
    Q_PROPERTY(QString restoredName READ restoredName NOTIFY questionChanged)
    /// What the offered recording takes on disk: "1.2 GB".
    Q_PROPERTY(QString recoverySize READ recoverySize NOTIFY questionChanged)

  public:
    /// All that is referred to outlives this.
    MessagesModel(app::AppState& state, app::flows::Flows flows);

    QString alertText() const;
    QString alertSuggestion() const;
    QString projectName() const;
    QString stopNotice() const;
    QString readOnlyReason() const;
    QString pictureReason() const;
    QString deletedName() const;
    QString deletedAbout() const;
    QString restoredName() const;
    QString recoverySize() const;

    Q_INVOKABLE void dismissAlert();
    Q_INVOKABLE void dismissStopNotice();
    // The edit that is to be left.
    Q_INVOKABLE void saveAndLeave();
    Q_INVOKABLE void discardAndLeave();
    Q_INVOKABLE void stay();
    // What was opened.
    Q_INVOKABLE void dismissReadOnlyNotice();
    Q_INVOKABLE void dismissPictureNotice();
    // The recording in the list that is to be deleted.
    Q_INVOKABLE void keepListed();
    Q_INVOKABLE void deleteListed();
    // The edit that was not saved when the program ended.
    Q_INVOKABLE void restoreEdit();
    Q_INVOKABLE void discardEdit();
    Q_INVOKABLE void dismissEdit();
    // The recording that was not finished then.
    Q_INVOKABLE void recover();
    Q_INVOKABLE void dismissRecovery();

  Q_SIGNALS:
    void alertChanged();
    void questionChanged();

  private:
    app::AppState& m_state;
    app::flows::Flows m_flows;
};

} // namespace vantro::window

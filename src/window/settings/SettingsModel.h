#pragma once

#include "window/settings/SettingsChoice.h"

#include <QColor>

#include <QtQml/qqmlregistration.h>

namespace vantro::ui {
class Preferences;
} // namespace vantro::ui

namespace vantro::window::settings {

/// What recordings begin with, the theme and the language. What is chosen counts at once, the
/// language from the next start on. Main thread.
class SettingsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(vantro::window::settings::SettingsChoice* frameRate READ frameRate CONSTANT)
    Q_PROPERTY(vantro::window::settings::SettingsChoice* countdown READ countdown CONSTANT)
    Q_PROPERTY(vantro::window::settings::SettingsChoice* theme READ theme CONSTANT)
    Q_PROPERTY(vantro::window::settings::SettingsChoice* language READ language CONSTANT)
    Q_PROPERTY(bool languageWaits READ languageWaits NOTIFY changed)
    Q_PROPERTY(QString folder READ folder NOTIFY changed)
    Q_PROPERTY(bool folderIsUsual READ folderIsUsual NOTIFY changed)
    /// Why recordings cannot go where the user wanted them; empty for no reason.
    Q_PROPERTY(QString folderProblem READ folderProblem NOTIFY changed)
    Q_PROPERTY(bool lookIsUsual READ lookIsUsual NOTIFY changed)
    Q_PROPERTY(QString look READ look NOTIFY changed)
    Q_PROPERTY(QColor lookColor READ lookColor NOTIFY changed)
    Q_PROPERTY(QString lookPicture READ lookPicture NOTIFY changed)

  public:
    /// Asks for a folder, beginning with one, and tells which; empty when the user takes it back.
    using ChooseFolder =
        std::function<void(const QString& before, std::function<void(const QString&)>)>;

    /// `preferences` outlive this, and it outlives the panel of `chooseFolder`.
    SettingsModel(ui::Preferences& preferences, ChooseFolder chooseFolder);

    SettingsChoice* frameRate() { return &m_frameRate; }
    SettingsChoice* countdown() { return &m_countdown; }
    SettingsChoice* theme() { return &m_theme; }
    SettingsChoice* language() { return &m_language; }
    bool languageWaits() const { return m_languageWaits; }
    QString folder() const;
    bool folderIsUsual() const;
    const QString& folderProblem() const { return m_folderProblem; }
    bool lookIsUsual() const;
    QString look() const;
    QColor lookColor() const;
    QString lookPicture() const;

    Q_INVOKABLE void chooseFolder();
    Q_INVOKABLE void useUsualFolder();
    Q_INVOKABLE void useUsualLook();

  Q_SIGNALS:
    void changed();

  private:
    void takeFolder(const QString& chosen);

    ui::Preferences& m_preferences;
    const ChooseFolder m_chooseFolder;
    SettingsChoice m_frameRate;
    SettingsChoice m_countdown;
    SettingsChoice m_theme;
    SettingsChoice m_language;
    bool m_languageWaits = false; ///< another one than the window is in
    QString m_folderProblem;
};

} // namespace vantro::window::settings

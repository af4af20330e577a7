#pragma once

#include <QDialog>
#include <functional>

class QComboBox;
class QFormLayout;
class QLabel;
class QPushButton;

namespace vantro::ui {
class Preferences;
} // namespace vantro::ui

namespace vantro::window {

class KeysFromAnywhere;

/// Where everything is chosen that recordings begin with, the keys from anywhere and the language.
/// What is chosen counts at once. A window of its own, since the main one may be smaller. Main
/// thread.
class SettingsSheet : public QDialog {
    Q_OBJECT

  public:
    /// Asks for a folder, beginning with one; empty when the user takes it back.
    using ChooseFolder = std::function<QString(QWidget* parent, const QString& before)>;

    /// The others outlive this.
    SettingsSheet(ui::Preferences& preferences, KeysFromAnywhere& keys,
                  ChooseFolder chooseFolder = withPanel);

    static QString withPanel(QWidget* parent, const QString& before);

  private:
    QComboBox* addChoice(QFormLayout& form, const QString& label, const char* name);
    void addNumbers(QFormLayout& form);
    void addFolder(QFormLayout& form);
    void addLook(QFormLayout& form);
    void addLanguage(QFormLayout& form);
    void chooseFolder();
    void showFolder(const QString& problem);
    void showLook();
    void fit();

    ui::Preferences& m_preferences;
    const ChooseFolder m_chooseFolder;
    QLabel* m_folder = nullptr;
    QPushButton* m_usualFolder = nullptr;
    QLabel* m_folderProblem = nullptr;
    QLabel* m_lookPicture = nullptr;
    QLabel* m_look = nullptr;
    QPushButton* m_usualLook = nullptr;
};

/// Shows the one that there is; it goes when it is closed.
void showSettingsSheet(ui::Preferences& preferences, KeysFromAnywhere& keys);

} // namespace vantro::window

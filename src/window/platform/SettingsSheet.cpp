#include "window/platform/SettingsSheet.h"

#include "app/files/RecordingFolder.h"
#include "ui/Preferences.h"
#include "ui/Sentences.h"
#include "window/platform/KeysSheet.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace vantro::window {
namespace {

constexpr int leastWidth = 460;      // points: a folder's name fits beside its buttons
constexpr QSize lookPicture(48, 27); // points

QString nameOf(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

QPixmap pictureOf(const model::BackgroundType& background) {
    QPixmap picture(lookPicture);
    if (const auto* color = std::get_if<model::BackgroundColor>(&background)) {
        picture.fill(QColor(QString::fromStdString(color->hexString())));
        return picture;
    }
    const auto& source = std::get<model::BackgroundImageSource>(background);
    QImageReader reader(nameOf(source.thumbnail.value_or(source.path)));
    reader.setScaledSize(lookPicture);
    const auto image = reader.read();
    if (image.isNull())
        picture.fill(Qt::transparent);
    return image.isNull() ? picture : QPixmap::fromImage(image);
}

QString textOf(const model::Look& look) {
    const auto* picture = std::get_if<model::BackgroundImageSource>(&look.background.type);
    const auto background =
        picture == nullptr ? QString::fromStdString(
                                 std::get<model::BackgroundColor>(look.background.type).hexString())
                           : QString::fromStdString(picture->name);
    return SettingsSheet::tr("%1, padding %2 %, corners %3 px, canvas %4")
        .arg(background)
        .arg(qRound(look.background.padding * 100))
        .arg(qRound(look.background.cornerRadius))
        .arg(QString::fromStdString(std::string(model::rawValue(look.canvasAspectRatio))));
}

void describe(QWidget& control, const QString& name, const char* objectName) {
    control.setAccessibleName(name);
    control.setObjectName(QLatin1String(objectName));
}

} // namespace

SettingsSheet::SettingsSheet(ui::Preferences& preferences, KeysFromAnywhere& keys,
                             ChooseFolder chooseFolder)
    : m_preferences(preferences), m_chooseFolder(std::move(chooseFolder)) {
    setWindowTitle(tr("Settings"));
    setMinimumWidth(leastWidth);
    auto* page = new QVBoxLayout(this); // Qt's from now on, as all below
    auto* recordings = new QGroupBox(tr("New Recordings"));
    auto* form = new QFormLayout(recordings);
    addNumbers(*form);
    addFolder(*form);
    addLook(*form);
    page->addWidget(recordings);
    auto* keyGroup = new QGroupBox(tr("Keys From Anywhere"));
    (new QVBoxLayout(keyGroup))->addWidget(new KeysSheet(keys));
    page->addWidget(keyGroup);
    auto* others = new QFormLayout;
    addLanguage(*others);
    page->addLayout(others);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    page->addWidget(buttons);
    for (auto* each : findChildren<QPushButton*>())
        each->setAutoDefault(false); // Enter in a field is not for a button
    connect(&m_preferences, &ui::Preferences::recordingDefaultsChanged, this, [this] {
        showFolder({});
        showLook();
    });
    showFolder({});
    showLook();
}

QComboBox* SettingsSheet::addChoice(QFormLayout& form, const QString& label, const char* name) {
    auto* box = new QComboBox;
    describe(*box, label, name);
    form.addRow(label, box);
    return box;
}

void SettingsSheet::addNumbers(QFormLayout& form) {
    auto* rate = addChoice(form, tr("Frame rate"), "frameRate");
    for (const int each : ui::Preferences::frameRates)
        rate->addItem(tr("%1 pictures a second").arg(each), each);
    rate->setCurrentIndex(rate->findData(m_preferences.frameRate()));
    auto* countdown = addChoice(form, tr("Countdown"), "countdown");
    for (const int each : ui::Preferences::countdowns)
        countdown->addItem(each == 0 ? tr("Off") : tr("%1 seconds").arg(each), each);
    countdown->setCurrentIndex(countdown->findData(m_preferences.countdown()));
    connect(rate, &QComboBox::activated, this,
            [this, rate] { m_preferences.setFrameRate(rate->currentData().toInt()); });
    connect(countdown, &QComboBox::activated, this,
            [this, countdown] { m_preferences.setCountdown(countdown->currentData().toInt()); });
}

void SettingsSheet::addFolder(QFormLayout& form) {
    m_folder = new QLabel;
    describe(*m_folder, tr("Folder of recordings"), "folder");
    m_folder->setWordWrap(true);
    m_folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* choose = new QPushButton(tr("Choose…"));
    describe(*choose, tr("Choose the folder of recordings"), "chooseFolder");
    m_usualFolder = new QPushButton(tr("Usual Place"));
    describe(*m_usualFolder, tr("Recordings go to the usual place"), "usualFolder");
    auto* row = new QHBoxLayout;
    row->addWidget(m_folder, 1);
    row->addWidget(choose);
    row->addWidget(m_usualFolder);
    form.addRow(tr("Kept in"), row);
    m_folderProblem = new QLabel;
    m_folderProblem->setObjectName(QStringLiteral("folderProblem"));
    m_folderProblem->setWordWrap(true);
    form.addRow(m_folderProblem);
    connect(choose, &QPushButton::clicked, this, &SettingsSheet::chooseFolder);
    connect(m_usualFolder, &QPushButton::clicked, this,
            [this] { m_preferences.setRecordingsFolder({}); });
}

void SettingsSheet::chooseFolder() {
    const auto before = m_preferences.recordingsFolder();
    const auto chosen = m_chooseFolder(this, before.isEmpty() ? QDir::homePath() : before);
    if (chosen.isEmpty())
        return;
    const auto problem = ui::sentence(app::files::recordingsFolderProblem(chosen.toStdString()));
    if (problem.isEmpty())
        m_preferences.setRecordingsFolder(chosen);
    else
        showFolder(tr("Recordings cannot go to %1.").arg(problem));
}

void SettingsSheet::showFolder(const QString& problem) {
    const auto chosen = m_preferences.recordingsFolder();
    m_folder->setText(chosen.isEmpty() ? nameOf(app::files::recordingsDirectory()) : chosen);
    m_usualFolder->setEnabled(!chosen.isEmpty());
    m_folderProblem->setText(problem);
    m_folderProblem->setVisible(!problem.isEmpty());
    fit();
}

/// Texts that are wrapped need more or less room than before.
void SettingsSheet::fit() {
    layout()->activate();
    const int width = std::max(this->width(), minimumWidth());
    resize(width, layout()->totalHeightForWidth(width));
}

void SettingsSheet::addLook(QFormLayout& form) {
    m_lookPicture = new QLabel;
    m_look = new QLabel;
    describe(*m_look, tr("Look of new recordings"), "look");
    m_look->setWordWrap(true);
    m_usualLook = new QPushButton(tr("Usual Look"));
    describe(*m_usualLook, tr("New recordings have the usual look"), "usualLook");
    auto* row = new QHBoxLayout;
    row->addWidget(m_lookPicture);
    row->addWidget(m_look, 1);
    row->addWidget(m_usualLook);
    form.addRow(tr("Look"), row);
    connect(m_usualLook, &QPushButton::clicked, this, [this] { m_preferences.setLook({}); });
}

void SettingsSheet::showLook() {
    const auto look = m_preferences.look();
    m_lookPicture->setVisible(look.has_value());
    m_usualLook->setEnabled(look.has_value());
    if (look)
        m_lookPicture->setPixmap(pictureOf(look->background.type));
    m_look->setText(
        look ? textOf(*look)
             : tr("As usual. “Use This Look for New Recordings” beside a film changes it."));
    fit();
}

void SettingsSheet::addLanguage(QFormLayout& form) {
    auto* language = addChoice(form, tr("Language"), "language");
    language->addItem(tr("The system's"), QString());
    language->addItem(QStringLiteral("English"), QStringLiteral("en"));
    language->addItem(QStringLiteral("Deutsch"), QStringLiteral("de"));
    language->setCurrentIndex(language->findData(m_preferences.language()));
    auto* note = new QLabel(tr("Vantro speaks it from its next start on."));
    note->setObjectName(QStringLiteral("languageNote"));
    note->setVisible(false);
    form.addRow(note);
    connect(language, &QComboBox::activated, this, [this, language, note] {
        m_preferences.setLanguage(language->currentData().toString());
        note->setVisible(true);
        fit();
    });
}

QString SettingsSheet::withPanel(QWidget* parent, const QString& before) {
    return QFileDialog::getExistingDirectory(parent, tr("Folder of Recordings"), before);
}

void showSettingsSheet(ui::Preferences& preferences, KeysFromAnywhere& keys) {
    static QPointer<SettingsSheet> shown;
    if (shown == nullptr) {
        shown = new SettingsSheet(preferences, keys);
        shown->setAttribute(Qt::WA_DeleteOnClose);
    }
    shown->show();
    shown->raise();
    shown->activateWindow();
}

} // namespace vantro::window

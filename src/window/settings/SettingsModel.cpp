#include "window/settings/SettingsModel.h"

#include "app/files/RecordingFolder.h"
#include "editor/sidebar/PicturePreviews.h"
#include "ui/Preferences.h"
#include "ui/Sentences.h"

#include <QDir>
#include <algorithm>
#include <array>

namespace vantro::window::settings {
namespace {

using ui::Preferences;
using ui::ThemeChoice;

constexpr std::array themes{ThemeChoice::system, ThemeChoice::light, ThemeChoice::dark};
constexpr std::array languages{QLatin1String(""), QLatin1String("en"), QLatin1String("de")};

template <typename Values, typename Value>
int placeOf(const Values& values, const Value& value) {
    return static_cast<int>(
        std::distance(values.begin(), std::find(values.begin(), values.end(), value)));
}

QStringList frameRateNames() {
    QStringList names;
    for (const int each : Preferences::frameRates)
        names << SettingsModel::tr("%1 pictures a second").arg(each);
    return names;
}

QStringList countdownNames() {
    QStringList names;
    for (const int each : Preferences::countdowns)
        names << (each == 0 ? SettingsModel::tr("Off") : SettingsModel::tr("%1 seconds").arg(each));
    return names;
}

QString nameOf(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

const model::BackgroundImageSource* pictureOf(const model::Look& look) {
    return std::get_if<model::BackgroundImageSource>(&look.background.type);
}

} // namespace

SettingsModel::SettingsModel(Preferences& preferences, ChooseFolder chooseFolder)
    : m_preferences(preferences)
    , m_chooseFolder(std::move(chooseFolder))
    , m_frameRate(
          frameRateNames(),
          [this] { return placeOf(Preferences::frameRates, m_preferences.frameRate()); },
          [this](int place) { m_preferences.setFrameRate(Preferences::frameRates.at(place)); })
    , m_countdown(
          countdownNames(),
          [this] { return placeOf(Preferences::countdowns, m_preferences.countdown()); },
          [this](int place) { m_preferences.setCountdown(Preferences::countdowns.at(place)); })
    , m_theme(
          {tr("Follow the Desktop"), tr("Light"), tr("Dark")},
          [this] { return placeOf(themes, m_preferences.theme()); },
          [this](int place) { m_preferences.setTheme(themes.at(place)); })
    , m_language(
          {tr("The system's"), QStringLiteral("English"), QStringLiteral("Deutsch")},
          [this] { return placeOf(languages, m_preferences.language()); },
          [this](int place) {
              m_preferences.setLanguage(languages.at(place));
              m_languageWaits = true;
              Q_EMIT changed();
          }) {
    connect(&preferences, &Preferences::recordingDefaultsChanged, this, [this] {
        m_folderProblem.clear();
        Q_EMIT m_frameRate.changed();
        Q_EMIT m_countdown.changed();
        Q_EMIT changed();
    });
    connect(&preferences, &Preferences::themeChanged, &m_theme, &SettingsChoice::changed);
}

QString SettingsModel::folder() const {
    const auto chosen = m_preferences.recordingsFolder();
    return chosen.isEmpty() ? nameOf(app::files::recordingsDirectory()) : chosen;
}

bool SettingsModel::folderIsUsual() const {
    return m_preferences.recordingsFolder().isEmpty();
}

void SettingsModel::chooseFolder() {
    const auto before = m_preferences.recordingsFolder();
    m_chooseFolder(before.isEmpty() ? QDir::homePath() : before,
                   [this](const QString& chosen) { takeFolder(chosen); });
}

void SettingsModel::takeFolder(const QString& chosen) {
    if (chosen.isEmpty())
        return;
    const auto problem = ui::sentence(app::files::recordingsFolderProblem(chosen.toStdString()));
    m_folderProblem =
        problem.isEmpty() ? QString() : tr("Recordings cannot go to %1.").arg(problem);
    if (problem.isEmpty())
        m_preferences.setRecordingsFolder(chosen);
    Q_EMIT changed();
}

void SettingsModel::useUsualFolder() {
    m_folderProblem.clear();
    m_preferences.setRecordingsFolder({});
    Q_EMIT changed();
}

bool SettingsModel::lookIsUsual() const {
    return !m_preferences.look().has_value();
}

QString SettingsModel::look() const {
    const auto look = m_preferences.look();
    if (!look)
        return tr("As usual. “Use This Look for New Recordings” beside a film changes it.");
    const auto* picture = pictureOf(*look);
    return tr("%1, padding %2 %, corners %3 px, canvas %4")
        .arg(picture != nullptr ? QString::fromStdString(picture->name) : lookColor().name())
        .arg(qRound(look->background.padding * 100))
        .arg(qRound(look->background.cornerRadius))
        .arg(QString::fromStdString(std::string(model::rawValue(look->canvasAspectRatio))));
}

QColor SettingsModel::lookColor() const {
    const auto look = m_preferences.look();
    const auto* color =
        look ? std::get_if<model::BackgroundColor>(&look->background.type) : nullptr;
    return color != nullptr ? QColor(QString::fromStdString(color->hexString())) : QColor();
}

QString SettingsModel::lookPicture() const {
    const auto look = m_preferences.look();
    const auto* picture = look ? pictureOf(*look) : nullptr;
    return picture != nullptr
               ? editor::sidebar::previewSource(picture->thumbnail.value_or(picture->path))
               : QString();
}

void SettingsModel::useUsualLook() {
    m_preferences.setLook({});
}

} // namespace vantro::window::settings

#include "ui/Preferences.h"

#include "ui/KeptLook.h"

#include <QDir>
#include <QStandardPaths>
#include <algorithm>

namespace vantro::ui {
namespace {

namespace fs = std::filesystem;

constexpr qsizetype mostRecentProjects = 8;
const QString themeKey = QStringLiteral("theme");
const QString countdownKey = QStringLiteral("countdown");
const QString frameRateKey = QStringLiteral("frameRate");
const QString recordingsKey = QStringLiteral("recordingsFolder");
const QString lookKey = QStringLiteral("look");
const QString languageKey = QStringLiteral("language");
constexpr int firstCountdown = 3; ///< what "true" meant once
const QString positionKey = QStringLiteral("windowPosition");
const QString editorSizeKey = QStringLiteral("editorSize");
const QString editorMaximizedKey = QStringLiteral("editorMaximized");
const QString globalKeysKey = QStringLiteral("globalKeys/areSetUp");
const QString recentKey = QStringLiteral("recentProjects");

QString globalKeyOf(capture::GlobalAction action) {
    switch (action) {
    case capture::GlobalAction::toggle:
        return QStringLiteral("globalKeys/toggle");
    case capture::GlobalAction::pause:
        return QStringLiteral("globalKeys/pause");
    case capture::GlobalAction::mark:
        break;
    }
    return QStringLiteral("globalKeys/mark");
}

QString folderKey(FolderUse use) {
    switch (use) {
    case FolderUse::films:
        return QStringLiteral("filmFolder");
    case FolderUse::projects:
        return QStringLiteral("projectFolder");
    case FolderUse::pictures:
        break;
    }
    return QStringLiteral("pictureFolder");
}

QString deviceKey(DeviceUse use) {
    return use == DeviceUse::microphone ? QStringLiteral("microphone") : QStringLiteral("camera");
}

QString areaKey(const QString& display) {
    return QStringLiteral("areas/") + QString::fromLatin1(display.toUtf8().toPercentEncoding());
}

/// A choice that somebody has written into the file, if it is one.
template <std::size_t count>
int offered(const std::array<int, count>& choices, const QVariant& value) {
    const auto* found = std::ranges::find(choices, value.toInt());
    return found != choices.end() ? *found : choices.front();
}

QString standardFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/vantro/vantro.ini");
}

} // namespace

Preferences::Preferences(const QString& file)
    : m_settings(file.isEmpty() ? standardFile() : file, QSettings::IniFormat) {}

ThemeChoice Preferences::theme() const {
    const auto name = m_settings.value(themeKey).toString();
    if (name == QStringLiteral("light"))
        return ThemeChoice::light;
    return name == QStringLiteral("dark") ? ThemeChoice::dark : ThemeChoice::system;
}

void Preferences::setTheme(ThemeChoice theme) {
    switch (theme) {
    case ThemeChoice::system:
        m_settings.remove(themeKey);
        break;
    case ThemeChoice::light:
        m_settings.setValue(themeKey, QStringLiteral("light"));
        break;
    case ThemeChoice::dark:
        m_settings.setValue(themeKey, QStringLiteral("dark"));
        break;
    }
    Q_EMIT themeChanged();
}

void Preferences::setRecordingDefault(const QString& key, const QVariant& value, bool isUsual) {
    if (isUsual)
        m_settings.remove(key);
    else
        m_settings.setValue(key, value);
    Q_EMIT recordingDefaultsChanged();
}

int Preferences::countdown() const {
    const auto value = m_settings.value(countdownKey);
    return value.toString() == QStringLiteral("true") ? firstCountdown : offered(countdowns, value);
}

void Preferences::setCountdown(int seconds) {
    setRecordingDefault(countdownKey, seconds, seconds == countdowns.front());
}

int Preferences::frameRate() const {
    return offered(frameRates, m_settings.value(frameRateKey));
}

void Preferences::setFrameRate(int frameRate) {
    setRecordingDefault(frameRateKey, frameRate, frameRate == frameRates.front());
}

QString Preferences::recordingsFolder() const {
    const auto folder = m_settings.value(recordingsKey).toString();
    return QDir::isAbsolutePath(folder) ? folder : QString();
}

void Preferences::setRecordingsFolder(const QString& folder) {
    setRecordingDefault(recordingsKey, folder, folder.isEmpty());
}

fs::path Preferences::pictureFolder() const {
    return fs::path(m_settings.fileName().toStdString()).parent_path() / "backgrounds";
}

std::optional<model::Look> Preferences::look() const {
    if (!m_settings.contains(lookKey))
        return {};
    return lookFrom(m_settings.value(lookKey).toString(), pictureFolder());
}

void Preferences::setLook(std::optional<model::Look> look) {
    const bool isUsual = !look;
    setRecordingDefault(lookKey, isUsual ? QString() : keptLook(*std::move(look), pictureFolder()),
                        isUsual);
}

QString Preferences::language() const {
    const auto language = m_settings.value(languageKey).toString();
    return language == QStringLiteral("en") || language == QStringLiteral("de") ? language
                                                                                : QString();
}

void Preferences::setLanguage(const QString& language) {
    if (language.isEmpty())
        m_settings.remove(languageKey);
    else
        m_settings.setValue(languageKey, language);
}

bool Preferences::hasGlobalKeys() const {
    return m_settings.value(globalKeysKey, false).toBool();
}

std::vector<capture::GlobalKey> Preferences::globalKeys() const {
    auto keys = capture::usualGlobalKeys();
    for (auto& each : keys)
        // Set up before there was one for pauses: nobody has asked for it.
        if (each.action == capture::GlobalAction::pause && hasGlobalKeys())
            each.keys.clear();
    for (auto& each : keys)
        each.keys = m_settings.value(globalKeyOf(each.action), QString::fromStdString(each.keys))
                        .toString()
                        .toStdString();
    return keys;
}

void Preferences::setGlobalKeys(const std::vector<capture::GlobalKey>& keys) {
    for (const auto& each : keys)
        m_settings.setValue(globalKeyOf(each.action), QString::fromStdString(each.keys));
    m_settings.setValue(globalKeysKey, true);
}

void Preferences::forgetGlobalKeys() {
    m_settings.remove(globalKeysKey);
}

std::optional<QPoint> Preferences::windowPosition() const {
    if (!m_settings.contains(positionKey))
        return {};
    return m_settings.value(positionKey).toPoint();
}

void Preferences::setWindowPosition(QPoint position) {
    m_settings.setValue(positionKey, position);
}

std::optional<QSize> Preferences::editorSize() const {
    if (!m_settings.contains(editorSizeKey))
        return {};
    return m_settings.value(editorSizeKey).toSize();
}

void Preferences::setEditorSize(QSize size) {
    m_settings.setValue(editorSizeKey, size);
}

bool Preferences::editorMaximized() const {
    return m_settings.value(editorMaximizedKey, false).toBool();
}

void Preferences::setEditorMaximized(bool maximized) {
    m_settings.setValue(editorMaximizedKey, maximized);
}

QStringList Preferences::recentProjects() const {
    return m_settings.value(recentKey).toStringList();
}

void Preferences::addRecentProject(const QString& path) {
    const auto whole = QDir(path).absolutePath();
    auto paths = recentProjects();
    paths.removeAll(whole);
    paths.prepend(whole);
    m_settings.setValue(recentKey, QStringList(paths.mid(0, mostRecentProjects)));
    Q_EMIT recentProjectsChanged();
}

void Preferences::removeRecentProject(const QString& path) {
    auto paths = recentProjects();
    paths.removeAll(path);
    m_settings.setValue(recentKey, paths);
    Q_EMIT recentProjectsChanged();
}

QString Preferences::folder(FolderUse use) const {
    return m_settings.value(folderKey(use)).toString();
}

void Preferences::setFolder(FolderUse use, const QString& path) {
    m_settings.setValue(folderKey(use), path);
}

std::optional<QRectF> Preferences::lastArea(const QString& display) const {
    if (!m_settings.contains(areaKey(display)))
        return {};
    return m_settings.value(areaKey(display)).toRectF();
}

void Preferences::setLastArea(const QString& display, const QRectF& area) {
    m_settings.setValue(areaKey(display), area);
}

RememberedDevice Preferences::device(DeviceUse use) const {
    return {.name = m_settings.value(deviceKey(use) + QStringLiteral("/name")).toString(),
            .description =
                m_settings.value(deviceKey(use) + QStringLiteral("/description")).toString()};
}

void Preferences::setDevice(DeviceUse use, const RememberedDevice& device) {
    if (device.name.isEmpty()) {
        m_settings.remove(deviceKey(use));
        return;
    }
    m_settings.setValue(deviceKey(use) + QStringLiteral("/name"), device.name);
    m_settings.setValue(deviceKey(use) + QStringLiteral("/description"), device.description);
}

} // namespace vantro::ui

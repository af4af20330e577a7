#pragma once

#include "capture/GlobalKeys.h"
#include "model/Edit.h"

#include <QObject>
#include <QPoint>
#include <QRectF>
#include <QSettings>
#include <QSize>
#include <QStringList>
#include <array>
#include <optional>

namespace vantro::ui {

enum class ThemeChoice { system, light, dark };

/// What a file panel is opened for.
enum class FolderUse { films, projects, pictures };

/// What a device was chosen for.
enum class DeviceUse { microphone, camera };

/// A device that was chosen once, which need not be attached.
struct RememberedDevice {
    QString name;        ///< tells it from others; empty stands for the default one
    QString description; ///< for people
    bool operator==(const RememberedDevice&) const = default;
};

/// What is remembered from one run to the next. Of capture choices only devices and areas are:
/// every start begins with the same mode and switches. Writes reach the disk by themselves. Main
/// thread.
class Preferences : public QObject {
    Q_OBJECT

  public:
    /// Kept in `file`; empty takes the user's configuration folder.
    explicit Preferences(const QString& file = {});

    ThemeChoice theme() const;
    void setTheme(ThemeChoice theme);

    // What recordings begin with. Choices that are not offered count as the first.
    static constexpr std::array countdowns{0, 3, 5, 10};    ///< whole seconds
    static constexpr std::array frameRates{60, 30, 24, 15}; ///< pictures a second at most

    int countdown() const;
    void setCountdown(int seconds);
    int frameRate() const;
    void setFrameRate(int frameRate);
    /// Where they are made; empty for the usual place.
    QString recordingsFolder() const;
    void setRecordingsFolder(const QString& folder);
    /// What they look like; nothing for the usual look. A picture of the user's own is copied
    /// beside the preferences, since its project may go; without it the rest still counts.
    std::optional<model::Look> look() const;
    void setLook(std::optional<model::Look> look);

    /// Of texts, from the next start on: "en", "de"; empty for the system's.
    QString language() const;
    void setLanguage(const QString& language);

    /// Keys that work from anywhere have been set up.
    bool hasGlobalKeys() const;
    /// As they were set up last, else the usual ones.
    std::vector<capture::GlobalKey> globalKeys() const;
    void setGlobalKeys(const std::vector<capture::GlobalKey>& keys);
    /// They are to be set up anew.
    void forgetGlobalKeys();

    /// Where the main window stood.
    std::optional<QPoint> windowPosition() const;
    void setWindowPosition(QPoint position);

    /// The editor's size while it is not maximized.
    std::optional<QSize> editorSize() const;
    void setEditorSize(QSize size);
    bool editorMaximized() const;
    void setEditorMaximized(bool maximized);

    /// Project packages, the latest first, 8 at most; some may be gone.
    QStringList recentProjects() const;
    void addRecentProject(const QString& path);
    void removeRecentProject(const QString& path);

    /// Where a panel was left last; empty where it never was.
    QString folder(FolderUse use) const;
    void setFolder(FolderUse use, const QString& path);

    /// What was recorded last of a display: points from its corner.
    std::optional<QRectF> lastArea(const QString& display) const;
    void setLastArea(const QString& display, const QRectF& area);

    RememberedDevice device(DeviceUse use) const;
    void setDevice(DeviceUse use, const RememberedDevice& device);

  Q_SIGNALS:
    void themeChanged();
    void recordingDefaultsChanged();
    void recentProjectsChanged();

  private:
    std::filesystem::path pictureFolder() const;
    void setRecordingDefault(const QString& key, const QVariant& value, bool isUsual);

    QSettings m_settings;
};

} // namespace vantro::ui

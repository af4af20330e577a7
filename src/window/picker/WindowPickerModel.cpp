#include "window/picker/WindowPickerModel.h"

#include "capture/RecordingTarget.h"
#include "ui/Sentences.h"

#include <algorithm>

namespace vantro::window::picker {
namespace {

using namespace std::chrono_literals;

/// Often enough to seem immediate, rare enough to cost nothing (a listing takes milliseconds).
constexpr auto refreshInterval = 1s;
constexpr double smallestSide = 100; // points

bool sameWindow(const capture::ShareableWindow& a, const capture::ShareableWindow& b) {
    return a.windowID == b.windowID && a.title == b.title &&
           a.applicationName == b.applicationName && a.bundleIdentifier == b.bundleIdentifier &&
           (a.icon == b.icon || (a.icon && b.icon && *a.icon == *b.icon));
}

/// The same only for equal pictures, so that one that is shown is not asked for again. Empty for a
/// window without.
QString iconNameOf(const capture::ShareableWindow& window) {
    if (!window.icon)
        return {};
    const auto& pixels = window.icon->pixels;
    const auto hash = qHashBits(pixels.data(), pixels.size() * sizeof pixels[0]);
    return QStringLiteral("%1x%2").arg(hash, 0, 16).arg(window.icon->width);
}

} // namespace

std::vector<capture::ShareableWindow>
offeredWindows(const std::vector<capture::ShareableWindow>& windows, const std::string& own) {
    std::vector<capture::ShareableWindow> offered;
    std::ranges::copy_if(windows, std::back_inserter(offered), [&own](const auto& window) {
        return window.bundleIdentifier != own && window.frame.width >= smallestSide &&
               window.frame.height >= smallestSide && window.isOnScreen &&
               (!window.title.empty() || !window.applicationName.empty());
    });
    return offered;
}

WindowPickerModel::WindowPickerModel(app::flows::TaskRunner& tasks, app::flows::MainTimers& timers,
                                     Lister lister)
    : m_tasks(tasks), m_timers(timers), m_lister(std::move(lister)) {}

void WindowPickerModel::setShown(bool shown) {
    ++m_request;
    m_asking = false;
    m_refreshTimer.reset();
    m_loading = shown;
    m_loadError.clear();
    setWindows({});
    Q_EMIT statusChanged();
    if (!shown)
        return;
    refresh();
    m_refreshTimer = m_timers.repeat(refreshInterval, [this] { refresh(); });
}

void WindowPickerModel::refresh() {
    if (m_asking)
        return;
    m_asking = true;
    m_tasks.run(
        [this, request = m_request, lister = m_lister]() -> app::flows::TaskRunner::Continuation {
            return [this, request, listing = lister()] { listed(request, listing); };
        });
}

void WindowPickerModel::listed(int request, const Listing& listing) {
    if (request != m_request)
        return;
    m_asking = false;
    m_loading = false;
    m_loadError = listing ? QString() : ui::sentence(listing.error());
    setWindows(listing ? offeredWindows(listing->windows, capture::ownBundleIdentifier)
                       : std::vector<capture::ShareableWindow>());
    Q_EMIT statusChanged();
}

void WindowPickerModel::setWindows(std::vector<capture::ShareableWindow> windows) {
    // Rows are kept as they are, in their order, and changed in place: the stacking order changes
    // with every click elsewhere, titles at any time, and a row may be under a pressed button.
    for (int row = rowCount() - 1; row >= 0; --row) {
        auto& shown = m_windows[static_cast<std::size_t>(row)];
        const auto now =
            std::ranges::find(windows, shown.windowID, &capture::ShareableWindow::windowID);
        if (now == windows.end()) {
            dropRow(row);
            continue;
        }
        const bool changed = !sameWindow(shown, *now);
        shown = std::move(*now);
        windows.erase(now);
        if (changed)
            Q_EMIT dataChanged(index(row), index(row));
    }
    if (windows.empty())
        return;
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(windows.size()) - 1);
    std::ranges::move(windows, std::back_inserter(m_windows));
    endInsertRows();
}

void WindowPickerModel::dropRow(int row) {
    beginRemoveRows({}, row, row);
    m_windows.erase(m_windows.begin() + row);
    endRemoveRows();
}

std::optional<capture::ShareableWindow> WindowPickerModel::window(int row) const {
    if (row < 0 || row >= rowCount())
        return {};
    return m_windows[static_cast<std::size_t>(row)];
}

std::shared_ptr<const capture::WindowIcon> WindowPickerModel::icon(const QString& name) const {
    const auto shown = std::ranges::find(m_windows, name, iconNameOf);
    return shown == m_windows.end() ? nullptr : shown->icon;
}

int WindowPickerModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_windows.size());
}

QVariant WindowPickerModel::data(const QModelIndex& index, int role) const {
    const auto shown = window(index.row());
    if (!shown)
        return {};
    switch (role) {
    case applicationName:
        return shown->applicationName.empty() ? tr("Unknown App")
                                              : QString::fromStdString(shown->applicationName);
    case title:
        return QString::fromStdString(shown->title);
    case bundleIdentifier:
        return QString::fromStdString(shown->bundleIdentifier);
    case iconName:
        return iconNameOf(*shown);
    default:
        return {};
    }
}

QHash<int, QByteArray> WindowPickerModel::roleNames() const {
    return {{applicationName, "applicationName"},
            {title, "title"},
            {bundleIdentifier, "bundleIdentifier"},
            {iconName, "iconName"}};
}

} // namespace vantro::window::picker

#include "window/WindowFixture.h"

#include "media/values/PixelBuffer.h"

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <algorithm>

namespace vantro::test {
namespace {

/// A picture with bands of colour, so that scaling and cutting off would show.
std::shared_ptr<const media::PixelBuffer> testPicture() {
    constexpr int width = 640;
    constexpr int height = 360;
    auto picture = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            auto* pixel = picture->mutableRow(0, y) + 4 * x;
            pixel[0] = static_cast<std::uint8_t>(60 + 120 * y / height);
            pixel[1] = static_cast<std::uint8_t>(90 + 80 * x / width);
            pixel[2] = 40;
            pixel[3] = 255;
        }
    return picture;
}

QQuickItem* findItem(QQuickItem* root, const QString& name) {
    if (root->objectName() == name && root->isVisible())
        return root;
    for (auto* child : root->childItems())
        if (auto* found = findItem(child, name))
            return found;
    return nullptr;
}

} // namespace

WindowFixture::WindowFixture() {
    permission.startPolling();
    preferences.setTheme(ui::ThemeChoice::light);
}

editor::OpenStills WindowFixture::openStills() {
    return [this](const model::Recording&) {
        return [this](const model::Edit&, double seconds) -> editor::Still {
            if (!previewProblem.empty())
                throw std::runtime_error(previewProblem);
            drawnPositions.push_back(std::min(seconds, previewDuration));
            return {previewDuration, testPicture()};
        };
    };
}

void WindowFixture::showWindow() {
    m_window = std::make_unique<window::MainWindow>(
        window::MainWindowModels{app, editor, windows, displays, guard, appearance});
    window().show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    settle();
}

void WindowFixture::settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

void WindowFixture::runTasks() {
    settle();
    tasks.runAll();
    settle();
}

QQuickItem& WindowFixture::item(const char* name) {
    auto* found = findItem(window().contentItem(), QString::fromLatin1(name));
    if (found == nullptr)
        throw std::logic_error(std::string("nothing visible is named ") + name);
    return *found;
}

bool WindowFixture::shows(const char* name) {
    return findItem(window().contentItem(), QString::fromLatin1(name)) != nullptr;
}

QString WindowFixture::text(const char* name) {
    return item(name).property("text").toString();
}

void WindowFixture::click(const char* name) {
    auto& target = item(name);
    const auto middle = target.mapToScene({target.width() / 2, target.height() / 2}).toPoint();
    QTest::mouseMove(&window(), middle);
    QTest::mouseClick(&window(), Qt::LeftButton, {}, middle);
    settle();
}

QColor WindowFixture::themeColor(const char* name) {
    QQmlComponent asking(qmlEngine(&window()));
    asking.setData(
        QByteArray("import Vantro\nimport QtQuick\nItem { property color asked: Theme.") + name +
            " }",
        QUrl());
    return std::unique_ptr<QObject>(asking.create())->property("asked").value<QColor>();
}

void WindowFixture::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&window(), key, modifiers);
    settle();
}

void WindowFixture::record(model::CaptureMode mode) {
    state.setCaptureMode(mode);
    recording.beginCapture();
    runTasks();
}

void WindowFixture::showEditor() {
    model::RecordingMetadata metadata;
    metadata.endTime = 20;
    state.show({"demo", model::Recording("/nowhere/recording.mov", metadata), {}});
    runTasks();
}

void WindowFixture::keepPicture(const QString& name) {
    const QDir folder(QStringLiteral(VANTRO_SCREENSHOTS));
    folder.mkpath(QStringLiteral("."));
    settle();
    ASSERT_TRUE(window().grabWindow().save(folder.filePath(name + QStringLiteral(".png"))));
}

} // namespace vantro::test

#include "window/WindowFixture.h"

#include "render/RendererFactory.h"

#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QQmlComponent>
#include <QQmlEngine>
#include <algorithm>
namespace vantro::test {
namespace {

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

std::unique_ptr<render::MovieSession> WindowFixture::openMovie(const model::Recording& shown,
                                                               const model::Edit& edit) const {
    if (!previewProblem.empty())
        throw std::runtime_error(previewProblem);
    return std::make_unique<render::MovieSession>(
        shown, edit, render::makeRenderer(render::RendererChoice::software),
        render::TimeLine::source);
}

/// A meter that reads what the test wants.
class WindowFixture::Meter : public capture::SoundMeter {
  public:
    Meter(WindowFixture& fixture, capture::SoundKind kind, std::string name)
        : m_fixture(fixture), m_kind(kind), m_name(std::move(name)) {
        m_fixture.metered.push_back(m_name);
    }
    ~Meter() override { std::erase(m_fixture.metered, m_name); }
    std::optional<Reading> reading() const override { return m_fixture.readings[m_kind]; }

  private:
    WindowFixture& m_fixture;
    capture::SoundKind m_kind;
    std::string m_name;
};

std::unique_ptr<capture::SoundMeter> WindowFixture::makeMeter(capture::SoundKind kind,
                                                              const std::string& device) {
    return std::make_unique<Meter>(
        *this, kind, kind == capture::SoundKind::system ? "system" : "microphone " + device);
}

void WindowFixture::showWindow() {
    m_window = std::make_unique<window::MainWindow>(window::MainWindowModels{
        app, editor, actions, windows, displays, guard, appearance, recordings, recents, meters,
        microphones, cameras, camera, recovery, recording});
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
    window().grabWindow(); // what has appeared finds its place when the window is drawn
    auto& target = item(name);
    const auto middle = target.mapToScene({target.width() / 2, target.height() / 2}).toPoint();
    QTest::mouseMove(&window(), middle - QPoint(1, 1)); // a pointer that stands there does not move
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
    recording.preparation().begin();
    runTasks();
}

void WindowFixture::showEditor(const model::Edit& edit, const model::RecordingMetadata& metadata) {
    const std::filesystem::path movie = files.filePath(QStringLiteral("shown.mov")).toStdString();
    if (!std::filesystem::exists(movie))
        writeColorClock(movie, 320, 180, 10, 4);
    auto project = plainProject(movie, 10, metadata);
    auto shown = edit;
    shown.background = project.edit.background;
    state.show({"demo", project.recording, std::move(shown)});
    runTasks();
}

Rgb rgbOf(const QColor& color) {
    return {color.red(), color.green(), color.blue()};
}

QColor WindowFixture::colorAt(QQuickItem& shown, double x, double y) {
    const auto place = shown.mapToScene({shown.width() * x, shown.height() * y});
    const auto shot = window().grabWindow();
    return shot.pixelColor((place * shot.devicePixelRatio()).toPoint());
}

bool WindowFixture::stageBecomes(Rgb color) {
    return QTest::qWaitFor([&] { return distance(rgbOf(colorAt(item("stage"))), color) < 8; });
}

bool WindowFixture::drop(QPoint place, const std::vector<std::filesystem::path>& dropped) {
    QMimeData data;
    QList<QUrl> urls;
    for (const auto& file : dropped)
        urls.append(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    data.setUrls(urls);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window(), &enter);
    settle();
    isFrameShown = shows("dropFrame");
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&window(),
                                enter.isAccepted() ? static_cast<QEvent*>(&event) : &leave);
    runTasks();
    return enter.isAccepted();
}

void WindowFixture::keepPicture(const QString& name) {
    settle();
    test::keepPicture(window().grabWindow(), name);
}

void keepPicture(const QImage& picture, const QString& name) {
    const QDir folder(qEnvironmentVariable("VANTRO_PICTURES", QStringLiteral(VANTRO_SCREENSHOTS)));
    folder.mkpath(QStringLiteral("."));
    ASSERT_TRUE(picture.save(folder.filePath(name + QStringLiteral(".png"))));
}

} // namespace vantro::test

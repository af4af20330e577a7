#include "window/DesktopSession.h"

#include "support/Eventually.h"

#include <QDir>
#include <QRegularExpression>
#include <ranges>
#include <stdexcept>

#include <gtest/gtest.h>

namespace vantro::test {
namespace {

constexpr int longestWait = 20'000;                         // ms; the machine may be busy
const QString mainTitle = QStringLiteral("(.* — )?Vantro"); // the editor tells the name as well

} // namespace

DesktopSession::DesktopSession(int textResolution) : m_server({.width = 1280, .height = 900}) {
    setRootProperty(m_server, "RESOURCE_MANAGER", "Xft.dpi:\t" + std::to_string(textResolution));
    startOther(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    const bool managed = eventually([this] {
        return xdoOutput({QStringLiteral("get_desktop")}).value(0) == QStringLiteral("0");
    });
    if (!managed)
        throw std::runtime_error("openbox does not start");
}

DesktopSession::~DesktopSession() {
    if (testing::Test::HasFailure())
        picture(QStringLiteral("failure"));
    m_others.push_back(std::move(m_program));
    for (const auto& process : std::views::reverse(m_others)) // the window manager last
        if (process) {
            process->kill();
            process->waitForFinished();
        }
}

QImage DesktopSession::picture(const QString& name) const {
    QDir().mkpath(QStringLiteral(VANTRO_SCREENSHOTS));
    const auto file = QStringLiteral(VANTRO_SCREENSHOTS "/%1.png").arg(name);
    outputOf(QStringLiteral("ffmpeg"),
             {"-y", "-f", "x11grab", "-video_size", "1280x900", "-i",
              QString::fromStdString(m_server.display()), "-frames:v", "1", file});
    return QImage(file);
}

QProcessEnvironment DesktopSession::environment() const {
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto* name : {"WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "QT_QPA_PLATFORM",
                             "XDG_CONFIG_HOME", "XDG_STATE_HOME"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("DISPLAY"), QString::fromStdString(m_server.display()));
    environment.insert(QStringLiteral("HOME"), m_home.path());
    environment.insert(QStringLiteral("TMPDIR"), m_home.path());
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    for (const auto& [name, value] : m_variables.asKeyValueRange())
        environment.insert(name, value);
    return environment;
}

void DesktopSession::setVariable(const QString& name, const QString& value) {
    m_variables.insert(name, value);
}

std::unique_ptr<QProcess> DesktopSession::started(const QString& program,
                                                  const QStringList& arguments) const {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment());
    process->start(program, arguments);
    if (!process->waitForStarted(longestWait))
        throw std::runtime_error(program.toStdString() + " does not start");
    return process;
}

void DesktopSession::startProgram(const QStringList& arguments) {
    m_program = started(QStringLiteral(VANTRO_PROGRAM), arguments);
}

void DesktopSession::startOther(const QString& program, const QStringList& arguments) {
    m_others.push_back(started(program, arguments));
}

QString DesktopSession::outputOf(const QString& program, const QStringList& arguments) const {
    const auto process = started(program, arguments);
    process->waitForFinished(longestWait);
    return process->exitCode() == 0 ? QString::fromUtf8(process->readAllStandardOutput())
                                    : QString();
}

QStringList DesktopSession::xdoOutput(const QStringList& arguments) const {
    return outputOf(QStringLiteral("xdotool"), arguments).split(u'\n', Qt::SkipEmptyParts);
}

void DesktopSession::xdo(const QStringList& arguments) const {
    xdoOutput(arguments);
}

QRect DesktopSession::window(const QString& title) const {
    const auto found = xdoOutput({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), u'^' + title + u'$'});
    if (found.isEmpty())
        return {};
    const auto text = outputOf(QStringLiteral("xwininfo"), {QStringLiteral("-id"), found.back()});
    const auto number = [&text](const QString& label) {
        return QRegularExpression(label + QStringLiteral(":\\s+(-?\\d+)"))
            .match(text)
            .captured(1)
            .toInt();
    };
    return {number(QStringLiteral("Absolute upper-left X")),
            number(QStringLiteral("Absolute upper-left Y")), number(QStringLiteral("Width")),
            number(QStringLiteral("Height"))};
}

QRect DesktopSession::mainWindow() const {
    return window(mainTitle);
}

bool DesktopSession::mainWindowBecomes(QSize size) const {
    return eventually([this, size] { return mainWindow().size() == size; });
}

void DesktopSession::clickMain(int x, int y) {
    const auto at = mainWindow().topLeft() + QPoint(x, y);
    xdo({QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
         QStringLiteral("click"), QStringLiteral("1")});
}

} // namespace vantro::test

#include "window/DesktopSession.h"

#include "support/Eventually.h"

#include <QDir>
#include <QRegularExpression>
#include <stdexcept>

#include <gtest/gtest.h>

namespace vantro::test {
namespace {

constexpr int longestWait = 20'000; // ms; the machine may be busy
const QString mainTitle = QStringLiteral("Vantro");

} // namespace

DesktopSession::DesktopSession(int textResolution) : m_server({.width = 1280, .height = 900}) {
    setRootProperty(m_server, "RESOURCE_MANAGER", "Xft.dpi:\t" + std::to_string(textResolution));
    m_windowManager = std::make_unique<QProcess>();
    m_windowManager->setProcessEnvironment(environment());
    m_windowManager->start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    const bool managed = eventually([this] {
        return xdoOutput({QStringLiteral("get_desktop")}).value(0) == QStringLiteral("0");
    });
    if (!managed)
        throw std::runtime_error("openbox does not start");
}

DesktopSession::~DesktopSession() {
    if (testing::Test::HasFailure())
        picture(QStringLiteral("failure"));
    for (auto* process : {m_program.get(), m_other.get(), m_windowManager.get()})
        if (process != nullptr) {
            process->kill();
            process->waitForFinished();
        }
}

QImage DesktopSession::picture(const QString& name) const {
    QDir().mkpath(QStringLiteral(VANTRO_SCREENSHOTS));
    QProcess grabber;
    grabber.setProcessEnvironment(environment());
    grabber.start(QStringLiteral("ffmpeg"),
                  {"-y", "-f", "x11grab", "-video_size", "1280x900", "-i",
                   QString::fromStdString(m_server.display()), "-frames:v", "1",
                   QStringLiteral(VANTRO_SCREENSHOTS "/%1.png").arg(name)});
    grabber.waitForFinished(longestWait);
    return QImage(QStringLiteral(VANTRO_SCREENSHOTS "/%1.png").arg(name));
}

QProcessEnvironment DesktopSession::environment() const {
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto* name : {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_CONFIG_HOME"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("DISPLAY"), QString::fromStdString(m_server.display()));
    environment.insert(QStringLiteral("HOME"), m_home.path());
    environment.insert(QStringLiteral("TMPDIR"), m_home.path());
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    return environment;
}

void DesktopSession::startProgram(const QStringList& arguments) {
    m_program = std::make_unique<QProcess>();
    m_program->setProcessEnvironment(environment());
    m_program->start(QStringLiteral(VANTRO_PROGRAM), arguments);
    if (!m_program->waitForStarted(longestWait))
        throw std::runtime_error("the program does not start");
}

void DesktopSession::startOther(const QString& program, const QStringList& arguments) {
    m_other = std::make_unique<QProcess>();
    m_other->setProcessEnvironment(environment());
    m_other->start(program, arguments);
    if (!m_other->waitForStarted(longestWait))
        throw std::runtime_error(program.toStdString() + " does not start");
}

QStringList DesktopSession::xdoOutput(const QStringList& arguments) const {
    QProcess xdotool;
    xdotool.setProcessEnvironment(environment());
    xdotool.start(QStringLiteral("xdotool"), arguments);
    xdotool.waitForFinished(longestWait);
    if (xdotool.exitCode() != 0)
        return {};
    return QString::fromUtf8(xdotool.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

void DesktopSession::xdo(const QStringList& arguments) const {
    xdoOutput(arguments);
}

QRect DesktopSession::window(const QString& title) const {
    const auto found = xdoOutput({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), u'^' + title + u'$'});
    if (found.isEmpty())
        return {};
    QProcess information;
    information.setProcessEnvironment(environment());
    information.start(QStringLiteral("xwininfo"), {QStringLiteral("-id"), found.back()});
    information.waitForFinished(longestWait);
    const auto text = QString::fromUtf8(information.readAllStandardOutput());
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

bool DesktopSession::mainWindowBecomes(QSize size) const {
    return eventually([this, size] { return window(mainTitle).size() == size; });
}

void DesktopSession::clickMain(int x, int y) {
    const auto at = window(mainTitle).topLeft() + QPoint(x, y);
    xdo({QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
         QStringLiteral("click"), QStringLiteral("1")});
}

} // namespace vantro::test

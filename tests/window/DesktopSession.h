#pragma once

#include "support/XServer.h"

#include <QImage>
#include <QMap>
#include <QProcess>
#include <QRect>
#include <QTemporaryDir>
#include <memory>

namespace vantro::test {

/// A private desktop (X server and window manager) with the real program on it, in a home of its
/// own, and a hand for its pointer and keyboard.
class DesktopSession {
  public:
    /// `textResolution` is what the desktop tells about its scaling; 96 is no scaling.
    explicit DesktopSession(int textResolution = 96);
    ~DesktopSession();

    void startProgram(const QStringList& arguments = {});
    /// Another program on the desktop, which ends with it.
    void startOther(const QString& program, const QStringList& arguments);
    QProcess& program() { return *m_program; }
    const XServer& server() const { return m_server; }
    std::filesystem::path home() const { return m_home.path().toStdString(); }
    std::filesystem::path recordings() const { return home() / "Vantro"; }

    /// Where the visible window of that exact title stands, without its frame; null without one.
    QRect window(const QString& title) const;
    QRect mainWindow() const;
    /// Waits for the main window to have this size, in pixels.
    bool mainWindowBecomes(QSize size) const;
    /// A click into the main window, in pixels from its corner.
    void clickMain(int x, int y);
    /// For example {"mousemove", "10", "20", "click", "1"}.
    void xdo(const QStringList& arguments) const;
    /// The lines that it answers; none when it fails.
    QStringList xdoOutput(const QStringList& arguments) const;

    /// Of programs that are started on it; `name` is `value` for those that start from now on.
    QProcessEnvironment environment() const;
    void setVariable(const QString& name, const QString& value);

    /// What the desktop shows; kept as NAME.png in the folder for people to look at.
    QImage picture(const QString& name) const;

  private:
    std::unique_ptr<QProcess> started(const QString& program, const QStringList& arguments) const;
    /// What it prints until it ends; nothing when it fails.
    QString outputOf(const QString& program, const QStringList& arguments) const;

    QTemporaryDir m_home;
    XServer m_server;
    QMap<QString, QString> m_variables;
    std::vector<std::unique_ptr<QProcess>> m_others;
    std::unique_ptr<QProcess> m_program;
};

} // namespace vantro::test

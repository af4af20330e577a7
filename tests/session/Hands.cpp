#include "session/Hands.h"

#include "support/Eventually.h"

#include <cmath>
#include <stdexcept>

namespace vantro::test {
namespace {

const QString slider = QStringLiteral("slider");

QRegularExpression whole(const QString& name) {
    return QRegularExpression(QRegularExpression::anchoredPattern(name));
}

QStringList place(QPoint at) {
    return {QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y())};
}

} // namespace

Accessible Hand::find(const QString& role, const QString& name, const QString& dialog) const {
    const auto look = [&] {
        return dialog.isEmpty()
                   ? m_bus.find(role, whole(name))
                   : m_bus.find(QStringLiteral("dialog"), whole(dialog)).find(role, whole(name));
    };
    Accessible found;
    if (!eventually([&] { return bool(found = look()); }))
        throw std::runtime_error("there is no " + role.toStdString() + " \"" + name.toStdString() +
                                 "\" in\n" + m_bus.everything());
    return found;
}

void Hand::chooseFile(const QString& panel, const std::filesystem::path& file) {
    find(QStringLiteral("dialog"), panel);
    const auto shown = [&] { return !m_desktop.window(panel).isNull(); };
    if (!eventually(shown))
        throw std::runtime_error("there is no window " + panel.toStdString());
    keys(QStringLiteral("ctrl+a"));
    m_desktop.xdo({QStringLiteral("type"), QString::fromStdString(file.string())});
    keys(QStringLiteral("Return"));
    if (!eventually([&] { return !shown(); }))
        throw std::runtime_error("it does not take " + file.string());
}

void PointerHand::drag(QPoint from, QPoint to) {
    m_desktop.xdo(place(from));
    m_desktop.xdo({QStringLiteral("mousedown"), QStringLiteral("1")});
    for (const int part : {1, 2, 3, 4})
        m_desktop.xdo(place(from + (to - from) * part / 4));
    m_desktop.xdo({QStringLiteral("mouseup"), QStringLiteral("1")});
}

void PointerHand::scrollTo(const Accessible& control) {
    const auto settings = m_bus.find(QStringLiteral("panel"), whole(QStringLiteral("Settings")));
    const auto sidebar = settings.place();
    if (sidebar.contains(control.place()) ||
        settings.find(control.role(), whole(control.name())) != control)
        return;
    m_desktop.xdo(place(sidebar.center()));
    const bool seen = eventually([&] {
        const auto before = control.place();
        m_desktop.xdo({QStringLiteral("click"), QStringLiteral("5")});
        eventually([&] { return control.place() != before; });
        return sidebar.contains(control.place());
    });
    if (!seen)
        throw std::runtime_error("the settings do not scroll to " + control.name().toStdString());
}

void PointerHand::pressIt(const Accessible& control) {
    scrollTo(control);
    const auto reach = [&] { // a window that has just come may be on its way to its place
        const auto seen = control.place();
        m_desktop.xdo(place(seen.center()));
        return m_desktop.mainWindow().contains(seen) && control.place() == seen;
    };
    if (!eventually(reach))
        throw std::runtime_error(control.name().toStdString() + " does not come to rest");
    m_desktop.xdo({QStringLiteral("click"), QStringLiteral("1")});
}

int PointerHand::pixels(double seconds) const {
    const auto duration = find(slider, QStringLiteral("Playhead")).largest();
    const auto width = find(QStringLiteral("panel"), QStringLiteral("Ruler")).place().width();
    return static_cast<int>(std::lround(seconds / duration * width));
}

void PointerHand::moveTo(const QString& name, double seconds) {
    moveBy(name, seconds - find(slider, name).value());
}

void PointerHand::moveBy(const QString& name, double seconds) {
    const auto from = find(slider, name).place().center();
    drag(from, from + QPoint(pixels(seconds), 0));
}

void PointerHand::markRange(double from, double to) {
    const auto segments = find(QStringLiteral("list"), QStringLiteral("Segments")).place();
    const QPoint start(segments.left(), segments.center().y());
    m_desktop.xdo({QStringLiteral("keydown"), QStringLiteral("shift")});
    drag(start + QPoint(pixels(from), 0), start + QPoint(pixels(to), 0));
    m_desktop.xdo({QStringLiteral("keyup"), QStringLiteral("shift")});
}

void ReaderHand::pressIt(const Accessible& control) {
    if (!control.act(QStringLiteral("Press")))
        throw std::runtime_error("no screen reader can press the " + control.role().toStdString() +
                                 " \"" + control.name().toStdString() + '"');
}

void ReaderHand::moveTo(const QString& name, double seconds) {
    const auto control = find(slider, name);
    control.setValue(seconds);
    if (!eventually([&] { return std::abs(control.value() - seconds) < 0.05; }))
        throw std::runtime_error(name.toStdString() + " does not go where it is set");
}

void ReaderHand::moveBy(const QString& name, double seconds) {
    const auto control = find(slider, name);
    control.focus();
    if (!eventually([&] { return control.isFocused(); }))
        throw std::runtime_error("the keyboard does not come to " + name.toStdString());
    const auto* key = seconds < 0 ? "Left" : "Right";
    for (long step = std::lround(std::abs(seconds) / 0.1); step > 0; --step)
        keys(QString::fromLatin1(key));
}

void ReaderHand::markRange(double from, double to) {
    moveTo(QStringLiteral("Playhead"), from);
    keys(QStringLiteral("i"));
    moveTo(QStringLiteral("Playhead"), to);
    keys(QStringLiteral("o"));
}

} // namespace vantro::test

#include "app/state/AppState.h"
#include "window/ScriptedDesktop.h"
#include "window/platform/IdleInhibitor.h"

#include <QDBusObjectPath>

#include <gtest/gtest.h>

namespace vantro::window {
namespace {

struct Desktop {
    const char* name;
    const char* service;
    QVariant handle;
    const char* release;
};

class IdleInhibitorTest : public testing::TestWithParam<Desktop> {
  protected:
    IdleInhibitorTest() { desktop.serve(GetParam().service); }
    /// What was given back, by its number or path.
    bool isReleased() {
        const auto release = desktop.calls.take(QString::fromLatin1(GetParam().release));
        return release.path() == GetParam().handle.value<QDBusObjectPath>().path() ||
               release.arguments().value(0) == GetParam().handle;
    }

    test::ScriptedDesktop desktop;
    app::AppState state{1};
    IdleInhibitor inhibitor{state, desktop.program()};
};

TEST_P(IdleInhibitorTest, KeepsTheScreenAwakeForAsLongAsARecordingRuns) {
    for (const bool isGrantedLate : {false, true}) {
        desktop.calls.clear();
        state.setPhase(app::AppPhase::recording());
        ASSERT_TRUE(desktop.isCalled("Inhibit"));
        if (isGrantedLate)
            state.setPhase(app::AppPhase::idle());
        desktop.answer("Inhibit", {GetParam().handle});
        desktop.settle();
        state.setPhase(app::AppPhase::idle());
        ASSERT_TRUE(desktop.isCalled(GetParam().release));
        EXPECT_TRUE(isReleased());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Desktops, IdleInhibitorTest,
    testing::Values(Desktop{"ScreenSaver", "org.freedesktop.ScreenSaver", 4711U, "UnInhibit"},
                    Desktop{"Portal", "org.freedesktop.portal.Desktop",
                            QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request/1"))),
                            "Close"}),
    [](const auto& desktop) { return desktop.param.name; });

} // namespace
} // namespace vantro::window

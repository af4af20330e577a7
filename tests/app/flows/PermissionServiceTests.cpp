#include "app/flows/PermissionService.h"
#include "app/flows/QtMainLoop.h"
#include "app/flows/ScriptedServices.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <thread>

#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

using namespace std::chrono_literals;

TEST(PermissionService, AsksEveryTwoSecondsAndTellsOnlyOfChanges) {
    test::ManualTimers timers;
    bool granted = false;
    int asked = 0;
    int changes = 0;
    PermissionService service(timers, [&] {
        ++asked;
        return granted;
    });
    QObject::connect(&service, &PermissionService::screenRecordingGrantedChanged,
                     [&] { ++changes; });
    service.startPolling();
    timers.advance(2s);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(changes, 0);
    granted = true;
    timers.advance(1s);
    EXPECT_FALSE(service.screenRecordingGranted());
    timers.advance(1s);
    EXPECT_TRUE(service.screenRecordingGranted());
    timers.advance(2s);
    EXPECT_EQ(changes, 1);
    granted = false;
    timers.advance(2s);
    EXPECT_FALSE(service.screenRecordingGranted());
    service.stopPolling();
    timers.advance(10s);
    EXPECT_EQ(asked, 5);
}

TEST(QtTaskRunner, WorksOnAThreadOfItsOwnAndComesBackToTheMainThread) {
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    QtTaskRunner tasks("com.vantro.test");
    const auto main = std::this_thread::get_id();
    std::thread::id worker;
    std::thread::id back;
    QEventLoop loop;
    tasks.run([&]() -> TaskRunner::Continuation {
        worker = std::this_thread::get_id();
        return [&] {
            back = std::this_thread::get_id();
            loop.quit();
        };
    });
    loop.exec();
    EXPECT_NE(worker, main);
    EXPECT_EQ(back, main);
}

TEST(QtTaskRunner, FinishesItsWorkAndDropsWhatWouldFollowWhenItGoes) {
    int argc = 0;
    QCoreApplication application(argc, nullptr);
    bool worked = false;
    bool cameBack = false;
    {
        QtTaskRunner tasks("com.vantro.test");
        tasks.run([&]() -> TaskRunner::Continuation {
            worked = true;
            return [&] { cameBack = true; };
        });
    }
    QCoreApplication::processEvents();
    EXPECT_TRUE(worked);
    EXPECT_FALSE(cameBack);
}

} // namespace
} // namespace vantro::app::flows

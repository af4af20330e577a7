#include "app/flows/QtMainLoop.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

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

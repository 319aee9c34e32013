#include "client/multi_threaded_future.h"

#include <QString>
#include <QVariant>

#include <gtest/gtest.h>

#include <thread>

using namespace std::chrono_literals;

TEST(MultiThreadedFuture, AValueFromAnotherThreadEndsTheWaitAndExpiryGivesTheDefault)
{
    CefRefPtr<Future<QString>> future = new MultiThreadedFuture<QString>();
    std::thread fulfiller([future] {
        std::this_thread::sleep_for(50ms);
        future->set(QStringLiteral("page"));
    });
    EXPECT_EQ(future->get(10000ms), QStringLiteral("page"));
    fulfiller.join();

    CefRefPtr<Future<QVariant>> expired = new MultiThreadedFuture<QVariant>();
    EXPECT_FALSE(expired->get(0ms).isValid());
    // A late value is stored for nobody; asking again is an error, also after expiry.
    expired->set(QVariant(1));
    EXPECT_THROW(expired->set(QVariant(2)), std::future_error);
    EXPECT_THROW(expired->get(100ms), std::future_error);

    CefRefPtr<Future<bool>> ready = new MultiThreadedFuture<bool>();
    ready->set(true);
    EXPECT_TRUE(ready->get(0ms));

    CefRefPtr<Future<bool>> unanswered = new MultiThreadedFuture<bool>();
    EXPECT_FALSE(unanswered->get(100ms));
}

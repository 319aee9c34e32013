// The handlers are QObjects and the render handler works on widgets: the tests run a
// QApplication on the offscreen platform. Scenarios that start the engine run in fresh
// processes of their own.

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}

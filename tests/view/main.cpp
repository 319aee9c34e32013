#include <QApplication>

#include <gtest/gtest.h>

// Views need a QApplication; scenarios that need their own engine settings run as death-test
// children, each a fresh process re-executing this program.
int main(int argc, char** argv)
{
    // A test that needs a window system runs its scenario in a child on another platform.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}

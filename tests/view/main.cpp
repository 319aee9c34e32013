#include <QApplication>

#include <gtest/gtest.h>

#include "support/frame_source_argument.h"

// Views need a QApplication; scenarios that need their own engine settings run as death-test
// children, each a fresh process re-executing this program.
int main(int argc, char** argv)
{
    takeFrameSourceArgument(argc, argv);
    // A child that needs a window system is told which platform to use.
    const QByteArray platform = qgetenv("BROVIA_TEST_QPA");
    qputenv("QT_QPA_PLATFORM", platform.isEmpty() ? QByteArray("offscreen") : platform);
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}

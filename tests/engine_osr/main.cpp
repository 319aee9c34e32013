#include <QCoreApplication>

#include <gtest/gtest.h>

#include "support/frame_source_argument.h"

// Qt takes the first thread that makes a QObject for its main thread; the decoder threads must not
// be that one.
int main(int argc, char** argv)
{
    takeFrameSourceArgument(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}

#include <QCoreApplication>

#include <gtest/gtest.h>

// Qt takes the first thread that makes a QObject for its main thread; the decoder threads must not
// be that one.
int main(int argc, char** argv)
{
    // CTest runs these tests once with each frame source.
    for (int i = 1; i < argc; ++i)
    {
        const QByteArray arg(argv[i]);
        if (arg.startsWith("--brovia-frame-source="))
            qputenv("BROVIA_FRAME_SOURCE", arg.mid(int(sizeof("--brovia-frame-source=")) - 1));
    }
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}

#include "support/frame_source_argument.h"

#include <QByteArray>

void takeFrameSourceArgument(int argc, char** argv)
{
    static const QByteArray option("--brovia-frame-source=");
    for (int i = 1; i < argc; ++i)
    {
        const QByteArray arg(argv[i]);
        if (arg.startsWith(option))
            qputenv("BROVIA_FRAME_SOURCE", arg.mid(option.size()));
    }
}

#include "app/demo_window.h"
#include "app/screenshot_taker.h"
#include "engine/global_service.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QUrl>

#include <cstdio>

int main(int argc, char** argv)
{
    // Without a display the demo still runs, on Qt's offscreen platform.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("brovia-demo"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A web page in a Qt widget."));
    parser.addHelpOption();
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Save a picture of the window once the page is painted, then exit."),
                                        QStringLiteral("file"));
    const QCommandLineOption timeout(QStringLiteral("timeout"),
                                     QStringLiteral("Milliseconds to wait for the screenshot (default 30000)."),
                                     QStringLiteral("ms"), QStringLiteral("30000"));
    parser.addOption(screenshot);
    parser.addOption(timeout);
    parser.addPositionalArgument(QStringLiteral("url"), QStringLiteral("The page to open instead of the demo page."));
    parser.process(app);

    QCefGlobalSettings settings;
    QCefGlobalService::initialize(settings);
    QCefGlobalService::startup();
    if (!QCefGlobalService::s_started)
    {
        std::fprintf(stderr, "brovia-demo: the web engine did not start (is chromium-headless-shell installed?)\n");
        return 1;
    }

    DemoWindow window;
    if (parser.isSet(screenshot))
        new ScreenshotTaker(&window, parser.value(screenshot), parser.value(timeout).toInt());
    window.show();

    const QStringList urls = parser.positionalArguments();
    if (urls.isEmpty())
    {
        window.openDemoPage();
    }
    else
    {
        const QUrl url = QUrl::fromUserInput(urls.first());
        if (!url.isValid())
        {
            std::fprintf(stderr, "brovia-demo: not a URL: %s\n", qPrintable(urls.first()));
            return 1;
        }
        window.open(url);
    }
    return app.exec();
}

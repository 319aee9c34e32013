#include "app/demo_window.h"
#include "app/screenshot_taker.h"
#include "app/tour_guide.h"
#include "engine/global_service.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
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
    const QCommandLineOption tour(QStringLiteral("tour"),
                                  QStringLiteral("Drive the demo page through its features, save a picture of each "
                                                 "step into the folder, then exit."),
                                  QStringLiteral("folder"));
    const QCommandLineOption timeout(QStringLiteral("timeout"),
                                     QStringLiteral("Milliseconds to wait for the screenshot, or for each step of the "
                                                    "tour (default 30000)."),
                                     QStringLiteral("ms"), QStringLiteral("30000"));
    parser.addOption(screenshot);
    parser.addOption(tour);
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
    {
        new ScreenshotTaker(&window, parser.value(screenshot), parser.value(timeout).toInt());
    }
    else if (parser.isSet(tour))
    {
        if (!QDir().mkpath(parser.value(tour)))
        {
            std::fprintf(stderr, "brovia-demo: cannot make the folder %s\n", qPrintable(parser.value(tour)));
            return 1;
        }
        new TourGuide(&window, parser.value(tour), parser.value(timeout).toInt());
    }
    window.show();

    const QStringList urls = parser.positionalArguments();
    if (urls.isEmpty() || parser.isSet(tour))
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

#include "view_harness.h"

#include "engine/global_service.h"
#include "host/view_interface/qcef_view_settings.h"
#include "view/view_impl_service.h"

#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QPixmap>
#include <QUrl>

void startEngine(float deviceScaleFactor, std::function<bool(const QByteArray&)> certificateVerifier)
{
    static bool started = false;
    if (started)
        return;
    started = true;
    QCefGlobalSettings settings;
    settings.deviceScaleFactor = deviceScaleFactor;
    settings.certificateVerifier = std::move(certificateVerifier);
    QCefGlobalService::initialize(settings);
    QCefGlobalService::startup();
}

std::unique_ptr<IQCefViewImpl> makeView(int width, int height)
{
    std::unique_ptr<IQCefViewImpl> view(QCefViewImplService::create(nullptr, QCefViewSettings()));
    view->resize(width, height);
    view->show();
    return view;
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!done())
    {
        if (clock.elapsed() > timeoutMs)
            return false;
        // Asleep between events, as an application's loop is: a spinning test takes a core from
        // Chromium.
        QEventLoop loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

QImage grabView(IQCefViewImpl* view)
{
    return view->grab().toImage().convertToFormat(QImage::Format_ARGB32);
}

bool waitForFrame(IQCefViewImpl* view, const std::function<bool(const QImage&)>& check, int timeoutMs)
{
    return waitUntil(
        [&] {
            if (view->getRenderedImageSize() != view->size())
                return false;
            return check(grabView(view));
        },
        timeoutMs);
}

bool sameColor(QRgb pixel, const QColor& expected)
{
    return qRed(pixel) == expected.red() && qGreen(pixel) == expected.green() && qBlue(pixel) == expected.blue();
}

QUrl htmlPage(const QString& html)
{
    return QUrl(QStringLiteral("data:text/html;charset=utf-8,") + QString::fromLatin1(QUrl::toPercentEncoding(html)));
}

bool loadAndWait(IQCefViewImpl* view, const QUrl& url)
{
    bool finished = false;
    const QMetaObject::Connection connection =
        QObject::connect(view, &IQCefViewImpl::loadFinished, [&](const QString&, bool ok) { finished = ok; });
    view->load(url);
    const bool done = waitUntil([&] { return finished && view->getRenderedImageSize() == view->size(); });
    QObject::disconnect(connection);
    return done;
}

void answerNextDialog(std::function<void(QWidget*)> answer)
{
    auto* poll = new QTimer();
    QObject::connect(poll, &QTimer::timeout, [poll, answer] {
        if (QWidget* dialog = QApplication::activeModalWidget())
        {
            poll->deleteLater();
            poll->stop();
            answer(dialog);
        }
    });
    poll->start(20);
}

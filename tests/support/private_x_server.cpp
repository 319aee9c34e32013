#include "support/private_x_server.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

namespace brovia_test
{
PrivateXServer::PrivateXServer()
{
    for (int number = 90; number < 140 && m_display.isEmpty(); ++number)
    {
        if (QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(number)) ||
            QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(number)))
            continue;
        m_process.start(QStringLiteral("Xvfb"), {QStringLiteral(":%1").arg(number), QStringLiteral("-screen"),
                                                 QStringLiteral("0"), QStringLiteral("1280x800x24"),
                                                 QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        if (!m_process.waitForStarted(5000))
            return;
        const QString socket = QStringLiteral("/tmp/.X11-unix/X%1").arg(number);
        QElapsedTimer waited;
        waited.start();
        while (!QFile::exists(socket) && m_process.state() == QProcess::Running && waited.elapsed() < 5000)
            QThread::msleep(20);
        if (QFile::exists(socket) && m_process.state() == QProcess::Running)
            m_display = QStringLiteral(":%1").arg(number);
        else
            m_process.waitForFinished(1000);
    }
}

PrivateXServer::~PrivateXServer()
{
    m_process.terminate();
    m_process.waitForFinished(5000);
}
} // namespace brovia_test

#include "app/demo_server.h"

#include <QHostAddress>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace
{
const QString kDownloadName = QStringLiteral("brovia-sample.txt");
constexpr qint64 kDownloadSize = 8 * 1024 * 1024;
constexpr qint64 kPieceSize = 128 * 1024;
constexpr int kPieceIntervalMs = 40;

QByteArray header(const QByteArray& status, const QByteArray& type, qint64 length, const QByteArray& extra = {})
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + type + "\r\nContent-Length: " + QByteArray::number(length) +
           "\r\nCache-Control: no-store\r\nConnection: close\r\n" + extra + "\r\n";
}
} // namespace

DemoServer::DemoServer(const QByteArray& page, QObject* parent)
    : QObject(parent)
    , m_page(page)
{
    connect(&m_server, &QTcpServer::newConnection, this, &DemoServer::onNewConnection);
}

bool DemoServer::listen()
{
    return m_server.listen(QHostAddress::LocalHost);
}

QUrl DemoServer::pageUrl() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(m_server.serverPort()));
}

void DemoServer::onNewConnection()
{
    while (QTcpSocket* socket = m_server.nextPendingConnection())
    {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        // One request per connection: answered once its header is complete.
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            if (socket->property("answered").toBool())
                return;
            const QByteArray request = socket->peek(socket->bytesAvailable());
            if (!request.contains("\r\n\r\n"))
                return;
            socket->setProperty("answered", true);
            const QList<QByteArray> words = request.left(request.indexOf("\r\n")).split(' ');
            answer(socket, words.size() > 1 ? words.at(1) : QByteArray());
        });
    }
}

void DemoServer::answer(QTcpSocket* socket, const QByteArray& path)
{
    if (path == "/")
    {
        socket->write(header("200 OK", "text/html; charset=utf-8", m_page.size()) + m_page);
        socket->disconnectFromHost();
    }
    else if (path == "/download/" + kDownloadName.toUtf8())
    {
        sendDownload(socket);
    }
    else
    {
        const QByteArray body = "not here\n";
        socket->write(header("404 Not Found", "text/plain", body.size()) + body);
        socket->disconnectFromHost();
    }
}

void DemoServer::sendDownload(QTcpSocket* socket)
{
    socket->write(header("200 OK", "text/plain", kDownloadSize,
                         "Content-Disposition: attachment; filename=\"" + kDownloadName.toUtf8() + "\"\r\n"));
    // A line of text repeated: the file is readable, its size exact.
    const QByteArray line = "brovia sends this file in pieces, so that the demo can follow its progress.\n";
    QByteArray piece;
    while (piece.size() < kPieceSize)
        piece += line;
    piece.truncate(int(kPieceSize));

    // The pacer outlives a socket that the engine closes early, to report that.
    auto* pacer = new QTimer(this);
    auto sent = std::make_shared<qint64>(0);
    QPointer<QTcpSocket> guarded(socket);
    connect(pacer, &QTimer::timeout, this, [this, guarded, pacer, piece, sent] {
        if (!guarded || guarded->state() != QAbstractSocket::ConnectedState)
        {
            pacer->stop();
            pacer->deleteLater();
            Q_EMIT downloadFinished(kDownloadName, false);
            return;
        }
        // Keep at most two pieces queued, so that the count follows what the engine takes.
        if (guarded->bytesToWrite() > 2 * kPieceSize)
            return;
        const qint64 length = std::min<qint64>(kPieceSize, kDownloadSize - *sent);
        guarded->write(piece.constData(), length);
        *sent += length;
        Q_EMIT downloadProgress(kDownloadName, *sent, kDownloadSize);
        if (*sent == kDownloadSize)
        {
            pacer->stop();
            pacer->deleteLater();
            guarded->disconnectFromHost();
            Q_EMIT downloadFinished(kDownloadName, true);
        }
    });
    pacer->start(kPieceIntervalMs);
}

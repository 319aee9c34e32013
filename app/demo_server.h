#pragma once

#include <QByteArray>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

// A small HTTP server on the loopback interface that serves the demo page and a file to download.
// The file goes out in paced pieces so that the host can show the download's progress by the
// bytes that have left. Qt main thread.
class DemoServer : public QObject
{
    Q_OBJECT

public:
    // page: the demo page's HTML, served at "/".
    DemoServer(const QByteArray& page, QObject* parent = nullptr);

    // False when no port could be opened.
    bool listen();
    QUrl pageUrl() const;

Q_SIGNALS:
    void downloadProgress(const QString& fileName, qint64 sent, qint64 total);
    // ok is false when the engine hung up early.
    void downloadFinished(const QString& fileName, bool ok);

private:
    void onNewConnection();
    void answer(QTcpSocket* socket, const QByteArray& path);
    void sendDownload(QTcpSocket* socket);

    QTcpServer m_server;
    QByteArray m_page;
};

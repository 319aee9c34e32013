#include "support/test_servers.h"

#include <QFile>
#include <QRegularExpression>

namespace brovia_test
{
HttpsServer::HttpsServer()
{
    const QString key = m_dir.filePath(QStringLiteral("key.pem"));
    const QString cert = m_dir.filePath(QStringLiteral("cert.pem"));
    QProcess generate;
    generate.start(QStringLiteral("openssl"), {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", key,
                                               "-out", cert, "-days", "2", "-subj", "/CN=brovia.test/O=Brovia Tests"});
    if (!generate.waitForFinished(30000) || generate.exitCode() != 0)
        return;
    QFile pem(cert);
    if (!pem.open(QIODevice::ReadOnly))
        return;
    m_pem = pem.readAll();
    m_process.start(QStringLiteral("openssl"),
                    {"s_server", "-accept", "127.0.0.1:0", "-cert", cert, "-key", key, "-www"});
    if (!m_process.waitForStarted(10000))
        return;
    // It names its port on its first lines: "ACCEPT 127.0.0.1:PORT".
    static const QRegularExpression accept(QStringLiteral("ACCEPT .*:(\\d+)"));
    for (int attempt = 0; attempt < 20 && m_port == 0; ++attempt)
    {
        if (!m_process.canReadLine() && !m_process.waitForReadyRead(500))
            continue;
        while (m_process.canReadLine())
        {
            const QRegularExpressionMatch match = accept.match(QString::fromLatin1(m_process.readLine()));
            if (match.hasMatch())
                m_port = match.captured(1).toInt();
        }
    }
}

HttpsServer::~HttpsServer()
{
    m_process.kill();
    m_process.waitForFinished(5000);
}

std::string HttpsServer::Url(const std::string& path) const
{
    return "https://127.0.0.1:" + std::to_string(m_port) + path;
}
} // namespace brovia_test

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QTemporaryDir>

#include <string>

namespace brovia_test
{
// An HTTPS server on 127.0.0.1 (openssl s_server -www) with a self-signed certificate made for
// it. Test thread; stopped by the destructor.
class HttpsServer
{
public:
    HttpsServer();
    ~HttpsServer();

    bool running() const { return m_port > 0; }
    std::string Url(const std::string& path) const;
    const QByteArray& certificate_pem() const { return m_pem; }

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    QByteArray m_pem;
    int m_port = 0;
};
} // namespace brovia_test

#pragma once

#include <QProcess>
#include <QString>

namespace brovia_test
{
// Xvfb on a free display number, for code that needs a window system. Test thread; stopped by
// the destructor.
class PrivateXServer
{
public:
    PrivateXServer();
    ~PrivateXServer();
    // ":N", or empty if the server did not start.
    const QString& display() const { return m_display; }

private:
    QProcess m_process;
    QString m_display;
};
} // namespace brovia_test

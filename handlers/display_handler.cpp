#include "handlers/display_handler.h"

#include "host/log/basic_diagnostic_logger.h"
#include "host/view_support/conversions.h"

#include <QCoreApplication>
#include <QImage>
#include <QPixmap>
#include <QRegularExpression>

#include <sstream>

namespace
{
foundation::log::diagnostic_logger consoleLogger("brovia::browser");

std::wstring toWide(const QString& text)
{
    return text.toStdWString();
}
} // namespace

void DisplayHandler::OnAddressChange(CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>, const CefString& url)
{
    Q_EMIT urlChanged(QUrl(Conversions::convertString(url)));
}

void DisplayHandler::OnTitleChange(CefRefPtr<CefBrowser>, const CefString& title)
{
    Q_EMIT titleChanged(Conversions::convertString(title));
}

bool DisplayHandler::OnTooltip(CefRefPtr<CefBrowser>, CefString& text)
{
    Q_EMIT tooltipChanged(Conversions::convertString(text));
    return true;
}

bool DisplayHandler::OnConsoleMessage(CefRefPtr<CefBrowser>, cef_log_severity_t, const CefString& message,
                                      const CefString& source, int line)
{
    if (source.empty() || message.empty())
        return false;
    QString src = Conversions::convertString(source);
    const QString msg = Conversions::convertString(message);
    // Only the file name of the script is shown; a source that ends in a separator becomes empty.
    // Never destroyed: the engine may still report while the process exits.
    static const QRegularExpression& separators = *new QRegularExpression(QStringLiteral("[/\\\\]"));
    const QStringList parts = src.split(separators, Qt::KeepEmptyParts);
    if (parts.size() > 1)
        src = parts.last();
    Q_EMIT javaScriptConsoleMessage(msg, src, line);
    return false;
}

bool DisplayHandler::OnCursorChange(CefRefPtr<CefBrowser>, CefCursorHandle, cef_cursor_type_t type,
                                    const CefCursorInfo& custom_cursor_info)
{
    // A cursor holds pixmaps, which abort the process without a GUI application: the engine may
    // still report a pointer move while the application goes.
    if (!QCoreApplication::instance() || QCoreApplication::closingDown())
        return true;
    const Qt::CursorShape shape = Conversions::convertCursor(type);
    QCursor cursor(shape);
    if (shape == Qt::CustomCursor)
    {
        // The engine's buffer is BGRA and lives only during this call: rgbSwapped makes the copy.
        const QImage wrapped(static_cast<const uchar*>(custom_cursor_info.buffer), custom_cursor_info.size.width,
                             custom_cursor_info.size.height, QImage::Format_RGBA8888_Premultiplied);
        QImage image = wrapped.rgbSwapped();
        image.setDevicePixelRatio(custom_cursor_info.image_scale_factor);
        cursor = QCursor(QPixmap::fromImage(image), custom_cursor_info.hotspot.x, custom_cursor_info.hotspot.y);
    }
    Q_EMIT cursorChanged(cursor);
    return true;
}

void DisplayHandler::logConsoleMessage(int browserId, cef_log_severity_t level, const QString& message,
                                       const QString& source, int line)
{
    const char* word = "INFO";
    unsigned int severity = foundation::log::severity::info;
    switch (level)
    {
    case LOGSEVERITY_VERBOSE:
        word = "DEBUG";
        severity = foundation::log::severity::debug;
        break;
    case LOGSEVERITY_WARNING:
        word = "WARNING";
        severity = foundation::log::severity::warning;
        break;
    case LOGSEVERITY_ERROR:
        word = "ERROR";
        severity = foundation::log::severity::error;
        break;
    case LOGSEVERITY_FATAL:
        word = "FATAL";
        severity = foundation::log::severity::fatal;
        break;
    default:
        break;
    }
    std::wostringstream head;
    head << L"[" << browserId << L"] ";
    std::wostringstream tail;
    tail << L" | " << toWide(message) << L" | " << toWide(source) << L":" << line;
    BROVIA_LOG(consoleLogger, severity) << head.str() << word << tail.str();
}

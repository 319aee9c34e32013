#include "handlers/request_handler.h"

#include "engine/cef_manager.h"
#include "host/cef_common/allow_list.h"
#include "host/options/command_line.h"
#include "host/view_support/conversions.h"

#include <QByteArray>
#include <QString>

#include <string>

namespace
{
constexpr const char* kCustomScheme = "torvex";
} // namespace

RequestHandler::RequestHandler()
    : m_resourceRequestHandler(new cef_common::ResourceRequestHandler())
{
}

bool RequestHandler::OnBeforeBrowse(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                    CefRefPtr<CefRequest> request, bool user_gesture, bool is_redirect)
{
    const std::string url = request->GetURL().ToString();
    if (url.find(kCustomScheme) == 0)
    {
        // A command for the host, not a page to load.
        Q_EMIT linkClicked(QUrl(QString::fromStdString(url)));
        return true;
    }
    if (!cef_common::isURLAllowed(url, false))
        return true;
    Q_EMIT linkClicked(QUrl(QString::fromStdString(url)));
    return false;
}

bool RequestHandler::OnOpenURLFromTab(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                      const CefString& target_url, WindowOpenDisposition target_disposition,
                                      bool user_gesture)
{
    return true;
}

bool RequestHandler::OnQuotaRequest(CefRefPtr<CefBrowser> browser, const CefString& origin_url, int64_t new_size,
                                    CefRefPtr<CefCallback> callback)
{
    return true;
}

bool RequestHandler::OnCertificateError(CefRefPtr<CefBrowser> browser, cef_errorcode_t cert_error,
                                        const CefString& request_url, CefRefPtr<CefSSLInfo> ssl_info,
                                        CefRefPtr<CefCallback> callback)
{
    const CommandLine commandLine;
    // Read without a lock: the settings are fixed before the first browser exists.
    const QCefGlobalSettings settings = CCefManager::getInstance().globalSettings();
    // The verifier judges the certificate alone; the error and the URL are not looked at.
    const CefRefPtr<CefX509Certificate> certificate = ssl_info->GetX509Certificate();
    const QByteArray pem = certificate ? Conversions::convertBinary(certificate->GetPEMEncoded()) : QByteArray();
    // The option accepts every host, whatever its name says. Blocks the engine UI thread while
    // the host's verifier runs; without a verifier nobody vouches for the certificate.
    if (!commandLine.insecureLocalHostAllowed() &&
        (!settings.certificateVerifier || !settings.certificateVerifier(pem)))
        return false;
    callback->Continue();
    return true;
}

void RequestHandler::OnRenderProcessTerminated(CefRefPtr<CefBrowser> browser, TerminationStatus status,
                                               int error_code, const CefString& error_string)
{
    // Recovery is the host's affair: nothing is reloaded here.
    switch (status)
    {
    case TS_ABNORMAL_TERMINATION:
        Q_EMIT renderProcessTerminated(QCefDataTypes::AbnormalTermination);
        break;
    case TS_PROCESS_WAS_KILLED:
        Q_EMIT renderProcessTerminated(QCefDataTypes::ProcessWasKilled);
        break;
    case TS_PROCESS_CRASHED:
        Q_EMIT renderProcessTerminated(QCefDataTypes::ProcessCrashed);
        break;
    case TS_PROCESS_OOM:
        Q_EMIT renderProcessTerminated(QCefDataTypes::ProcessOutOfMemory);
        break;
    default:
        break;
    }
}

CefRefPtr<CefResourceRequestHandler> RequestHandler::GetResourceRequestHandler(
    CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, CefRefPtr<CefRequest> request, bool is_navigation,
    bool is_download, const CefString& request_initiator, bool& disable_default_handling)
{
    return m_resourceRequestHandler.get();
}

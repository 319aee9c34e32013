#pragma once

#include "host/cef_common/resource_request_handler.h"
#include "host/view_interface/qcef_data_types.h"

#include "include/cef_request_handler.h"

#include <QObject>
#include <QUrl>

// The navigation gate of one browser: decides which navigations proceed and reports them, hands
// links of the custom scheme to the host instead of loading them, refuses new-tab navigations,
// decides on certificate errors and reports a dead render process. The engine calls it on its UI
// thread, GetResourceRequestHandler on its IO thread.
class RequestHandler : public QObject, public CefRequestHandler
{
    Q_OBJECT

public:
    RequestHandler();

    // Raises linkClicked for every allowed navigation and for the custom scheme; true cancels.
    bool OnBeforeBrowse(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, CefRefPtr<CefRequest> request,
                        bool user_gesture, bool is_redirect) override;
    // Always cancels: no new tab or window opens by this road.
    bool OnOpenURLFromTab(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, const CefString& target_url,
                          WindowOpenDisposition target_disposition, bool user_gesture) override;
    // Answers yes to a storage quota request. The engine no longer asks, so nothing calls it.
    virtual bool OnQuotaRequest(CefRefPtr<CefBrowser> browser, const CefString& origin_url, int64_t new_size,
                                CefRefPtr<CefCallback> callback);
    // Calls the host's certificate verifier, on the engine UI thread, unless the insecure option
    // accepts every certificate. The host must have supplied a verifier.
    bool OnCertificateError(CefRefPtr<CefBrowser> browser, cef_errorcode_t cert_error,
                            const CefString& request_url, CefRefPtr<CefSSLInfo> ssl_info,
                            CefRefPtr<CefCallback> callback) override;
    void OnRenderProcessTerminated(CefRefPtr<CefBrowser> browser, TerminationStatus status, int error_code,
                                   const CefString& error_string) override;
    // Engine IO thread: one handler serves all requests of the browser.
    CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(
        CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, CefRefPtr<CefRequest> request,
        bool is_navigation, bool is_download, const CefString& request_initiator,
        bool& disable_default_handling) override;

Q_SIGNALS:
    // A report only: the navigation's fate is settled when it arrives.
    void linkClicked(QUrl url);
    void renderProcessTerminated(QCefDataTypes::TerminationReason );

private:
    // Set before the browser exists and never replaced, so the IO thread reads it without a lock.
    CefRefPtr<cef_common::ResourceRequestHandler> m_resourceRequestHandler;

    IMPLEMENT_REFCOUNTING(RequestHandler);
};

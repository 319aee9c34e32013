#include "handlers/load_handler.h"

#include "host/log/basic_diagnostic_logger.h"
#include "host/view_support/conversions.h"

#include <string>

namespace
{
foundation::log::diagnostic_logger logger("brovia::browser");

// Links in the custom scheme end in an unknown-scheme error; that is their normal end.
constexpr const char* kCustomScheme = "torvex";
} // namespace

LoadHandler::LoadHandler() = default;

void LoadHandler::OnLoadStart(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                              TransitionType transition_type)
{
    if (frame->IsMain())
        Q_EMIT loadStarted(Conversions::convertString(frame->GetURL()));
}

void LoadHandler::OnLoadEnd(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, int httpStatusCode)
{
    // A status of 0 (file and data URLs) counts as ok.
    if (frame->IsMain())
        Q_EMIT loadFinished(Conversions::convertString(frame->GetURL()), httpStatusCode < 400);
}

void LoadHandler::OnLoadError(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, ErrorCode errorCode,
                              const CefString& errorText, const CefString& failedUrl)
{
    if (errorCode == ERR_UNKNOWN_URL_SCHEME)
    {
        // The link was already reported by the request handler.
        if (frame->GetURL().ToString().find(kCustomScheme) == 0)
            return;
    }
    if (errorCode != ERR_ABORTED)
    {
        BROVIA_LOG(logger, foundation::log::severity::error)
            << "Failed to load URL: " << failedUrl.ToWString() << "; Error: " << errorText.ToWString() << " ("
            << static_cast<int>(errorCode) << ")";
    }
    Q_EMIT loadFinished(Conversions::convertString(frame->GetURL()), false);
}

void LoadHandler::OnLoadingStateChange(CefRefPtr<CefBrowser> browser, bool isLoading, bool canGoBack,
                                       bool canGoForward)
{
    Q_EMIT loadStateChanged(Conversions::convertString(browser->GetMainFrame()->GetURL()), isLoading, canGoBack,
                            canGoForward);
}

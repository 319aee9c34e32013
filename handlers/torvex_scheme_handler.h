#pragma once

#include "include/cef_resource_handler.h"

// Serves nothing for the custom scheme "torvex": a request that is not a navigation (an image
// source, say) ends at once, cancelled and without a body. Links in the scheme are navigations
// and reach the host through the request handler instead. Engine IO thread; no state.
class TorvexSchemeHandler : public CefResourceHandler
{
public:
    TorvexSchemeHandler() = default;

    // Cancels the request; the callback is never run.
    bool ProcessRequest(CefRefPtr<CefRequest> request, CefRefPtr<CefCallback> callback) override;
    void GetResponseHeaders(CefRefPtr<CefResponse> response, int64_t& response_length,
                            CefString& redirectUrl) override;
    bool ReadResponse(void* data_out, int bytes_to_read, int& bytes_read, CefRefPtr<CefCallback> callback) override;
    void Cancel() override;

private:
    IMPLEMENT_REFCOUNTING(TorvexSchemeHandler);
};

#include "handlers/torvex_scheme_handler.h"

bool TorvexSchemeHandler::ProcessRequest(CefRefPtr<CefRequest> request, CefRefPtr<CefCallback> callback)
{
    return false;
}

void TorvexSchemeHandler::GetResponseHeaders(CefRefPtr<CefResponse> response, int64_t& response_length,
                                             CefString& redirectUrl)
{
}

bool TorvexSchemeHandler::ReadResponse(void* data_out, int bytes_to_read, int& bytes_read,
                                       CefRefPtr<CefCallback> callback)
{
    return false;
}

void TorvexSchemeHandler::Cancel()
{
}

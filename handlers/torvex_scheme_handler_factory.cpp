#include "handlers/torvex_scheme_handler_factory.h"

#include "handlers/torvex_scheme_handler.h"

CefRefPtr<CefResourceHandler> TorvexSchemeHandlerFactory::Create(CefRefPtr<CefBrowser> browser,
                                                                 CefRefPtr<CefFrame> frame,
                                                                 const CefString& scheme_name,
                                                                 CefRefPtr<CefRequest> request)
{
    return new TorvexSchemeHandler();
}

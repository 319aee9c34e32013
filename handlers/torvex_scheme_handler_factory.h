#pragma once

#include "include/cef_scheme.h"

// Makes the engine know the custom scheme "torvex", registered on each view's request context:
// every request gets a TorvexSchemeHandler, which serves nothing. Engine IO thread; no state.
class TorvexSchemeHandlerFactory : public CefSchemeHandlerFactory
{
public:
    TorvexSchemeHandlerFactory() = default;

    // Looks at none of its arguments; browser and frame may be null.
    CefRefPtr<CefResourceHandler> Create(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                         const CefString& scheme_name, CefRefPtr<CefRequest> request) override;

private:
    IMPLEMENT_REFCOUNTING(TorvexSchemeHandlerFactory);
};

#include "handlers/print_dialog_handler.h"

#include "include/cef_browser.h"

void PrintDialogHandler::OnPrintStart(CefRefPtr<CefBrowser> browser)
{
    Q_EMIT cefPrintDialogRequested(browser->GetIdentifier());
}

void PrintDialogHandler::OnPrintSettings(CefRefPtr<CefBrowser>, CefRefPtr<CefPrintSettings>, bool) {}

bool PrintDialogHandler::OnPrintDialog(CefRefPtr<CefBrowser>, bool, CefRefPtr<CefPrintDialogCallback>)
{
    return true;
}

bool PrintDialogHandler::OnPrintJob(CefRefPtr<CefBrowser>, const CefString&, const CefString&,
                                    CefRefPtr<CefPrintJobCallback>)
{
    return false;
}

void PrintDialogHandler::OnPrintReset(CefRefPtr<CefBrowser>) {}

CefSize PrintDialogHandler::GetPdfPaperSize(CefRefPtr<CefBrowser>, int device_units_per_inch)
{
    return CefSize(static_cast<int>(device_units_per_inch * 8.5), device_units_per_inch * 11);
}

#pragma once

#include "include/cef_print_handler.h"

#include <QObject>

// A page's print request becomes a signal; the view's own dialog and PDF output take over, and the
// engine's dialog and print job are swallowed. Engine UI thread.
class PrintDialogHandler : public QObject, public CefPrintHandler
{
    Q_OBJECT

public:
    void OnPrintStart(CefRefPtr<CefBrowser> browser) override;
    void OnPrintSettings(CefRefPtr<CefBrowser> browser, CefRefPtr<CefPrintSettings> settings,
                         bool get_defaults) override;
    // True without a call of the callback: no engine dialog shows.
    bool OnPrintDialog(CefRefPtr<CefBrowser> browser, bool has_selection,
                       CefRefPtr<CefPrintDialogCallback> callback) override;
    bool OnPrintJob(CefRefPtr<CefBrowser> browser, const CefString& document_name, const CefString& pdf_file_path,
                    CefRefPtr<CefPrintJobCallback> callback) override;
    void OnPrintReset(CefRefPtr<CefBrowser> browser) override;
    // US Letter.
    CefSize GetPdfPaperSize(CefRefPtr<CefBrowser> browser, int device_units_per_inch) override;

Q_SIGNALS:
    // The browser's identifier.
    void cefPrintDialogRequested(int);

private:
    IMPLEMENT_REFCOUNTING(PrintDialogHandler);
};

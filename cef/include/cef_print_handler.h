// Printing on Linux, where the engine has no print dialog of its own: the
// client supplies settings and the dialog and receives the finished PDF.

#ifndef CEF_INCLUDE_CEF_PRINT_HANDLER_H_
#define CEF_INCLUDE_CEF_PRINT_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_print_settings.h"

// Ends the print dialog: Continue() with the chosen settings, or Cancel().
class CefPrintDialogCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(CefRefPtr<CefPrintSettings> settings) = 0;
  virtual void Cancel() = 0;
};

// Tells the engine that the client is done with a print job.
class CefPrintJobCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue() = 0;
};

// Called on the UI thread.
class CefPrintHandler : public virtual CefBaseRefCounted {
 public:
  // Printing begins (window.print() or CefBrowserHost::Print()).
  virtual void OnPrintStart(CefRefPtr<CefBrowser> browser) = 0;

  // Fill |settings| with the printer's defaults (|get_defaults|) or with the
  // client's current settings. Must answer synchronously.
  virtual void OnPrintSettings(CefRefPtr<CefBrowser> browser,
                               CefRefPtr<CefPrintSettings> settings,
                               bool get_defaults) = 0;

  // Show the print dialog; true if the client will answer |callback|, false
  // cancels the job.
  virtual bool OnPrintDialog(CefRefPtr<CefBrowser> browser,
                             bool has_selection,
                             CefRefPtr<CefPrintDialogCallback> callback) = 0;

  // The document is rendered to |pdf_file_path|. True if the client will
  // print it and then answer |callback|; false cancels the job.
  virtual bool OnPrintJob(CefRefPtr<CefBrowser> browser,
                          const CefString& document_name,
                          const CefString& pdf_file_path,
                          CefRefPtr<CefPrintJobCallback> callback) = 0;

  // Drop any state of the print job.
  virtual void OnPrintReset(CefRefPtr<CefBrowser> browser) = 0;

  // Paper size in device units for CefBrowserHost::PrintToPDF.
  virtual CefSize GetPdfPaperSize(CefRefPtr<CefBrowser> browser,
                                  int device_units_per_inch) {
    return CefSize();
  }
};

#endif  // CEF_INCLUDE_CEF_PRINT_HANDLER_H_

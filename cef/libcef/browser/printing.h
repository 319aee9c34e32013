// CefBrowserHost::PrintToPDF through Page.printToPDF, and print requests
// (window.print(), CefBrowserHost::Print()) put to the client's
// CefPrintHandler. Headless Chromium has no printer of its own.

#ifndef CEF_LIBCEF_BROWSER_PRINTING_H_
#define CEF_LIBCEF_BROWSER_PRINTING_H_

#include <QJsonObject>
#include <QString>

#include "include/cef_browser.h"
#include "include/cef_print_handler.h"

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class Printing {
 public:
  // The binding the page's window.print() calls.
  static constexpr char kPrintBinding[] = "__broviaPrint";
  // A main-world script for every new document that sends window.print()
  // to the binding.
  static QString PrintWrapperScript();
  // Page.printToPDF's parameters for |settings|.
  static QJsonObject PdfParams(const CefPdfPrintSettings& settings);

  explicit Printing(BrowserImpl* browser);
  Printing(const Printing&) = delete;
  Printing& operator=(const Printing&) = delete;

  void PrintToPDF(const QString& path,
                  const CefPdfPrintSettings& settings,
                  CefRefPtr<CefPdfPrintCallback> callback);
  // The page or the client asked to print.
  void Start();
  // The client answered print dialog |serial| (or dropped it).
  void DialogAnswered(int serial);
  // The browser closed or the engine shut down.
  void Release();

 private:
  BrowserImpl* const browser_;
  CefRefPtr<CefPrintHandler> handler_;
  int serial_ = 0;
  bool warned_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PRINTING_H_

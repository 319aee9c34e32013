#include "libcef/browser/printing.h"

#include <algorithm>

#include <QByteArray>
#include <QSaveFile>

#include "include/base/cef_logging.h"
#include "include/cef_client.h"
#include "libcef/browser/browser_hold.h"
#include "libcef/browser/ui_task.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

QString Str(const CefString& value) {
  return QString::fromStdString(value.ToString());
}

// The client's print dialog: any answer, or none, ends the job, as no
// printing happens here.
class PrintDialogCallbackImpl : public CefPrintDialogCallback {
 public:
  PrintDialogCallbackImpl(CefRefPtr<BrowserImpl> browser, int serial)
      : hold_(std::move(browser)), serial_(serial) {}
  ~PrintDialogCallbackImpl() override { Answer(true); }

  // Any thread.
  void Continue(CefRefPtr<CefPrintSettings>) override { Answer(false); }
  void Cancel() override { Answer(false); }

 private:
  void Answer(bool posted) {
    hold_.Answer(
        [serial = serial_](BrowserImpl* browser) {
          browser->printing()->DialogAnswered(serial);
        },
        posted);
  }

  BrowserHold hold_;
  const int serial_;
  IMPLEMENT_REFCOUNTING(PrintDialogCallbackImpl);
};

}  // namespace

QString Printing::PrintWrapperScript() {
  return ScriptSource("print_wrapper.js")
      .replace(QLatin1String("__BINDING__"), QLatin1String(kPrintBinding));
}

QJsonObject Printing::PdfParams(const CefPdfPrintSettings& settings) {
  QJsonObject params{
      {"landscape", settings.landscape != 0},
      {"printBackground", settings.print_background != 0},
      {"preferCSSPageSize", settings.prefer_css_page_size != 0},
      {"displayHeaderFooter", settings.display_header_footer != 0},
      {"generateTaggedPDF", settings.generate_tagged_pdf != 0},
      {"generateDocumentOutline", settings.generate_document_outline != 0}};
  if (settings.scale > 0) {
    // Chromium accepts 0.1 to 2.
    params.insert(QStringLiteral("scale"),
                  std::clamp(settings.scale, 0.1, 2.0));
  }
  if (settings.paper_width > 0 && settings.paper_height > 0) {
    params.insert(QStringLiteral("paperWidth"), settings.paper_width);
    params.insert(QStringLiteral("paperHeight"), settings.paper_height);
  }
  if (settings.margin_type == PDF_PRINT_MARGIN_NONE) {
    for (const char* side :
         {"marginTop", "marginRight", "marginBottom", "marginLeft"}) {
      params.insert(QLatin1String(side), 0);
    }
  } else if (settings.margin_type == PDF_PRINT_MARGIN_CUSTOM) {
    params.insert(QStringLiteral("marginTop"), std::max(0.0, settings.margin_top));
    params.insert(QStringLiteral("marginRight"),
                  std::max(0.0, settings.margin_right));
    params.insert(QStringLiteral("marginBottom"),
                  std::max(0.0, settings.margin_bottom));
    params.insert(QStringLiteral("marginLeft"),
                  std::max(0.0, settings.margin_left));
  }
  const QString ranges = Str(CefString(&settings.page_ranges));
  if (!ranges.isEmpty()) {
    params.insert(QStringLiteral("pageRanges"), ranges);
  }
  if (settings.display_header_footer) {
    params.insert(QStringLiteral("headerTemplate"),
                  Str(CefString(&settings.header_template)));
    params.insert(QStringLiteral("footerTemplate"),
                  Str(CefString(&settings.footer_template)));
  }
  return params;
}

Printing::Printing(BrowserImpl* browser) : browser_(browser) {}

void Printing::PrintToPDF(const QString& path,
                          const CefPdfPrintSettings& settings,
                          CefRefPtr<CefPdfPrintCallback> callback) {
  const CefString cef_path(path.toStdString());
  auto finish = [callback, cef_path](bool ok) {
    if (callback) {
      callback->OnPdfPrintFinished(cef_path, ok);
    }
  };
  if (path.isEmpty() || !browser_->IsValid()) {
    PostUiTask([finish] { finish(false); });
    return;
  }
  browser_->SendPageCommand(
      QStringLiteral("Page.printToPDF"), PdfParams(settings),
      [finish, path](const QJsonObject& result, const QJsonObject& error) {
        if (!error.isEmpty()) {
          LOG(WARNING) << "CefBrowserHost::PrintToPDF: "
                       << error.value(QLatin1String("message"))
                              .toString()
                              .toStdString();
          finish(false);
          return;
        }
        const QByteArray data = QByteArray::fromBase64(
            result.value(QLatin1String("data")).toString().toLatin1());
        QSaveFile file(path);
        const bool ok = !data.isEmpty() && file.open(QIODevice::WriteOnly) &&
                        file.write(data) == data.size() && file.commit();
        if (!ok) {
          LOG(WARNING) << "CefBrowserHost::PrintToPDF: cannot write "
                       << path.toStdString();
        }
        finish(ok);
      });
}

void Printing::Start() {
  if (!browser_->IsValid()) {
    return;
  }
  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefPrintHandler> handler =
      client ? client->GetPrintHandler() : nullptr;
  if (!handler) {
    if (!warned_) {
      warned_ = true;
      LOG(WARNING) << "Printing needs a CefPrintHandler: the engine has no "
                      "print dialog of its own";
    }
    return;
  }
  // A job still open is over.
  if (handler_) {
    DialogAnswered(serial_);
  }
  const int serial = ++serial_;
  handler_ = handler;
  handler->OnPrintStart(browser_);
  CefRefPtr<CefPrintDialogCallback> callback =
      new PrintDialogCallbackImpl(browser_, serial);
  if (!handler->OnPrintDialog(browser_, false, callback)) {
    if (!warned_) {
      warned_ = true;
      LOG(WARNING) << "CefPrintHandler::OnPrintDialog returned false: the "
                      "engine has no print dialog of its own";
    }
  }
}

void Printing::DialogAnswered(int serial) {
  if (serial != serial_ || !handler_) {
    return;
  }
  CefRefPtr<CefPrintHandler> handler = std::move(handler_);
  handler_ = nullptr;
  if (browser_->IsValid()) {
    handler->OnPrintReset(browser_);
  }
}

void Printing::Release() {
  handler_ = nullptr;
}

}  // namespace cefengine

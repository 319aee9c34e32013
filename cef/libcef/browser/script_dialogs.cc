#include "libcef/browser/script_dialogs.h"

#include <utility>

#include "include/base/cef_logging.h"
#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/browser_hold.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

namespace {

// Chromium no longer passes a page's own beforeunload text.
constexpr char kLeaveText[] =
    "Do you want to leave this page? Changes you made may not be saved.";

QString Str(const QJsonObject& object, const char* name) {
  return object.value(QLatin1String(name)).toString();
}

cef_jsdialog_type_t DialogType(const QString& type) {
  if (type == QLatin1String("confirm")) {
    return JSDIALOGTYPE_CONFIRM;
  }
  if (type == QLatin1String("prompt")) {
    return JSDIALOGTYPE_PROMPT;
  }
  return JSDIALOGTYPE_ALERT;
}

// One dialog's answer: the first Continue counts. Dropped unanswered, it
// cancels the dialog, so that a client that lets go of it frees the page.
class JSDialogCallbackImpl : public CefJSDialogCallback {
 public:
  JSDialogCallbackImpl(CefRefPtr<BrowserImpl> browser, int serial)
      : browser_(std::move(browser)), serial_(serial) {}

  ~JSDialogCallbackImpl() override {
    browser_.Answer(
        [serial = serial_](BrowserImpl* browser) {
          browser->script_dialogs()->Answer(serial, false, QString());
        },
        true);
  }

  // Any thread.
  void Continue(bool success, const CefString& user_input) override {
    browser_.Answer([serial = serial_, success,
                     input = QString::fromStdString(user_input.ToString())](
                        BrowserImpl* browser) {
      browser->script_dialogs()->Answer(serial, success, input);
    });
  }

  // Takes the dialog back from the client; false if it already answered.
  bool Disconnect() { return browser_.Take() != nullptr; }

 private:
  BrowserHold browser_;
  const int serial_;

  IMPLEMENT_REFCOUNTING(JSDialogCallbackImpl);
};

}  // namespace

ScriptDialogs::ScriptDialogs(BrowserImpl* browser) : browser_(browser) {}

void ScriptDialogs::OnOpening(const QJsonObject& params) {
  // Chromium shows one dialog at a time: one still held here is stale.
  Drop(false, false);
  const QString type = Str(params, "type");
  Pending dialog;
  dialog.serial = ++last_serial_;
  dialog.beforeunload = type == QLatin1String("beforeunload");
  dialog.prompt = type == QLatin1String("prompt");
  const bool reload = std::exchange(expect_reload_, false);

  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefJSDialogHandler> handler =
      client ? client->GetJSDialogHandler() : nullptr;
  bool suppress = false;
  if (handler) {
    dialog.handler = handler;
    pending_ = dialog;
    CefRefPtr<JSDialogCallbackImpl> callback =
        new JSDialogCallbackImpl(browser_, dialog.serial);
    const std::string message = Str(params, "message").toStdString();
    bool handled = false;
    if (dialog.beforeunload) {
      handled = handler->OnBeforeUnloadDialog(
          browser_, message.empty() ? kLeaveText : message, reload,
          callback.get());
    } else {
      handled = handler->OnJSDialog(
          browser_, Str(params, "url").toStdString(), DialogType(type),
          message, Str(params, "defaultPrompt").toStdString(), callback.get(),
          suppress);
    }
    if (handled) {
      return;
    }
    if (!callback->Disconnect()) {
      LOG(WARNING) << "CefJSDialogHandler answered a dialog and returned "
                      "false; it should return true when it answers";
      return;
    }
    if (!pending_ || pending_->serial != dialog.serial) {
      return;  // The handler navigated or closed the browser.
    }
    if (suppress && !dialog.beforeunload) {
      Drop(true, false);
      return;
    }
    pending_.reset();
    dialog.handler = nullptr;
  }
  // No dialog of the engine's own to show: the page's default answer.
  if (!dialog.beforeunload && !warned_no_handler_) {
    warned_no_handler_ = true;
    LOG(WARNING) << "Script dialogs are dismissed without a CefJSDialogHandler "
                    "that shows them: alert closes, confirm gives false, "
                    "prompt gives null";
  }
  const bool accept = dialog.beforeunload;
  Finish(std::move(dialog), accept, QString());
}

void ScriptDialogs::OnClosed(const QJsonObject& params) {
  // Ours are no longer pending once answered: this one Chromium ended.
  Drop(false, params.value(QLatin1String("result")).toBool());
}

void ScriptDialogs::BeforeLeaving(bool reload) {
  Drop(true, false);
  expect_reload_ = reload;
}

void ScriptDialogs::OnPageLeft() {
  // A page that went or crashed holds no close back.
  Drop(false, true);
  expect_reload_ = false;
}

void ScriptDialogs::Answer(int serial,
                           bool success,
                           const QString& user_input) {
  if (!pending_ || pending_->serial != serial) {
    return;
  }
  Pending dialog = std::move(*pending_);
  pending_.reset();
  Finish(std::move(dialog), success, user_input);
}

bool ScriptDialogs::waiting_for_unload_answer() const {
  return pending_ && pending_->beforeunload && pending_->handler;
}

void ScriptDialogs::Release() {
  pending_.reset();
}

void ScriptDialogs::Finish(Pending dialog,
                           bool success,
                           const QString& user_input) {
  QJsonObject reply{{"accept", success}};
  if (success && dialog.prompt) {
    reply.insert(QStringLiteral("promptText"), user_input);
  }
  browser_->SendPageCommand(QStringLiteral("Page.handleJavaScriptDialog"),
                            reply);
  // Before the client hears of it, which may start another close.
  if (dialog.beforeunload) {
    browser_->OnUnloadAnswered(success);
  }
  if (dialog.handler) {
    // As CEF does: the dialog closed, and its state is cleared.
    dialog.handler->OnDialogClosed(browser_);
    dialog.handler->OnResetDialogState(browser_);
  }
}

void ScriptDialogs::Drop(bool dismiss, bool unload_allowed) {
  if (!pending_) {
    return;
  }
  Pending dialog = std::move(*pending_);
  pending_.reset();
  if (dismiss) {
    browser_->SendPageCommand(QStringLiteral("Page.handleJavaScriptDialog"),
                              QJsonObject{{"accept", false}});
  }
  if (dialog.beforeunload) {
    browser_->OnUnloadAnswered(unload_allowed && !dismiss);
  }
  if (dialog.handler) {
    dialog.handler->OnResetDialogState(browser_);
  }
}

}  // namespace cefengine

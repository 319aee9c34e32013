#include "libcef/browser/context_menus.h"

#include <utility>

#include <QJsonDocument>

#include "include/base/cef_logging.h"
#include "include/cef_menu_model.h"
#include "libcef/browser/browser_hold.h"
#include "libcef/browser/engine_world.h"
#include "libcef/browser/page_input.h"
#include "libcef/browser/ui_task.h"
#include "libcef/page_scripts.h"

namespace cefengine {

namespace {

QString Text(const QJsonObject& hit, const char* key) {
  return hit.value(QLatin1String(key)).toString();
}

class ContextMenuParamsImpl : public CefContextMenuParams {
 public:
  ContextMenuParamsImpl(const QJsonObject& hit, int x, int y)
      : x_(x),
        y_(y),
        link_(Text(hit, "link").toStdString()),
        src_(Text(hit, "src").toStdString()),
        title_(Text(hit, "title").toStdString()),
        page_url_(Text(hit, "pageUrl").toStdString()),
        frame_url_(Text(hit, "frameUrl").toStdString()),
        charset_(Text(hit, "charset").toStdString()),
        selection_(Text(hit, "selection").toStdString()),
        media_(static_cast<MediaType>(hit.value(QLatin1String("media")).toInt())),
        editable_(hit.value(QLatin1String("editable")).toBool()) {
    int flags = CM_TYPEFLAG_NONE;
    if (!page_url_.empty()) flags |= CM_TYPEFLAG_PAGE;
    if (!link_.empty()) flags |= CM_TYPEFLAG_LINK;
    if (media_ != CM_MEDIATYPE_NONE) flags |= CM_TYPEFLAG_MEDIA;
    if (!selection_.empty()) flags |= CM_TYPEFLAG_SELECTION;
    if (editable_) flags |= CM_TYPEFLAG_EDITABLE;
    type_flags_ = static_cast<TypeFlags>(flags);
    int edit = CM_EDITFLAG_NONE;
    if (!selection_.empty()) edit |= CM_EDITFLAG_CAN_COPY;
    if (editable_) {
      edit |= CM_EDITFLAG_CAN_PASTE | CM_EDITFLAG_CAN_SELECT_ALL;
      if (!selection_.empty()) {
        edit |= CM_EDITFLAG_CAN_CUT | CM_EDITFLAG_CAN_DELETE;
      }
      if (hit.value(QLatin1String("canUndo")).toBool()) {
        edit |= CM_EDITFLAG_CAN_UNDO;
      }
      if (hit.value(QLatin1String("canRedo")).toBool()) {
        edit |= CM_EDITFLAG_CAN_REDO;
      }
    }
    edit_flags_ = static_cast<EditStateFlags>(edit);
  }

  int GetXCoord() override { return x_; }
  int GetYCoord() override { return y_; }
  TypeFlags GetTypeFlags() override { return type_flags_; }
  CefString GetLinkUrl() override { return link_; }
  CefString GetUnfilteredLinkUrl() override { return link_; }
  CefString GetSourceUrl() override { return src_; }
  bool HasImageContents() override { return media_ == CM_MEDIATYPE_IMAGE; }
  CefString GetTitleText() override { return title_; }
  CefString GetPageUrl() override { return page_url_; }
  CefString GetFrameUrl() override { return frame_url_; }
  CefString GetFrameCharset() override { return charset_; }
  MediaType GetMediaType() override { return media_; }
  MediaStateFlags GetMediaStateFlags() override { return CM_MEDIAFLAG_NONE; }
  CefString GetSelectionText() override { return selection_; }
  CefString GetMisspelledWord() override { return CefString(); }
  bool GetDictionarySuggestions(std::vector<CefString>& suggestions) override {
    suggestions.clear();
    return false;
  }
  bool IsEditable() override { return editable_; }
  bool IsSpellCheckEnabled() override { return false; }
  EditStateFlags GetEditStateFlags() override { return edit_flags_; }
  bool IsCustomMenu() override { return false; }

 private:
  const int x_, y_;
  const std::string link_, src_, title_, page_url_, frame_url_, charset_,
      selection_;
  const MediaType media_;
  const bool editable_;
  TypeFlags type_flags_;
  EditStateFlags edit_flags_;
  IMPLEMENT_REFCOUNTING(ContextMenuParamsImpl);
};

// The model wants a delegate; commands come back through the callback.
class NoMenuDelegate : public CefMenuModelDelegate {
 public:
  void ExecuteCommand(CefRefPtr<CefMenuModel>, int, cef_event_flags_t) override {}
  IMPLEMENT_REFCOUNTING(NoMenuDelegate);
};

// One menu's answer: the first counts; dropped unanswered, it dismisses.
class RunContextMenuCallbackImpl : public CefRunContextMenuCallback {
 public:
  RunContextMenuCallbackImpl(CefRefPtr<BrowserImpl> browser, int serial)
      : hold_(std::move(browser)), serial_(serial) {}
  ~RunContextMenuCallbackImpl() override { Answer(-1, EVENTFLAG_NONE, true); }

  // Any thread.
  void Continue(int command_id, cef_event_flags_t flags) override {
    Answer(command_id, flags, false);
  }
  void Cancel() override { Answer(-1, EVENTFLAG_NONE, false); }

 private:
  void Answer(int command_id, cef_event_flags_t flags, bool posted) {
    hold_.Answer(
        [serial = serial_, command_id, flags](BrowserImpl* browser) {
          browser->context_menus()->Answer(serial, command_id, flags);
        },
        posted);
  }

  BrowserHold hold_;
  const int serial_;
  IMPLEMENT_REFCOUNTING(RunContextMenuCallbackImpl);
};

void AddItem(CefRefPtr<CefMenuModel> model, int id, const char* label,
             bool enabled) {
  model->AddItem(id, label);
  model->SetEnabled(id, enabled);
}

}  // namespace

ContextMenus::ContextMenus(BrowserImpl* browser)
    : browser_(browser),
      world_(std::make_unique<EngineWorld>(browser,
                                           QStringLiteral("__broviaMenu"))) {}

ContextMenus::~ContextMenus() = default;

QString ContextMenus::WatcherScript() {
  return ScriptSource("context_menu_watcher.js")
      .replace(QLatin1String("__BINDING__"), QLatin1String(kBinding));
}

void ContextMenus::OnPageMenu(const QString& payload) {
  if (!browser_->IsValid()) {
    return;
  }
  const QJsonObject point = QJsonDocument::fromJson(payload.toUtf8()).object();
  const double css_x = point.value(QLatin1String("x")).toDouble();
  const double css_y = point.value(QLatin1String("y")).toDouble();
  const double scale = browser_->css_to_view_scale();
  const int x = qRound(css_x * scale);
  const int y = qRound(css_y * scale);
  CefRefPtr<BrowserImpl> browser(browser_);
  world_->Evaluate(QLatin1Char('(') + ScriptSource("context_menu_hit.js") +
                       QStringLiteral(")(%1, %2)").arg(css_x).arg(css_y),
                   [this, browser, x, y](const QJsonValue& value,
                                         const QString& error) {
                     if (browser->IsValid() && error.isEmpty()) {
                       Show(value.toObject(), x, y);
                     }
                   });
}

void ContextMenus::Show(const QJsonObject& hit, int x, int y) {
  CefRefPtr<CefClient> client = browser_->client();
  CefRefPtr<CefContextMenuHandler> handler =
      client ? client->GetContextMenuHandler() : nullptr;
  CefRefPtr<CefFrame> frame = browser_->GetMainFrame();
  if (!handler || !frame) {
    return;
  }
  // A menu the client still shows is over.
  if (pending_) {
    Answer(pending_->serial, -1, EVENTFLAG_NONE);
  }
  CefRefPtr<CefContextMenuParams> params =
      new ContextMenuParamsImpl(hit, x, y);
  CefRefPtr<CefMenuModel> model =
      CefMenuModel::CreateMenuModel(new NoMenuDelegate);
  const int edit = params->GetEditStateFlags();
  if (params->IsEditable()) {
    AddItem(model, MENU_ID_UNDO, "&Undo", edit & CM_EDITFLAG_CAN_UNDO);
    AddItem(model, MENU_ID_REDO, "&Redo", edit & CM_EDITFLAG_CAN_REDO);
    model->AddSeparator();
    AddItem(model, MENU_ID_CUT, "Cu&t", edit & CM_EDITFLAG_CAN_CUT);
    AddItem(model, MENU_ID_COPY, "&Copy", edit & CM_EDITFLAG_CAN_COPY);
    AddItem(model, MENU_ID_PASTE, "&Paste", edit & CM_EDITFLAG_CAN_PASTE);
    AddItem(model, MENU_ID_DELETE, "&Delete", edit & CM_EDITFLAG_CAN_DELETE);
    model->AddSeparator();
    AddItem(model, MENU_ID_SELECT_ALL, "Select &all",
            edit & CM_EDITFLAG_CAN_SELECT_ALL);
  } else if (params->GetTypeFlags() & CM_TYPEFLAG_SELECTION) {
    AddItem(model, MENU_ID_COPY, "&Copy", true);
  } else if (params->GetTypeFlags() & CM_TYPEFLAG_PAGE) {
    AddItem(model, MENU_ID_BACK, "&Back", browser_->CanGoBack());
    AddItem(model, MENU_ID_FORWARD, "&Forward", browser_->CanGoForward());
    model->AddSeparator();
    AddItem(model, MENU_ID_RELOAD, "Re&load", true);
  }
  handler->OnBeforeContextMenu(browser_, frame, params, model);
  if (model->GetCount() == 0 || !browser_->IsValid()) {
    return;
  }
  const int serial = ++last_serial_;
  pending_ = Pending{serial, handler, frame, params};
  CefRefPtr<RunContextMenuCallbackImpl> callback =
      new RunContextMenuCallbackImpl(browser_, serial);
  if (!handler->RunContextMenu(browser_, frame, params, model,
                               callback.get())) {
    // Nothing to show, and nothing to dismiss.
    if (pending_ && pending_->serial == serial) {
      pending_.reset();
    }
    if (!warned_) {
      warned_ = true;
      LOG(WARNING) << "CefContextMenuHandler::RunContextMenu returned false: "
                      "the engine has no context menu of its own";
    }
  }
}

void ContextMenus::Answer(int serial,
                          int command_id,
                          cef_event_flags_t flags) {
  if (!pending_ || pending_->serial != serial) {
    return;
  }
  Pending menu = std::move(*pending_);
  pending_.reset();
  if (!browser_->IsValid()) {
    return;
  }
  if (command_id >= 0 &&
      !menu.handler->OnContextMenuCommand(browser_, menu.frame, menu.params,
                                          command_id, flags)) {
    RunDefault(command_id);
  }
  menu.handler->OnContextMenuDismissed(browser_, menu.frame);
}

void ContextMenus::RunDefault(int command_id) {
  static const std::pair<int, const char*> kEdits[] = {
      {MENU_ID_UNDO, "undo"},   {MENU_ID_REDO, "redo"},
      {MENU_ID_CUT, "cut"},     {MENU_ID_COPY, "copy"},
      {MENU_ID_PASTE, "paste"}, {MENU_ID_DELETE, "delete"},
      {MENU_ID_SELECT_ALL, "selectAll"}};
  switch (command_id) {
    case MENU_ID_BACK:
      browser_->GoBack();
      return;
    case MENU_ID_FORWARD:
      browser_->GoForward();
      return;
    case MENU_ID_RELOAD:
      browser_->Reload();
      return;
    default:
      break;
  }
  for (const auto& [id, command] : kEdits) {
    if (id == command_id) {
      browser_->input()->RunEditCommand(command);
    }
  }
}

void ContextMenus::Release() {
  pending_.reset();
}

}  // namespace cefengine

#include "libcef/browser/popup_opener.h"

#include <utility>

#include <QJsonArray>

#include "include/cef_client.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/frame_impl.h"
#include "libcef/browser/frame_tree.h"
#include "libcef/browser/protocol_fields.h"

namespace cefengine {

namespace {

// window.open's feature strings ("width=300", "popup") as CEF's.
CefPopupFeatures PopupFeatures(const QJsonArray& features) {
  CefPopupFeatures result;
  for (const QJsonValue& feature : features) {
    const QString text = feature.toString();
    const QString name = text.section('=', 0, 0).trimmed().toLower();
    bool ok = false;
    const int value = text.section('=', 1).trimmed().toInt(&ok);
    if (name == QLatin1String("popup")) {
      result.isPopup = true;
    } else if (!ok) {
      continue;
    } else if (name == QLatin1String("left") ||
               name == QLatin1String("screenx")) {
      result.x = value;
      result.xSet = result.isPopup = true;
    } else if (name == QLatin1String("top") ||
               name == QLatin1String("screeny")) {
      result.y = value;
      result.ySet = result.isPopup = true;
    } else if (name == QLatin1String("width") ||
               name == QLatin1String("innerwidth")) {
      result.width = value;
      result.widthSet = result.isPopup = true;
    } else if (name == QLatin1String("height") ||
               name == QLatin1String("innerheight")) {
      result.height = value;
      result.heightSet = result.isPopup = true;
    }
  }
  return result;
}

}  // namespace

PopupOpener::PopupOpener(BrowserImpl* browser) : browser_(browser) {}

void PopupOpener::OnWindowOpen(const QJsonObject& params) {
  window_opens_.push_back(params);
}

void PopupOpener::Clear() {
  window_opens_.clear();
}

void PopupOpener::OnAttached(const QJsonObject& params) {
  const QString session_id = Str(params, "sessionId");
  const QJsonObject info = Obj(params, "targetInfo");
  const QString target_id = Str(info, "targetId");
  QJsonObject open;
  if (!window_opens_.empty()) {
    open = window_opens_.front();
    window_opens_.pop_front();
  }
  const QString url =
      open.contains(QLatin1String("url")) ? Str(open, "url") : Str(info, "url");
  QString name = Str(open, "windowName");
  if (name == QLatin1String("_blank")) {
    name.clear();
  }
  const CefPopupFeatures features =
      PopupFeatures(open.value(QLatin1String("windowFeatures")).toArray());
  const cef_window_open_disposition_t disposition =
      features.isPopup ? CEF_WOD_NEW_POPUP : CEF_WOD_NEW_FOREGROUND_TAB;

  CefRefPtr<FrameImpl> frame =
      browser_->frames()->Find(Str(info, "openerFrameId"));
  if (!frame) {
    frame = browser_->frames()->Find(browser_->target_id());
  }
  BrowserImpl::CreateParams popup;
  popup.client = browser_->client();
  popup.request_context = browser_->request_context();
  popup.settings = browser_->settings();
  popup.is_popup = true;
  popup.popup_size = CefSize(features.widthSet ? features.width : 0,
                             features.heightSet ? features.height : 0);
  CefWindowInfo window_info;
  bool no_javascript_access = false;
  bool cancel = false;
  CefRefPtr<CefLifeSpanHandler> life_span =
      popup.client ? popup.client->GetLifeSpanHandler() : nullptr;
  if (life_span && frame) {
    cancel = life_span->OnBeforePopup(
        browser_, frame.get(), Cef(url), Cef(name), disposition,
        open.value(QLatin1String("userGesture")).toBool(), features,
        window_info, popup.client, popup.settings, popup.extra_info,
        &no_javascript_access);
  }
  if (cancel || !popup.client || !browser_->IsValid()) {
    browser_->chromium()->DiscardTarget(target_id, session_id);
    return;
  }
  BrowserImpl::CreatePopup(browser_, std::move(popup), target_id, session_id);
}

}  // namespace cefengine

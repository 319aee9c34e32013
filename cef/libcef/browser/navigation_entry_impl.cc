#include "libcef/browser/navigation_entry_impl.h"

namespace cefengine {

namespace {

CefString StringField(const QJsonObject& object, const char* name) {
  return CefString(object.value(QLatin1String(name)).toString().toStdString());
}

}  // namespace

cef_transition_type_t TransitionFromProtocol(const QString& name) {
  struct Mapping {
    const char* name;
    int type;
  };
  static constexpr Mapping kMappings[] = {
      {"link", TT_LINK},
      {"typed", TT_EXPLICIT},
      {"address_bar", TT_EXPLICIT | TT_DIRECT_LOAD_FLAG},
      {"auto_bookmark", TT_AUTO_BOOKMARK},
      {"auto_subframe", TT_AUTO_SUBFRAME},
      {"manual_subframe", TT_MANUAL_SUBFRAME},
      {"generated", TT_GENERATED},
      {"auto_toplevel", TT_AUTO_TOPLEVEL},
      {"form_submit", TT_FORM_SUBMIT},
      {"reload", TT_RELOAD},
      {"keyword", TT_KEYWORD},
      {"keyword_generated", TT_KEYWORD_GENERATED},
  };
  for (const Mapping& mapping : kMappings) {
    if (name == QLatin1String(mapping.name)) {
      return static_cast<cef_transition_type_t>(mapping.type);
    }
  }
  return TT_LINK;
}

NavigationEntryImpl::NavigationEntryImpl(const QJsonObject& entry,
                                         int http_status)
    : entry_(entry), http_status_(http_status) {}

CefString NavigationEntryImpl::GetURL() {
  return StringField(entry_, "url");
}

CefString NavigationEntryImpl::GetDisplayURL() {
  return StringField(entry_, "url");
}

CefString NavigationEntryImpl::GetOriginalURL() {
  const QString typed = entry_.value(QLatin1String("userTypedURL")).toString();
  return typed.isEmpty() ? GetURL() : CefString(typed.toStdString());
}

CefString NavigationEntryImpl::GetTitle() {
  return StringField(entry_, "title");
}

NavigationEntryImpl::TransitionType NavigationEntryImpl::GetTransitionType() {
  return TransitionFromProtocol(
      entry_.value(QLatin1String("transitionType")).toString());
}

}  // namespace cefengine

// Root of the events that carry Qt input to a browser. An event is built on
// the stack from the Qt event, sent once and dropped; the constructor copies
// all it needs, since the Qt event does not outlive the handler. Qt main
// thread.

#pragma once

#include "include/cef_browser.h"

class InputEvent {
 public:
  explicit InputEvent(CefRefPtr<CefBrowser> browser)
      : m_host(browser ? browser->GetHost() : nullptr) {}
  virtual ~InputEvent() {}

  // Hands the event to the browser host; does nothing without one.
  virtual void send() const = 0;

 protected:
  CefRefPtr<CefBrowserHost> m_host;
};

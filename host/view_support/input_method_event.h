// Input method composition: committed text, or the preedit string being
// composed, or the end of a composition.

#pragma once

#include <QString>

#include "host/view_support/input_event.h"

class QInputMethodEvent;

class InputMethodEvent : public InputEvent {
 public:
  InputMethodEvent(CefRefPtr<CefBrowser> browser, QInputMethodEvent* event);

  // Commits the commit string, then shows the preedit string as the current
  // composition, underlined as a whole with the caret where the input method
  // put it. An event with neither cancels the composition.
  void send() const override;

 private:
  QString m_commitString;
  QString m_preeditString;
  // Caret position inside the preedit string.
  int m_cursor;
};

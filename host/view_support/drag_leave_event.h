// A drag leaving the view without a drop.

#pragma once

#include "host/view_support/input_event.h"

class QDragLeaveEvent;

class DragLeaveEvent : public InputEvent {
 public:
  DragLeaveEvent(CefRefPtr<CefBrowser> browser, QDragLeaveEvent* event);

  void send() const override;
};

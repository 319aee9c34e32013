// The per-browser client: hands the engine the handlers that it consults for
// one browser. A getter returning null means default behaviour for that area.

#ifndef CEF_INCLUDE_CEF_CLIENT_H_
#define CEF_INCLUDE_CEF_CLIENT_H_
#pragma once

#include "include/cef_audio_handler.h"
#include "include/cef_base.h"
#include "include/cef_command_handler.h"
#include "include/cef_context_menu_handler.h"
#include "include/cef_dialog_handler.h"
#include "include/cef_display_handler.h"
#include "include/cef_download_handler.h"
#include "include/cef_drag_handler.h"
#include "include/cef_find_handler.h"
#include "include/cef_focus_handler.h"
#include "include/cef_frame_handler.h"
#include "include/cef_jsdialog_handler.h"
#include "include/cef_keyboard_handler.h"
#include "include/cef_life_span_handler.h"
#include "include/cef_load_handler.h"
#include "include/cef_permission_handler.h"
#include "include/cef_print_handler.h"
#include "include/cef_process_message.h"
#include "include/cef_render_handler.h"
#include "include/cef_request_handler.h"

// The engine may ask for a handler on any thread and more than once, so the
// getters should return the same objects each time.
class CefClient : public virtual CefBaseRefCounted {
 public:
  virtual CefRefPtr<CefAudioHandler> GetAudioHandler() { return nullptr; }

  virtual CefRefPtr<CefCommandHandler> GetCommandHandler() { return nullptr; }

  virtual CefRefPtr<CefContextMenuHandler> GetContextMenuHandler() {
    return nullptr;
  }

  virtual CefRefPtr<CefDialogHandler> GetDialogHandler() { return nullptr; }

  virtual CefRefPtr<CefDisplayHandler> GetDisplayHandler() { return nullptr; }

  virtual CefRefPtr<CefDownloadHandler> GetDownloadHandler() { return nullptr; }

  virtual CefRefPtr<CefDragHandler> GetDragHandler() { return nullptr; }

  virtual CefRefPtr<CefFindHandler> GetFindHandler() { return nullptr; }

  virtual CefRefPtr<CefFocusHandler> GetFocusHandler() { return nullptr; }

  virtual CefRefPtr<CefFrameHandler> GetFrameHandler() { return nullptr; }

  virtual CefRefPtr<CefPermissionHandler> GetPermissionHandler() {
    return nullptr;
  }

  virtual CefRefPtr<CefJSDialogHandler> GetJSDialogHandler() { return nullptr; }

  virtual CefRefPtr<CefKeyboardHandler> GetKeyboardHandler() { return nullptr; }

  virtual CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() { return nullptr; }

  virtual CefRefPtr<CefLoadHandler> GetLoadHandler() { return nullptr; }

  virtual CefRefPtr<CefPrintHandler> GetPrintHandler() { return nullptr; }

  // Required for off-screen rendering.
  virtual CefRefPtr<CefRenderHandler> GetRenderHandler() { return nullptr; }

  virtual CefRefPtr<CefRequestHandler> GetRequestHandler() { return nullptr; }

  // A message from |frame| in |source_process|. True if it was handled.
  // |message| must not be kept beyond the call.
  virtual bool OnProcessMessageReceived(CefRefPtr<CefBrowser> browser,
                                        CefRefPtr<CefFrame> frame,
                                        CefProcessId source_process,
                                        CefRefPtr<CefProcessMessage> message) {
    return false;
  }
};

#endif  // CEF_INCLUDE_CEF_CLIENT_H_

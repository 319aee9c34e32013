// One frame of a page: the main frame or an iframe. Browser-side methods may
// be called on any thread unless noted.

#ifndef CEF_INCLUDE_CEF_FRAME_H_
#define CEF_INCLUDE_CEF_FRAME_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_process_message.h"
#include "include/cef_stream.h"
#include "include/cef_string_visitor.h"

class CefBrowser;
class CefDOMVisitor;
class CefRequest;
class CefURLRequest;
class CefURLRequestClient;
class CefV8Context;

class CefFrame : public virtual CefBaseRefCounted {
 public:
  // False once the frame is gone.
  virtual bool IsValid() = 0;

  // Editing commands on whatever has the focus in this frame.
  virtual void Undo() = 0;
  virtual void Redo() = 0;
  virtual void Cut() = 0;
  virtual void Copy() = 0;
  virtual void Paste() = 0;
  virtual void Delete() = 0;
  virtual void SelectAll() = 0;

  // Opens the frame's HTML source in the default text viewer.
  virtual void ViewSource() = 0;
  // Hands the HTML source, or the visible text, to |visitor| later.
  virtual void GetSource(CefRefPtr<CefStringVisitor> visitor) = 0;
  virtual void GetText(CefRefPtr<CefStringVisitor> visitor) = 0;

  virtual void LoadRequest(CefRefPtr<CefRequest> request) = 0;
  virtual void LoadURL(const CefString& url) = 0;
  // Runs |code| in the frame; |script_url| and |start_line| only label errors.
  virtual void ExecuteJavaScript(const CefString& code,
                                 const CefString& script_url,
                                 int start_line) = 0;

  virtual bool IsMain() = 0;
  virtual bool IsFocused() = 0;
  virtual CefString GetName() = 0;
  // Globally unique; empty for a frame that is not valid.
  virtual CefString GetIdentifier() = 0;
  // Null for the main frame.
  virtual CefRefPtr<CefFrame> GetParent() = 0;
  virtual CefString GetURL() = 0;
  virtual CefRefPtr<CefBrowser> GetBrowser() = 0;

  // Render process only.
  virtual CefRefPtr<CefV8Context> GetV8Context() = 0;
  virtual void VisitDOM(CefRefPtr<CefDOMVisitor> visitor) = 0;

  virtual CefRefPtr<CefURLRequest> CreateURLRequest(
      CefRefPtr<CefRequest> request,
      CefRefPtr<CefURLRequestClient> client) = 0;

  // Sends |message| to the same frame in |target_process|.
  virtual void SendProcessMessage(CefProcessId target_process,
                                  CefRefPtr<CefProcessMessage> message) = 0;
};

#endif  // CEF_INCLUDE_CEF_FRAME_H_

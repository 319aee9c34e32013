// The frames of one browser's page, by Chromium's frame id, kept for callers
// on any thread. The main frame outlives its page, so that its LoadURL can
// bring a page back after Chromium went.

#ifndef CEF_LIBCEF_BROWSER_FRAME_TREE_H_
#define CEF_LIBCEF_BROWSER_FRAME_TREE_H_

#include <cstddef>
#include <map>
#include <mutex>
#include <vector>

#include <QString>

#include "include/cef_frame.h"

namespace cefengine {

class BrowserImpl;
class FrameImpl;

// Any thread. Owned by its browser.
class FrameTree {
 public:
  explicit FrameTree(BrowserImpl* browser);
  ~FrameTree();
  FrameTree(const FrameTree&) = delete;
  FrameTree& operator=(const FrameTree&) = delete;

  CefRefPtr<FrameImpl> Find(const QString& id) const;
  CefRefPtr<FrameImpl> Main() const;
  CefRefPtr<FrameImpl> FindByName(const CefString& name) const;
  size_t Count() const;
  std::vector<CefString> Identifiers() const;
  std::vector<CefString> Names() const;

  // A frame the page attached; without |parent_id| the page's main frame,
  // which is the one the client had before the page existed (made with an
  // empty id), or replaces the one of a page made anew. Once closed, the
  // frame is made invalid at once.
  CefRefPtr<FrameImpl> Add(const QString& id, const QString& parent_id);
  // A frame the page detached; never the main frame.
  void Remove(const QString& id);
  // The page went: every frame but the main one is made invalid.
  void DropSubframes();
  // The browser closed: every frame is made invalid. The frames hold the
  // browser: dropping them ends the cycle.
  void Close();
  // CefShutdown came with the browser open: lets go of every frame.
  void Release();

 private:
  // Closes the tree and hands over every frame, outside the lock.
  std::map<QString, CefRefPtr<FrameImpl>> TakeAll();

  BrowserImpl* const browser_;
  mutable std::mutex mutex_;
  // Guarded by |mutex_|.
  bool closed_ = false;
  CefRefPtr<FrameImpl> main_frame_;
  std::map<QString, CefRefPtr<FrameImpl>> frames_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_FRAME_TREE_H_

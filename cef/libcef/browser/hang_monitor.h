// Watches whether a page's renderer still answers, and tells the client as
// CEF's hung-renderer check does: CefRequestHandler::OnRenderProcessUnresponsive
// with a Wait / Terminate callback, OnRenderProcessResponsive when it answers
// again.

#ifndef CEF_LIBCEF_BROWSER_HANG_MONITOR_H_
#define CEF_LIBCEF_BROWSER_HANG_MONITOR_H_

#include <atomic>
#include <chrono>

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class HangMonitor {
 public:
  // How long a page command may wait for its reply, and how long the
  // renderer then has to answer a trivial script before it counts as hung.
  static std::chrono::milliseconds CommandDeadline();
  static std::chrono::milliseconds ProbeDeadline();
  // For tests that cannot wait the real delays. Any thread.
  static void SetDeadlines(std::chrono::milliseconds command,
                           std::chrono::milliseconds probe);

  explicit HangMonitor(BrowserImpl* browser);
  HangMonitor(const HangMonitor&) = delete;
  HangMonitor& operator=(const HangMonitor&) = delete;

  // A command of the page got no reply in time: a slow command or a hung
  // renderer; a probe tells which.
  void OnCommandExpired();
  // The page's renderer went (crash, termination, Chromium's end, close):
  // whatever was under way is forgotten.
  void Reset();

  // Any thread.
  bool unresponsive() const { return unresponsive_.load(); }
  // The client chose Terminate and the renderer was told to end: its end is
  // a kill, not a crash.
  bool terminating() const { return terminating_; }

  // The client's decision; |report| names the report it answers.
  void Wait(int report);
  void Terminate(int report);

 private:
  void Probe();
  void OnProbeAnswered(int generation, bool answered);
  void Report();

  BrowserImpl* const browser_;
  // Bumped by Reset: answers to older probes and reports are ignored.
  int generation_ = 0;
  bool probing_ = false;
  std::atomic<bool> unresponsive_{false};
  bool terminating_ = false;
  // The client asked to wait: report again if the next probe fails too.
  bool report_again_ = false;
  int report_ = 0;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_HANG_MONITOR_H_

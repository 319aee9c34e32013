// Where the input method's window belongs: headless Chromium never calls
// OnImeCompositionRangeChanged, so a watcher in the engine's world reports
// the caret of the focused editable whenever typing, the selection or the
// composition moves it.

#ifndef CEF_LIBCEF_BROWSER_CARET_REPORTER_H_
#define CEF_LIBCEF_BROWSER_CARET_REPORTER_H_

#include <QString>

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class CaretReporter {
 public:
  static constexpr char kBinding[] = "__broviaCaret";
  // The watcher, for the main frame's documents in the engine's world.
  static QString WatcherScript();

  explicit CaretReporter(BrowserImpl* browser);
  CaretReporter(const CaretReporter&) = delete;
  CaretReporter& operator=(const CaretReporter&) = delete;

  // {"x", "y", "width", "height"} in CSS pixels of the viewport, and the
  // selection {"start", "end"} in the editable's text.
  void OnReport(const QString& payload);

 private:
  BrowserImpl* const browser_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_CARET_REPORTER_H_

// The mouse cursor and tooltips of a page. Chromium tells neither over the
// protocol, so a watcher in the engine's world reports what lies under the
// pointer, and this turns it into CefDisplayHandler's OnCursorChange and
// OnTooltip.

#ifndef CEF_LIBCEF_BROWSER_POINTER_FEEDBACK_H_
#define CEF_LIBCEF_BROWSER_POINTER_FEEDBACK_H_

#include <QImage>
#include <QPoint>
#include <QString>

#include "include/internal/cef_types.h"

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class PointerFeedback {
 public:
  // The binding the watcher reports through, and the watcher itself, for
  // every document of the engine's world.
  static constexpr char kBinding[] = "__broviaPointer";
  static QString WatcherScript();

  // A CSS cursor value as Chromium computes it: the first image that
  // decodes, else the keyword at its end.
  struct CssCursor {
    QString image_url;
    bool has_hotspot = false;
    QPoint hotspot;
    cef_cursor_type_t keyword = CT_POINTER;
  };
  static CssCursor ParseCursor(const QString& css);
  // A CSS cursor keyword ("pointer", "ew-resize", ...); unknown ones are
  // the arrow.
  static cef_cursor_type_t CursorType(const QString& keyword);
  // A cursor image as CEF hands it over: 32-bit BGRA, premultiplied. Null
  // when |data| is no image Qt reads or is larger than a cursor may be.
  static QImage DecodeCursorImage(const QByteArray& data);

  explicit PointerFeedback(BrowserImpl* browser);
  PointerFeedback(const PointerFeedback&) = delete;
  PointerFeedback& operator=(const PointerFeedback&) = delete;

  // One report of the watcher: {"cursor": css, "image": data URL} or
  // {"tooltip": text}.
  void OnReport(const QString& payload);

 private:
  void ReportCursor(const QString& css, const QString& image);
  void ReportTooltip(const QString& text);

  BrowserImpl* const browser_;
  QString last_cursor_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_POINTER_FEEDBACK_H_

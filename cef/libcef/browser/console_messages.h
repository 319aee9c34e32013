// A page's console messages for CefDisplayHandler::OnConsoleMessage: the
// console API's calls, uncaught exceptions and the browser's own log
// entries, as one line with its source and line number.

#ifndef CEF_LIBCEF_BROWSER_CONSOLE_MESSAGES_H_
#define CEF_LIBCEF_BROWSER_CONSOLE_MESSAGES_H_

#include <QJsonObject>
#include <QString>

#include "include/internal/cef_types.h"

namespace cefengine {

class BrowserImpl;
class ScriptContexts;

// Engine UI thread only. Owned by its page's PageEvents.
class ConsoleMessages {
 public:
  // |contexts| tells which frame a message without a source came from.
  ConsoleMessages(BrowserImpl* browser, const ScriptContexts* contexts);
  ConsoleMessages(const ConsoleMessages&) = delete;
  ConsoleMessages& operator=(const ConsoleMessages&) = delete;

  // Runtime.consoleAPICalled and Runtime.exceptionThrown of |session_id|
  // (empty: the page's own), and Log.entryAdded.
  void OnConsoleApiCalled(const QJsonObject& params, const QString& session_id);
  void OnException(const QJsonObject& params, const QString& session_id);
  void OnLogEntry(const QJsonObject& params);

 private:
  void Report(cef_log_severity_t level,
              const QString& message,
              const QString& source,
              int line);
  // The address of the frame a context belongs to, else the main frame's.
  QString SourceOfContext(int context_id, const QString& session_id) const;

  BrowserImpl* const browser_;
  const ScriptContexts* const contexts_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_CONSOLE_MESSAGES_H_

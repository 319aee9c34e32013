#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QString>

#include "include/internal/cef_types.h"
#include "libcef/browser/caret_reporter.h"
#include "libcef/browser/context_menus.h"
#include "libcef/browser/drag_source.h"
#include "libcef/browser/page_events.h"
#include "libcef/browser/pointer_feedback.h"
#include "libcef/browser/printing.h"
#include "libcef/network/scheme_proxy.h"
#include "libcef/page_scripts.h"

namespace {

using cefengine::ScriptSource;

// A placeholder left in a script is an undefined name in the page: the
// script compiles and then throws.
const QRegularExpression kPlaceholder(QStringLiteral("__[A-Z][A-Z_]*__"));

TEST(PageScripts, ComeFromTheLibraryWithEveryPlaceholderFilled) {
  EXPECT_TRUE(ScriptSource("title_watcher.js").contains(kPlaceholder));
  EXPECT_TRUE(ScriptSource("no_such_script.js").isEmpty());

  const std::pair<QString, const char*> filled[] = {
      {cefengine::PointerFeedback::WatcherScript(),
       cefengine::PointerFeedback::kBinding},
      {cefengine::CaretReporter::WatcherScript(),
       cefengine::CaretReporter::kBinding},
      {cefengine::ContextMenus::WatcherScript(),
       cefengine::ContextMenus::kBinding},
      {cefengine::DragSource::WatcherScript(), cefengine::DragSource::kBinding},
      {cefengine::Printing::PrintWrapperScript(),
       cefengine::Printing::kPrintBinding},
      {cefengine::PageEvents::TitleWatcherScript(),
       cefengine::PageEvents::kTitleBinding},
      {cefengine::PageEvents::TakeFocusWatcherScript(),
       cefengine::PageEvents::kTakeFocusBinding},
  };
  for (const auto& [script, binding] : filled) {
    EXPECT_TRUE(script.contains(QLatin1String(binding))) << binding;
    EXPECT_FALSE(script.contains(kPlaceholder)) << binding;
  }

  const QString proxy = cefengine::SchemeProxy::PageScript(
      {{"myapp", CEF_SCHEME_OPTION_STANDARD | CEF_SCHEME_OPTION_FETCH_ENABLED}});
  EXPECT_TRUE(proxy.contains(QStringLiteral("new Set([\"myapp\"])")));
  EXPECT_TRUE(
      proxy.contains(QStringLiteral("'https://custom-scheme.invalid/'")));
  EXPECT_FALSE(proxy.contains(kPlaceholder));
}

}  // namespace

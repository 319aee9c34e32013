#include "handlers/find_handler.h"

#include "host/view_support/conversions.h"

void FindHandler::OnFindResult(CefRefPtr<CefBrowser>, int identifier, int count, const CefRect& selectionRect,
                               int activeMatchOrdinal, bool finalUpdate)
{
    Q_EMIT searchResultsReady(identifier, count, Conversions::convertRect(selectionRect), activeMatchOrdinal,
                              finalUpdate);
}

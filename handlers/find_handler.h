#pragma once

#include "include/cef_find_handler.h"

#include <QObject>
#include <QRect>

// Find-in-page results as a signal, partial ones included. Engine UI thread.
class FindHandler : public QObject, public CefFindHandler
{
    Q_OBJECT

public:
    void OnFindResult(CefRefPtr<CefBrowser> browser, int identifier, int count, const CefRect& selectionRect,
                      int activeMatchOrdinal, bool finalUpdate) override;

Q_SIGNALS:
    void searchResultsReady(int searchID, int count, QRect searchRect, int matchIndex, bool final);

private:
    IMPLEMENT_REFCOUNTING(FindHandler);
};

#pragma once

#include "host/export/brovia_export.h"

class IQCefViewImpl;
class QWidget;
struct QCefViewSettings;

// The host's factory of views. Makes the widget and nothing else: the browser comes with the
// first load. Qt main thread.
class BROVIA_EXPORT QCefViewImplService
{
public:
    QCefViewImplService() = delete;

    // The caller owns the view, directly or through Qt parenting.
    static IQCefViewImpl* create(QWidget* parent, const QCefViewSettings& settings);
};

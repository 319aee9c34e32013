#pragma once

#include <QString>

// The record of one view, given to the view's creation.
struct QCefViewSettings
{
    // 2: the engine's own window; any other value: off-screen rendering.
    int renderingMode = 0;
    // 0 to 3: which keys go to the page.
    int keyboardMode = 0;
    // The view's cache directory, relative to the engine's cache root unless absolute.
    QString cachePath;
};

// Reaches into an X server from outside, as a fault would. Xlib stays in the
// .cpp: its macros clash with GoogleTest's and Qt's names.
#pragma once

#include <string>

// Destroys the mapped top-level windows of |width| x |height| on |display|;
// returns how many, or -1 if the display cannot be opened.
int destroyTopLevelWindows(const std::string& display, int width, int height);

#include "x_windows.h"

#include <X11/Xlib.h>

int destroyTopLevelWindows(const std::string& name, int width, int height) {
  Display* display = XOpenDisplay(name.c_str());
  if (!display) return -1;
  Window root = 0, parent = 0, *children = nullptr;
  unsigned count = 0;
  int destroyed = 0;
  if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count)) {
    for (unsigned i = 0; i < count; ++i) {
      XWindowAttributes attributes;
      if (XGetWindowAttributes(display, children[i], &attributes) && attributes.map_state == IsViewable &&
          attributes.width == width && attributes.height == height) {
        XDestroyWindow(display, children[i]);
        ++destroyed;
      }
    }
    XFree(children);
  }
  XCloseDisplay(display);
  return destroyed;
}

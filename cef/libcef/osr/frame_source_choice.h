#ifndef CEF_LIBCEF_OSR_FRAME_SOURCE_CHOICE_H_
#define CEF_LIBCEF_OSR_FRAME_SOURCE_CHOICE_H_

#include <string>

namespace cefengine {

// Which frame source the engine uses, from BROVIA_FRAME_SOURCE ("x11",
// "screencast" or "auto", the default) and what is installed. Decided once
// per process; a missing Xvfb or full Chromium falls back to the screencast
// with one log line.
struct FrameSourceChoice {
  bool x11 = false;
  // The full Chromium binary and Xvfb, when |x11|.
  std::string chromium;
  std::string xvfb;

  // |configured|: CefSettings::browser_subprocess_path (may be empty).
  static const FrameSourceChoice& Get(const std::string& configured);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_OSR_FRAME_SOURCE_CHOICE_H_

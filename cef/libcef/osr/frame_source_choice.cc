#include "libcef/osr/frame_source_choice.h"

#include <cctype>
#include <cstdlib>
#include <sstream>

#include "include/base/cef_logging.h"
#include "libcef/chromium_locator.h"
#include "libcef/devtools/chromium_process.h"

namespace cefengine {

namespace {

// An executable |name| in PATH, or empty.
std::string FindOnPath(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::istringstream dirs(path ? path : "");
  std::string dir;
  while (std::getline(dirs, dir, ':')) {
    if (dir.empty())
      continue;
    const std::string candidate = dir + "/" + name;
    if (ChromiumLocator::IsExecutableFile(candidate))
      return candidate;
  }
  return std::string();
}

std::string BaseName(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

const FrameSourceChoice& FrameSourceChoice::Get(const std::string& configured) {
  static const FrameSourceChoice* choice = [&] {
    auto* made = new FrameSourceChoice();
    const char* env = std::getenv("BROVIA_FRAME_SOURCE");
    std::string wanted = env ? env : "";
    for (char& c : wanted)
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (wanted.empty())
      wanted = "auto";
    if (wanted != "x11" && wanted != "screencast" && wanted != "auto") {
      LOG(WARNING) << "BROVIA_FRAME_SOURCE=" << wanted
                   << " is not x11, screencast or auto; using auto";
      wanted = "auto";
    }
    if (wanted == "screencast")
      return made;
    // A full Chromium: the configured one unless it is the headless shell,
    // else Debian's binary (its /usr/bin wrapper adds flags of its own).
    std::string chromium;
    if (!configured.empty() &&
        BaseName(configured).find("headless") == std::string::npos) {
      chromium = ChromiumProcess::resolveProgram(configured);
    } else if (ChromiumLocator::IsExecutableFile("/usr/lib/chromium/chromium")) {
      chromium = "/usr/lib/chromium/chromium";
    } else {
      const std::string found = FindOnPath("chromium");
      chromium = found.empty() ? found : ChromiumProcess::resolveProgram(found);
    }
    std::string xvfb = FindOnPath("Xvfb");
    if (xvfb.empty() && ChromiumLocator::IsExecutableFile("/usr/bin/Xvfb"))
      xvfb = "/usr/bin/Xvfb";
    if (chromium.empty() || !ChromiumLocator::IsExecutableFile(chromium) ||
        xvfb.empty()) {
      LOG(WARNING) << "Frame source: "
                   << (xvfb.empty() ? "no Xvfb" : "no full Chromium")
                   << " installed (packages xvfb and chromium), so frames come "
                      "from the slower PNG screencast (BROVIA_FRAME_SOURCE="
                   << wanted << ")";
      return made;
    }
    made->x11 = true;
    made->chromium = chromium;
    made->xvfb = xvfb;
    return made;
  }();
  return *choice;
}

}  // namespace cefengine

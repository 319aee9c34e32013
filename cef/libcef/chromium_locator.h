// Finds the Chromium executable that the engine drives.

#ifndef CEF_LIBCEF_CHROMIUM_LOCATOR_H_
#define CEF_LIBCEF_CHROMIUM_LOCATOR_H_

#include <string>
#include <vector>

namespace cefengine {

class ChromiumLocator {
 public:
  // |preferred| are full paths tried first; |search_path| is a PATH-style
  // list searched next for each of |names|, in order.
  ChromiumLocator(std::vector<std::string> preferred,
                  std::string search_path,
                  std::vector<std::string> names);

  // Debian's layout and the process's PATH. The real binary of Debian's
  // chromium-headless-shell comes first: its /usr/bin entry is a shell script
  // that does not exec, which would put a shell between the engine and Chromium.
  static ChromiumLocator ForThisSystem();

  // The absolute path of the executable to use, or empty if there is none.
  // A non-empty |configured| path is the only candidate then.
  std::string Locate(const std::string& configured) const;

  // A regular file (after symbolic links) that this process may execute.
  static bool IsExecutableFile(const std::string& path);

 private:
  std::vector<std::string> preferred_;
  std::string search_path_;
  std::vector<std::string> names_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_CHROMIUM_LOCATOR_H_

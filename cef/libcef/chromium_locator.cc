#include "libcef/chromium_locator.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <utility>

namespace cefengine {

namespace {

std::string Absolute(const std::string& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return error ? path : absolute.lexically_normal().string();
}

}  // namespace

ChromiumLocator::ChromiumLocator(std::vector<std::string> preferred,
                                 std::string search_path,
                                 std::vector<std::string> names)
    : preferred_(std::move(preferred)),
      search_path_(std::move(search_path)),
      names_(std::move(names)) {}

ChromiumLocator ChromiumLocator::ForThisSystem() {
  const char* path = std::getenv("PATH");
  return ChromiumLocator({"/usr/lib/chromium/chromium-headless-shell"},
                         path ? path : "",
                         {"chromium-headless-shell", "chromium"});
}

std::string ChromiumLocator::Locate(const std::string& configured) const {
  if (!configured.empty()) {
    return IsExecutableFile(configured) ? Absolute(configured) : std::string();
  }
  for (const std::string& candidate : preferred_) {
    if (IsExecutableFile(candidate)) {
      return Absolute(candidate);
    }
  }
  for (const std::string& name : names_) {
    std::istringstream dirs(search_path_);
    std::string dir;
    while (std::getline(dirs, dir, ':')) {
      // An empty entry would mean the working directory: not a place to
      // pick a browser from.
      if (dir.empty()) {
        continue;
      }
      const std::string candidate = dir + "/" + name;
      if (IsExecutableFile(candidate)) {
        return Absolute(candidate);
      }
    }
  }
  return std::string();
}

bool ChromiumLocator::IsExecutableFile(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::is_regular_file(path, error) &&
         access(path.c_str(), X_OK) == 0;
}

}  // namespace cefengine

#ifndef CEF_LIBCEF_PAGE_SCRIPTS_H_
#define CEF_LIBCEF_PAGE_SCRIPTS_H_

#include <QString>

namespace cefengine {

// The text of cef/scripts/|file|, built into the library. Values from C++
// go in by replacing the script's placeholder identifiers (__BINDING__ and
// the like), or as arguments when the script is a function.
QString ScriptSource(const char* file);

}  // namespace cefengine

#endif  // CEF_LIBCEF_PAGE_SCRIPTS_H_

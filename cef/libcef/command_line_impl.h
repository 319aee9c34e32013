// CefCommandLine with Chromium's parsing rules, and the process-wide command
// line behind CefCommandLine::GetGlobalCommandLine().

#ifndef CEF_LIBCEF_COMMAND_LINE_IMPL_H_
#define CEF_LIBCEF_COMMAND_LINE_IMPL_H_

#include <map>
#include <string>
#include <vector>

#include "include/cef_command_line.h"

namespace cefengine {

class CommandLineImpl : public CefCommandLine {
 public:
  explicit CommandLineImpl(bool read_only);

  bool IsValid() override;
  bool IsReadOnly() override;
  CefRefPtr<CefCommandLine> Copy() override;
  void InitFromArgv(int argc, const char* const* argv) override;
  void InitFromString(const CefString& command_line) override;
  void Reset() override;
  void GetArgv(std::vector<CefString>& argv) override;
  CefString GetCommandLineString() override;
  CefString GetProgram() override;
  void SetProgram(const CefString& program) override;
  bool HasSwitches() override;
  bool HasSwitch(const CefString& name) override;
  CefString GetSwitchValue(const CefString& name) override;
  void GetSwitches(SwitchMap& switches) override;
  void AppendSwitch(const CefString& name) override;
  void AppendSwitchWithValue(const CefString& name,
                             const CefString& value) override;
  bool HasArguments() override;
  void GetArguments(ArgumentList& arguments) override;
  void AppendArgument(const CefString& argument) override;
  void PrependWrapper(const CefString& wrapper) override;

  // Replaces the content with the tokens of a full argv (program first).
  void InitFromTokens(const std::vector<std::string>& tokens);

 private:
  // False (after logging) when the command line is read-only.
  bool CheckWritable() const;
  void AddSwitch(const std::string& name, const std::string& value);
  void AddArgument(const std::string& argument);

  bool read_only_;
  // Program, switches, then arguments, as UTF-8 tokens.
  std::vector<std::string> argv_;
  // Index in |argv_| of the first argument.
  size_t begin_args_ = 1;
  // Lowercase switch names (without prefix) to values.
  std::map<std::string, std::string> switches_;

  IMPLEMENT_REFCOUNTING(CommandLineImpl);
};

// Sets the global command line from this process's arguments. Called once by
// CefInitialize() / CefExecuteProcess(); until then the global command line
// is read from /proc/self/cmdline. Any thread.
void SetGlobalCommandLine(int argc, const char* const* argv);

}  // namespace cefengine

#endif  // CEF_LIBCEF_COMMAND_LINE_IMPL_H_

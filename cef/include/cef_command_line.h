// A parsed command line: a program, switches ("--name" or "--name=value",
// also with a single "-") and plain arguments. Switches come before
// arguments; after a "--" token everything is an argument. Switch names are
// lowercased; values keep their case. Usable before CefInitialize().

#ifndef CEF_INCLUDE_CEF_COMMAND_LINE_H_
#define CEF_INCLUDE_CEF_COMMAND_LINE_H_
#pragma once

#include <map>
#include <vector>

#include "include/cef_base.h"

class CefCommandLine : public virtual CefBaseRefCounted {
 public:
  typedef std::vector<CefString> ArgumentList;
  typedef std::map<CefString, CefString> SwitchMap;

  static CefRefPtr<CefCommandLine> CreateCommandLine();

  // The command line of this process, read-only.
  static CefRefPtr<CefCommandLine> GetGlobalCommandLine();

  virtual bool IsValid() = 0;
  // Modifying calls on a read-only command line do nothing.
  virtual bool IsReadOnly() = 0;
  // A writable copy.
  virtual CefRefPtr<CefCommandLine> Copy() = 0;

  // Replaces the content with |argv| (argv[0] is the program).
  virtual void InitFromArgv(int argc, const char* const* argv) = 0;

  // Replaces the content with a command line string, split at whitespace
  // outside double quotes. (CEF offers this on Windows only.)
  virtual void InitFromString(const CefString& command_line) = 0;

  // Leaves an empty program and no switches or arguments.
  virtual void Reset() = 0;

  // Program, then switches in the order added, then arguments.
  virtual void GetArgv(std::vector<CefString>& argv) = 0;

  // The argv tokens joined with spaces, without quoting.
  virtual CefString GetCommandLineString() = 0;

  virtual CefString GetProgram() = 0;
  virtual void SetProgram(const CefString& program) = 0;

  virtual bool HasSwitches() = 0;
  virtual bool HasSwitch(const CefString& name) = 0;
  // Empty if the switch is absent or has no value.
  virtual CefString GetSwitchValue(const CefString& name) = 0;
  virtual void GetSwitches(SwitchMap& switches) = 0;
  virtual void AppendSwitch(const CefString& name) = 0;
  virtual void AppendSwitchWithValue(const CefString& name,
                                     const CefString& value) = 0;

  virtual bool HasArguments() = 0;
  virtual void GetArguments(ArgumentList& arguments) = 0;
  virtual void AppendArgument(const CefString& argument) = 0;

  // Puts a command before the program, e.g. "gdb --args".
  virtual void PrependWrapper(const CefString& wrapper) = 0;
};

#endif  // CEF_INCLUDE_CEF_COMMAND_LINE_H_

#include "libcef/command_line_impl.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>

#include "include/base/cef_logging.h"

namespace cefengine {
namespace {

const char* const kSwitchPrefixes[] = {"--", "-"};
const char kSwitchTerminator[] = "--";
const char kSwitchValueSeparator = '=';

std::string TrimWhitespace(const std::string& text) {
  const char* const kSpace = " \t\n\r\f\v";
  size_t begin = text.find_first_not_of(kSpace);
  if (begin == std::string::npos) {
    return std::string();
  }
  size_t end = text.find_last_not_of(kSpace);
  return text.substr(begin, end - begin + 1);
}

std::string ToLowerAscii(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') {
      c = static_cast<char>(c - 'A' + 'a');
    }
  }
  return text;
}

size_t SwitchPrefixLength(const std::string& token) {
  for (const char* prefix : kSwitchPrefixes) {
    size_t length = strlen(prefix);
    if (token.compare(0, length, prefix) == 0) {
      return length;
    }
  }
  return 0;
}

// Splits "--name=value" into a lowercase name and a value. False for tokens
// that are not switches ("-", "--", plain words, or an empty name).
bool ParseSwitch(const std::string& token,
                 std::string* name,
                 std::string* value) {
  size_t prefix = SwitchPrefixLength(token);
  if (prefix == 0 || prefix == token.size()) {
    return false;
  }
  size_t separator = token.find(kSwitchValueSeparator, prefix);
  *name = ToLowerAscii(token.substr(prefix, separator - prefix));
  *value = separator == std::string::npos ? std::string()
                                           : token.substr(separator + 1);
  return !name->empty();
}

// Splits at whitespace outside double quotes; a backslash escapes a quote or
// a backslash inside quotes.
std::vector<std::string> SplitCommandLine(const std::string& text) {
  std::vector<std::string> tokens;
  std::string current;
  bool in_token = false;
  bool quoted = false;
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (quoted && c == '\\' && i + 1 < text.size() &&
        (text[i + 1] == '"' || text[i + 1] == '\\')) {
      current += text[++i];
    } else if (c == '"') {
      quoted = !quoted;
      in_token = true;
    } else if (!quoted && (c == ' ' || c == '\t' || c == '\n' || c == '\r')) {
      if (in_token) {
        tokens.push_back(current);
        current.clear();
        in_token = false;
      }
    } else {
      current += c;
      in_token = true;
    }
  }
  if (in_token) {
    tokens.push_back(current);
  }
  return tokens;
}

std::vector<std::string> ReadProcCmdline() {
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  std::string data((std::istreambuf_iterator<char>(file)),
                   std::istreambuf_iterator<char>());
  std::vector<std::string> tokens;
  size_t start = 0;
  while (start < data.size()) {
    size_t end = data.find('\0', start);
    if (end == std::string::npos) {
      end = data.size();
    }
    tokens.push_back(data.substr(start, end - start));
    start = end + 1;
  }
  return tokens;
}

std::mutex& GlobalMutex() {
  static std::mutex mutex;
  return mutex;
}

// Guarded by GlobalMutex(); read-only once created.
CefRefPtr<CommandLineImpl>& GlobalCommandLine() {
  static CefRefPtr<CommandLineImpl> global;
  return global;
}

}  // namespace

CommandLineImpl::CommandLineImpl(bool read_only) : read_only_(read_only) {
  argv_.emplace_back();
}

bool CommandLineImpl::CheckWritable() const {
  if (read_only_) {
    LOG(WARNING) << "ignoring a change to a read-only command line";
    return false;
  }
  return true;
}

bool CommandLineImpl::IsValid() {
  return true;
}

bool CommandLineImpl::IsReadOnly() {
  return read_only_;
}

CefRefPtr<CefCommandLine> CommandLineImpl::Copy() {
  CefRefPtr<CommandLineImpl> copy = new CommandLineImpl(false);
  copy->argv_ = argv_;
  copy->begin_args_ = begin_args_;
  copy->switches_ = switches_;
  return copy.get();
}

void CommandLineImpl::InitFromTokens(const std::vector<std::string>& tokens) {
  argv_.assign(1, tokens.empty() ? std::string() : TrimWhitespace(tokens[0]));
  begin_args_ = 1;
  switches_.clear();
  bool parse_switches = true;
  for (size_t i = 1; i < tokens.size(); ++i) {
    std::string token = TrimWhitespace(tokens[i]);
    std::string name;
    std::string value;
    // "--" itself stays as an argument, as in Chromium.
    parse_switches = parse_switches && token != kSwitchTerminator;
    if (parse_switches && ParseSwitch(token, &name, &value)) {
      AddSwitch(name, value);
    } else {
      AddArgument(token);
    }
  }
}

void CommandLineImpl::InitFromArgv(int argc, const char* const* argv) {
  if (!CheckWritable()) {
    return;
  }
  std::vector<std::string> tokens;
  for (int i = 0; argv && i < argc; ++i) {
    tokens.emplace_back(argv[i] ? argv[i] : "");
  }
  InitFromTokens(tokens);
}

void CommandLineImpl::InitFromString(const CefString& command_line) {
  if (!CheckWritable()) {
    return;
  }
  InitFromTokens(SplitCommandLine(command_line.ToString()));
}

void CommandLineImpl::Reset() {
  if (!CheckWritable()) {
    return;
  }
  InitFromTokens({});
}

void CommandLineImpl::GetArgv(std::vector<CefString>& argv) {
  for (const auto& token : argv_) {
    argv.push_back(CefString(token));
  }
}

CefString CommandLineImpl::GetCommandLineString() {
  std::string joined;
  for (const auto& token : argv_) {
    if (!joined.empty()) {
      joined += ' ';
    }
    joined += token;
  }
  return CefString(joined);
}

CefString CommandLineImpl::GetProgram() {
  return CefString(argv_[0]);
}

void CommandLineImpl::SetProgram(const CefString& program) {
  if (CheckWritable()) {
    argv_[0] = TrimWhitespace(program.ToString());
  }
}

bool CommandLineImpl::HasSwitches() {
  return !switches_.empty();
}

bool CommandLineImpl::HasSwitch(const CefString& name) {
  return switches_.count(ToLowerAscii(name.ToString())) > 0;
}

CefString CommandLineImpl::GetSwitchValue(const CefString& name) {
  auto it = switches_.find(ToLowerAscii(name.ToString()));
  return it == switches_.end() ? CefString() : CefString(it->second);
}

void CommandLineImpl::GetSwitches(SwitchMap& switches) {
  for (const auto& item : switches_) {
    switches.insert(
        std::make_pair(CefString(item.first), CefString(item.second)));
  }
}

void CommandLineImpl::AppendSwitch(const CefString& name) {
  AppendSwitchWithValue(name, CefString());
}

void CommandLineImpl::AppendSwitchWithValue(const CefString& name,
                                            const CefString& value) {
  if (!CheckWritable()) {
    return;
  }
  std::string key = name.ToString();
  key.erase(0, SwitchPrefixLength(key));
  if (key.empty()) {
    LOG(WARNING) << "ignoring a command line switch without a name";
    return;
  }
  AddSwitch(ToLowerAscii(key), value.ToString());
}

void CommandLineImpl::AddSwitch(const std::string& name,
                                const std::string& value) {
  switches_[name] = value;
  std::string token = kSwitchPrefixes[0] + name;
  if (!value.empty()) {
    token += kSwitchValueSeparator;
    token += value;
  }
  argv_.insert(argv_.begin() + static_cast<std::ptrdiff_t>(begin_args_),
               token);
  ++begin_args_;
}

bool CommandLineImpl::HasArguments() {
  return begin_args_ < argv_.size();
}

void CommandLineImpl::GetArguments(ArgumentList& arguments) {
  for (size_t i = begin_args_; i < argv_.size(); ++i) {
    arguments.push_back(CefString(argv_[i]));
  }
}

void CommandLineImpl::AppendArgument(const CefString& argument) {
  if (CheckWritable()) {
    AddArgument(argument.ToString());
  }
}

void CommandLineImpl::AddArgument(const std::string& argument) {
  argv_.push_back(argument);
}

void CommandLineImpl::PrependWrapper(const CefString& wrapper) {
  if (!CheckWritable()) {
    return;
  }
  std::vector<std::string> tokens = SplitCommandLine(wrapper.ToString());
  argv_.insert(argv_.begin(), tokens.begin(), tokens.end());
  begin_args_ += tokens.size();
}

void SetGlobalCommandLine(int argc, const char* const* argv) {
  CefRefPtr<CommandLineImpl> command_line = new CommandLineImpl(true);
  std::vector<std::string> tokens;
  for (int i = 0; argv && i < argc; ++i) {
    tokens.emplace_back(argv[i] ? argv[i] : "");
  }
  command_line->InitFromTokens(tokens);
  std::lock_guard<std::mutex> lock(GlobalMutex());
  GlobalCommandLine() = command_line;
}

}  // namespace cefengine

CefRefPtr<CefCommandLine> CefCommandLine::CreateCommandLine() {
  return new cefengine::CommandLineImpl(false);
}

CefRefPtr<CefCommandLine> CefCommandLine::GetGlobalCommandLine() {
  std::lock_guard<std::mutex> lock(cefengine::GlobalMutex());
  auto& global = cefengine::GlobalCommandLine();
  if (!global) {
    global = new cefengine::CommandLineImpl(true);
    global->InitFromTokens(cefengine::ReadProcCmdline());
  }
  return global.get();
}

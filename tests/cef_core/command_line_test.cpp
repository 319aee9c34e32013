#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "include/cef_command_line.h"
#include "libcef/command_line_impl.h"

namespace {

std::vector<std::string> Argv(CefRefPtr<CefCommandLine> command_line) {
  std::vector<CefString> argv;
  command_line->GetArgv(argv);
  return std::vector<std::string>(argv.begin(), argv.end());
}

TEST(CommandLineTest, ParsesSwitchesAndArguments) {
  const char* argv[] = {"/usr/bin/app", "--Remote-Debugging-Port=9222",
                        "file.html",    "-v",
                        "--lang=fr=CA", "--",
                        "--not-a-switch", " -x "};
  CefRefPtr<CefCommandLine> command_line = CefCommandLine::CreateCommandLine();
  command_line->InitFromArgv(8, argv);

  EXPECT_EQ(command_line->GetProgram().ToString(), "/usr/bin/app");
  EXPECT_TRUE(command_line->HasSwitch("remote-debugging-port"));
  EXPECT_EQ(command_line->GetSwitchValue("REMOTE-debugging-port").ToString(),
            "9222");
  EXPECT_TRUE(command_line->HasSwitch("v"));
  EXPECT_EQ(command_line->GetSwitchValue("v").ToString(), "");
  EXPECT_EQ(command_line->GetSwitchValue("lang").ToString(), "fr=CA");
  EXPECT_FALSE(command_line->HasSwitch("not-a-switch"));

  CefCommandLine::ArgumentList arguments;
  command_line->GetArguments(arguments);
  ASSERT_EQ(arguments.size(), 4u);
  EXPECT_EQ(arguments[0].ToString(), "file.html");
  EXPECT_EQ(arguments[1].ToString(), "--");
  EXPECT_EQ(arguments[2].ToString(), "--not-a-switch");
  EXPECT_EQ(arguments[3].ToString(), "-x");  // trimmed, after the terminator

  EXPECT_EQ(Argv(command_line),
            (std::vector<std::string>{
                "/usr/bin/app", "--remote-debugging-port=9222", "--v",
                "--lang=fr=CA", "file.html", "--", "--not-a-switch", "-x"}));
}

TEST(CommandLineTest, AppendedSwitchesGoBeforeArguments) {
  CefRefPtr<CefCommandLine> command_line = CefCommandLine::CreateCommandLine();
  command_line->SetProgram("chrome");
  command_line->AppendArgument("about:blank");
  command_line->AppendSwitch("headless");
  command_line->AppendSwitchWithValue("--user-data-dir", "/tmp/Profile Dir");
  command_line->PrependWrapper("gdb --args");

  EXPECT_EQ(Argv(command_line),
            (std::vector<std::string>{"gdb", "--args", "chrome", "--headless",
                                      "--user-data-dir=/tmp/Profile Dir",
                                      "about:blank"}));
  EXPECT_EQ(command_line->GetCommandLineString().ToString(),
            "gdb --args chrome --headless --user-data-dir=/tmp/Profile Dir "
            "about:blank");
  CefCommandLine::SwitchMap switches;
  command_line->GetSwitches(switches);
  EXPECT_EQ(switches.size(), 2u);
  EXPECT_EQ(switches[CefString("user-data-dir")].ToString(),
            "/tmp/Profile Dir");

  CefRefPtr<CefCommandLine> copy = command_line->Copy();
  command_line->Reset();
  EXPECT_FALSE(command_line->HasSwitches());
  EXPECT_FALSE(command_line->HasArguments());
  EXPECT_TRUE(copy->HasSwitch("headless"));
}

TEST(CommandLineTest, InitFromStringHonoursQuotes) {
  CefRefPtr<CefCommandLine> command_line = CefCommandLine::CreateCommandLine();
  command_line->InitFromString(
      "app --title=\"two words\" \"an \\\"arg\\\"\"");
  EXPECT_EQ(command_line->GetSwitchValue("title").ToString(), "two words");
  CefCommandLine::ArgumentList arguments;
  command_line->GetArguments(arguments);
  ASSERT_EQ(arguments.size(), 1u);
  EXPECT_EQ(arguments[0].ToString(), "an \"arg\"");
}

TEST(CommandLineTest, GlobalCommandLineIsReadOnly) {
  const char* argv[] = {"brovia", "--enable-logging", "page"};
  cefengine::SetGlobalCommandLine(3, argv);
  CefRefPtr<CefCommandLine> global = CefCommandLine::GetGlobalCommandLine();
  ASSERT_TRUE(global);
  EXPECT_TRUE(global->IsReadOnly());
  EXPECT_TRUE(global->HasSwitch("enable-logging"));
  global->AppendSwitch("other");
  EXPECT_FALSE(global->HasSwitch("other"));
  EXPECT_FALSE(global->Copy()->IsReadOnly());
}

}  // namespace

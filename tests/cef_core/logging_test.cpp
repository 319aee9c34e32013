#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "include/base/cef_logging.h"
#include "libcef/logging_impl.h"

namespace {

std::string ReadFile(const std::string& path) {
  std::ifstream file(path);
  std::stringstream content;
  content << file.rdbuf();
  return content.str();
}

TEST(LoggingTest, FiltersBySeverityAndWritesToTheLogFile) {
  const std::string path = ::testing::TempDir() + "cef_core_log.txt";
  std::remove(path.c_str());
  ASSERT_TRUE(cefengine::SetLogFile(path));
  cefengine::SetLogSeverity(LOGSEVERITY_WARNING);

  int evaluated = 0;
  auto count = [&evaluated] { return ++evaluated; };
  LOG(INFO) << "dropped " << count();
  LOG(WARNING) << "kept " << count() << L" \u00E9t\u00E9";
  LOG_IF(ERROR, false) << "dropped too";
  cefengine::SetLogSeverity(LOGSEVERITY_DISABLE);
  LOG(ERROR) << "dropped as well " << count();

  cefengine::SetLogSeverity(LOGSEVERITY_DEFAULT);
  ASSERT_TRUE(cefengine::SetLogFile(""));
  EXPECT_EQ(evaluated, 1);
  const std::string log = ReadFile(path);
  EXPECT_EQ(log.find("dropped"), std::string::npos);
  EXPECT_NE(log.find(":WARNING:logging_test.cpp("), std::string::npos);
  EXPECT_NE(log.find("kept 1 \xC3\xA9t\xC3\xA9"), std::string::npos);
  std::remove(path.c_str());
}

TEST(LoggingDeathTest, FailedChecksEndTheProcess) {
  int two = 2;
  EXPECT_DEATH(CHECK_EQ(two, 3) << "context", "Check failed: two == 3 \\(2 vs. 3\\)");
  EXPECT_DEATH(LOG(FATAL) << "fatal text", "fatal text");
}

}  // namespace

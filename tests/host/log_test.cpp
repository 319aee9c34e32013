#include "host/log/basic_diagnostic_logger.h"
#include "host/log/record_capture.h"

#include <boost/log/core/core.hpp>

#include <gtest/gtest.h>

namespace sev = foundation::log::severity;
using foundation::log::diagnostic_logger;
using foundation::log::parse_mask;

TEST(DiagnosticLogger, WritesOnlyMaskedSeveritiesWithChannelAndTime)
{
    diagnostic_logger logger("brovia::test", sev::warning | sev::error);
    foundation::log::record_capture capture;
    int evaluated = 0;

    BROVIA_LOG(logger, sev::error) << "failed " << 42;
    BROVIA_LOG(logger, sev::debug) << "never " << ++evaluated;
    BROVIA_LOG(logger, sev::warning) << std::wstring(L"caf\u00e9");

    EXPECT_EQ(evaluated, 0);
    const auto records = capture.records();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].channel, "brovia::test");
    EXPECT_EQ(records[0].severity, sev::error);
    EXPECT_EQ(records[0].message, "failed 42");
    EXPECT_TRUE(records[0].has_time_stamp);
    EXPECT_EQ(records[1].message, "caf\xc3\xa9");

    logger.set_mask(sev::debug);
    BROVIA_LOG(logger, sev::error) << "masked now";
    BROVIA_LOG(logger, sev::debug) << "debug";
    ASSERT_EQ(capture.records().size(), 3u);
    EXPECT_EQ(capture.records()[2].message, "debug");
}

TEST(DiagnosticLogger, WritesNothingWhileTheCoreIsDisabled)
{
    diagnostic_logger logger("brovia::test", sev::error);
    foundation::log::record_capture capture;
    boost::log::core::get()->set_logging_enabled(false);
    const bool enabled = logger.is_enabled(sev::error);
    BROVIA_LOG(logger, sev::error) << "dropped";
    boost::log::core::get()->set_logging_enabled(true);

    EXPECT_FALSE(enabled);
    EXPECT_TRUE(capture.records().empty());
    EXPECT_TRUE(logger.is_enabled(sev::error));
}

TEST(DiagnosticLogger, ParsesLevelNamesAndMasks)
{
    EXPECT_EQ(parse_mask("debug", 0), sev::debug | sev::info | sev::warning | sev::error | sev::fatal);
    EXPECT_EQ(parse_mask(" ERROR ", 0), sev::error | sev::fatal);
    EXPECT_EQ(parse_mask("fatal", 0), sev::fatal);
    EXPECT_EQ(parse_mask("off", 7), 0u);
    EXPECT_EQ(parse_mask("0x208", 0), sev::error | sev::info);
    EXPECT_EQ(parse_mask("verbose", 7), 7u);
    EXPECT_EQ(parse_mask("", 7), 7u);
}

#include "host/options/command_line.h"

#include "scoped_env.h"

#include <gtest/gtest.h>

TEST(CommandLine, DefaultsWhenUnset)
{
    ScopedEnv cadence("BROVIA_MESSAGE_CADENCE", std::nullopt);
    ScopedEnv insecure("BROVIA_INSECURE_LOCALHOST", std::nullopt);
    ScopedEnv port("BROVIA_REMOTE_DEBUGGING_PORT", std::nullopt);
    const CommandLine options;
    EXPECT_EQ(options.messageProcessingCadence(), 30);
    EXPECT_FALSE(options.insecureLocalHostAllowed());
    EXPECT_FALSE(options.remoteDebuggingPort());
}

TEST(CommandLine, BadValuesFallBackToDefaults)
{
    for (const char* bad : {"0", "-5", "abc", "5000", "12x", ""})
    {
        ScopedEnv cadence("BROVIA_MESSAGE_CADENCE", std::string(bad));
        EXPECT_EQ(CommandLine().messageProcessingCadence(), 30) << bad;
    }
    for (const char* bad : {"80", "70000", "port"})
    {
        ScopedEnv port("BROVIA_REMOTE_DEBUGGING_PORT", std::string(bad));
        EXPECT_FALSE(CommandLine().remoteDebuggingPort()) << bad;
    }
    ScopedEnv insecure("BROVIA_INSECURE_LOCALHOST", std::string("2"));
    EXPECT_FALSE(CommandLine().insecureLocalHostAllowed());
}

TEST(CommandLine, ReadsGoodValues)
{
    ScopedEnv cadence("BROVIA_MESSAGE_CADENCE", std::string(" 60"));
    ScopedEnv insecure("BROVIA_INSECURE_LOCALHOST", std::string("Yes"));
    ScopedEnv port("BROVIA_REMOTE_DEBUGGING_PORT", std::string("9222"));
    const CommandLine options;
    EXPECT_EQ(options.messageProcessingCadence(), 60);
    EXPECT_TRUE(options.insecureLocalHostAllowed());
    EXPECT_EQ(options.remoteDebuggingPort(), 9222);
}

#include "host/context/context_registry.h"
#include "host/settings/settings.h"
#include "host/settings/settings_root.h"

#include <gtest/gtest.h>

using settings::core::Settings;
using settings::core::SettingsProperties;

namespace
{
SettingsProperties holding(boost::any value)
{
    SettingsProperties p;
    p.value = std::move(value);
    return p;
}

std::shared_ptr<Settings> root()
{
    return settings::in_torvex::getSettingsRoot(txutil::contextmgr::ContextRegistry::getTxrID());
}

// Each test works on an empty tree of its own.
class SettingsTree : public ::testing::Test
{
protected:
    void SetUp() override { settings::in_torvex::setSettingsRoot(m_id, Settings::createRoot()); }
    void TearDown() override { settings::in_torvex::setSettingsRoot(m_id, m_kept); }

    const txutil::contextmgr::TxrID m_id = txutil::contextmgr::ContextRegistry::getTxrID();
    const std::shared_ptr<Settings> m_kept = settings::in_torvex::getSettingsRoot(m_id);
};
} // namespace

TEST_F(SettingsTree, CreateAndSetValueCreatesNestedNamesAndMayBeRepeated)
{
    ASSERT_TRUE(Settings::createAndSetValue("create.group.value", {}, holding(5), "user"));
    const auto group = root()->getSettingsByFullName("create.group");
    ASSERT_TRUE(group);
    EXPECT_EQ(group->fullName(), "create.group");
    EXPECT_EQ(group->get<int>("value"), 5);

    EXPECT_TRUE(Settings::createAndSetValue("create.group.value", {}, holding(7), "user"));
    EXPECT_EQ(root()->get<int>("create.group.value"), 7);
    // A value of another type is refused and leaves the old one.
    EXPECT_FALSE(Settings::createAndSetValue("create.group.value", {}, holding(std::string("x")), "user"));
    EXPECT_EQ(root()->get<int>("create.group.value"), 7);
}

TEST_F(SettingsTree, HighestLevelWins)
{
    SettingsProperties definition = holding(1);
    definition.flags = 0x10;
    ASSERT_TRUE(Settings::createAndSetValue("levels.value", definition, {}, "user"));
    const auto group = root()->getSettingsByFullName("levels");
    EXPECT_EQ(group->get<int>("value"), 1);
    EXPECT_EQ(group->getSettingsByFullName("value")->properties().flags, 0x10);

    EXPECT_TRUE(group->set<int>("value", 2, "user"));
    EXPECT_EQ(group->get<int>("value"), 2);
    EXPECT_EQ(group->get<int>("value", "factory"), 1);

    EXPECT_TRUE(group->set<int>("value", 3, "session"));
    EXPECT_TRUE(group->set<int>("value", 4, "user"));
    EXPECT_EQ(group->get<int>("value"), 3);
    EXPECT_EQ(group->get<int>("value", "user"), 4);
    EXPECT_FALSE(group->set<int>("value", 5, "system"));
}

TEST_F(SettingsTree, SetChangesOnlyExistingValuesOfTheirType)
{
    ASSERT_TRUE(Settings::createAndSetValue("existing.value", {}, holding(1), "user"));
    const auto group = root()->getSettingsByFullName("existing");
    EXPECT_FALSE(group->set<int>("absent", 1, "user"));
    EXPECT_FALSE(group->getSettingsByFullName("absent"));
    EXPECT_FALSE(group->set<double>("value", 2.0, "user"));
    EXPECT_EQ(group->get<int>("value"), 1);
    EXPECT_FALSE(group->get<double>("value"));
    // A group carries no value, so set has nothing to change.
    EXPECT_FALSE(root()->set<int>("existing", 1, "user"));
}

TEST_F(SettingsTree, MalformedNamesFindNothing)
{
    ASSERT_TRUE(Settings::createAndSetValue("named.value", {}, holding(1), "user"));
    for (const char* name : {"", ".", "named.", ".named", "named..value"})
    {
        EXPECT_FALSE(root()->getSettingsByFullName(name)) << name;
        EXPECT_FALSE(Settings::createAndSetValue(name, {}, holding(1), "user")) << name;
    }
}

TEST_F(SettingsTree, DetachedContextHasNoRoot)
{
    const auto attached = root();
    settings::in_torvex::setSettingsRoot(m_id, nullptr);
    EXPECT_FALSE(settings::in_torvex::getSettingsRoot(m_id));
    EXPECT_FALSE(Settings::createAndSetValue("detached.value", {}, holding(1), "user"));
    settings::in_torvex::setSettingsRoot(m_id, attached);
    EXPECT_EQ(root(), attached);
    EXPECT_FALSE(attached->getSettingsByFullName("detached"));
}

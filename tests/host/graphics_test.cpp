#include "host/graphics/opengl_state.h"

#include "scoped_env.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{
// A fake /sys/class/drm and /dev/dri.
class GraphicsMachine : public ::testing::Test
{
protected:
    void addCard(const QString& card, const char* vendor, const char* device)
    {
        const QString dir = m_root.filePath(QStringLiteral("drm/") + card + QStringLiteral("/device"));
        ASSERT_TRUE(QDir().mkpath(dir));
        write(dir + QStringLiteral("/vendor"), vendor);
        write(dir + QStringLiteral("/device"), device);
    }
    void addRenderNode() { write(m_root.filePath(QStringLiteral("dri/renderD128")), ""); }
    GraphicsState::OpenGLState state() const
    {
        return GraphicsState::OpenGLState(m_root.filePath(QStringLiteral("drm")), m_root.filePath(QStringLiteral("dri")));
    }

    QTemporaryDir m_root;
    ScopedEnv m_softwareGl{"BROVIA_SOFTWARE_GL", std::nullopt};
    ScopedEnv m_mesaSoftware{"LIBGL_ALWAYS_SOFTWARE", std::nullopt};
    ScopedEnv m_blocklist{"BROVIA_GPU_BLOCKLIST", std::nullopt};

private:
    static void write(const QString& path, const char* text)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
};
} // namespace

TEST_F(GraphicsMachine, SoftwareWithoutRenderNodeOrWhenForced)
{
    EXPECT_TRUE(state().isSoftwareOpenGL());
    addRenderNode();
    EXPECT_FALSE(state().isSoftwareOpenGL());
    {
        ScopedEnv mesa("LIBGL_ALWAYS_SOFTWARE", std::string("1"));
        EXPECT_TRUE(state().isSoftwareOpenGL());
    }
    ScopedEnv forced("BROVIA_SOFTWARE_GL", std::string("true"));
    EXPECT_TRUE(state().isSoftwareOpenGL());
}

TEST_F(GraphicsMachine, HardwareCanBeForcedWithoutRenderNode)
{
    ScopedEnv forced("BROVIA_SOFTWARE_GL", std::string("0"));
    EXPECT_FALSE(state().isSoftwareOpenGL());
}

TEST_F(GraphicsMachine, BlocksListedGpus)
{
    addCard(QStringLiteral("card0"), "0x8086\n", "0x3e9b\n");
    addCard(QStringLiteral("card0-HDMI-A-1"), "0x1234\n", "0x1111\n");
    EXPECT_FALSE(state().isBlacklistedHardware());
    {
        ScopedEnv blocklist("BROVIA_GPU_BLOCKLIST", std::string("10de:*, 8086:3E9B"));
        EXPECT_TRUE(state().isBlacklistedHardware());
    }
    {
        ScopedEnv blocklist("BROVIA_GPU_BLOCKLIST", std::string("8086:*"));
        EXPECT_TRUE(state().isBlacklistedHardware());
    }
    addCard(QStringLiteral("card1"), "0x1234\n", "0x1111\n");
    EXPECT_TRUE(state().isBlacklistedHardware());
}

#pragma once

#include <QString>

namespace GraphicsState
{
// What the machine offers for OpenGL, asked afresh at each call (environment and device files):
//   BROVIA_SOFTWARE_GL    "1"/"true"/"yes" forces software GL, "0"/"false"/"no" forbids it;
//                         otherwise GL is software when LIBGL_ALWAYS_SOFTWARE=1 or there is no
//                         DRM render node (/dev/dri/renderD*).
//   BROVIA_GPU_BLOCKLIST  more blocked GPUs, "vendor:device" in hex, comma-separated, with
//                         "*" as device for all of a vendor ("1002:*,10de:1d01"); added to a
//                         built-in list of emulated display adapters that have no usable GPU.
// A GPU is identified by /sys/class/drm/card*/device/{vendor,device}. Any thread.
class OpenGLState
{
public:
    static const OpenGLState& instance();

    // The given directories stand for /sys/class/drm and /dev/dri.
    OpenGLState(const QString& drmClassDir, const QString& driDeviceDir);

    // Some GPU of the machine is on the block list.
    bool isBlacklistedHardware() const;
    // OpenGL would run in software.
    bool isSoftwareOpenGL() const;

private:
    const QString m_drmClassDir;
    const QString m_driDeviceDir;
};
} // namespace GraphicsState

#pragma once

#include <QImage>

#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

// Recycles the pixel buffers of frame copies. A 1920x1080 frame is 8 MB; allocated afresh for
// each frame, the C library may hand out newly mapped pages every time, and touching them first
// costs more than copying the frame. Buffers come back when the last image sharing them goes, on
// whatever thread that is.
class FrameBufferPool : public std::enable_shared_from_this<FrameBufferPool>
{
public:
    // A deep copy of source in a recycled buffer, with source's size, format and line length.
    // Any thread.
    QImage copy(const QImage& source);

private:
    struct Lease;
    static void giveBack(void* lease);

    // Buffers kept for reuse: the frame in flight and the one before it.
    static constexpr std::size_t kMaxKept = 2;

    std::mutex m_mutex;
    std::size_t m_bufferSize = 0;
    std::vector<std::unique_ptr<uchar[]>> m_kept;
};

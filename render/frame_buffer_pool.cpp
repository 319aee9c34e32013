#include "render/frame_buffer_pool.h"

#include <cstring>

struct FrameBufferPool::Lease
{
    std::shared_ptr<FrameBufferPool> pool;
    std::unique_ptr<uchar[]> buffer;
    std::size_t size;
};

QImage FrameBufferPool::copy(const QImage& source)
{
    if (source.isNull())
        return QImage();
    const std::size_t size = source.sizeInBytes();
    auto lease = std::make_unique<Lease>(Lease{shared_from_this(), nullptr, size});
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (size != m_bufferSize)
        {
            // A new frame size: the old buffers fit no more.
            m_kept.clear();
            m_bufferSize = size;
        }
        else if (!m_kept.empty())
        {
            lease->buffer = std::move(m_kept.back());
            m_kept.pop_back();
        }
    }
    if (!lease->buffer)
        lease->buffer.reset(new uchar[size]);
    std::memcpy(lease->buffer.get(), source.constBits(), size);
    uchar* bits = lease->buffer.get();
    return QImage(bits, source.width(), source.height(), source.bytesPerLine(), source.format(),
                  &FrameBufferPool::giveBack, lease.release());
}

void FrameBufferPool::giveBack(void* info)
{
    std::unique_ptr<Lease> lease(static_cast<Lease*>(info));
    FrameBufferPool& pool = *lease->pool;
    const std::lock_guard<std::mutex> lock(pool.m_mutex);
    if (lease->size == pool.m_bufferSize && pool.m_kept.size() < kMaxKept)
        pool.m_kept.push_back(std::move(lease->buffer));
}

// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ShmBuffer.h"

#include <limits>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

std::optional<QImage::Format> imageFormat(quint32 shmFormat)
{
    // wl_shm names a little-endian word from its highest bits down, Qt's byte formats go by
    // address.
    switch (shmFormat) {
    case WL_SHM_FORMAT_ARGB8888:
    case WL_SHM_FORMAT_XRGB8888:
        return QImage::Format_RGB32;
    case WL_SHM_FORMAT_ABGR8888:
    case WL_SHM_FORMAT_XBGR8888:
        return QImage::Format_RGBX8888;
    case WL_SHM_FORMAT_ARGB2101010:
    case WL_SHM_FORMAT_XRGB2101010:
        return QImage::Format_RGB30;
    case WL_SHM_FORMAT_ABGR2101010:
    case WL_SHM_FORMAT_XBGR2101010:
        return QImage::Format_BGR30;
    case WL_SHM_FORMAT_RGB888:
        return QImage::Format_BGR888;
    case WL_SHM_FORMAT_BGR888:
        return QImage::Format_RGB888;
    default:
        return std::nullopt;
    }
}

quint32 packedStride(quint32 shmFormat, int width)
{
    const auto format = imageFormat(shmFormat).value_or(QImage::Format_RGB32);
    const int pixel = QImage::toPixelFormat(format).bitsPerPixel() / 8;
    // Rows begin at words.
    return (quint32(pixel) * quint32(width) + 3) / 4 * 4;
}

ShmBuffer::ShmBuffer(wl_shm *shm, const ShmLayout &layout)
    : m_layout(layout)
{
    const quint64 length = quint64(layout.stride) * quint64(layout.size.height());
    if (length == 0 || length > quint64(std::numeric_limits<int32_t>::max())) {
        return;
    }
    m_length = static_cast<std::size_t>(length);
    const int file = memfd_create("vellora-grab", MFD_CLOEXEC);
    if (file < 0) {
        return;
    }
    void *memory = MAP_FAILED;
    if (ftruncate(file, static_cast<off_t>(m_length)) == 0) {
        memory = mmap(nullptr, m_length, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    }
    if (memory != MAP_FAILED) {
        m_memory = memory;
        wl_shm_pool *pool = wl_shm_create_pool(shm, file, static_cast<int32_t>(m_length));
        m_buffer = wl_shm_pool_create_buffer(pool, 0, layout.size.width(), layout.size.height(),
                                             static_cast<int32_t>(layout.stride), layout.format);
        wl_shm_pool_destroy(pool);
    }
    close(file);
}

ShmBuffer::~ShmBuffer()
{
    if (m_buffer) {
        wl_buffer_destroy(m_buffer);
    }
    if (m_memory) {
        munmap(m_memory, m_length);
    }
}

QImage ShmBuffer::image() const
{
    const auto format = imageFormat(m_layout.format);
    if (!m_memory || !format) {
        return {};
    }
    return QImage(static_cast<const uchar *>(m_memory), m_layout.size.width(),
                  m_layout.size.height(), static_cast<qsizetype>(m_layout.stride), *format)
        .copy();
}

// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>

#include <optional>

struct wl_buffer;
struct wl_shm;

/// How a picture lies in shared memory.
struct ShmLayout
{
    /// A value of wl_shm.format.
    quint32 format = 0;
    /// In pixels.
    QSize size;
    /// Bytes a row.
    quint32 stride = 0;
};

/// The format of Qt's that has the same bytes in memory, leaving out opacity; absent when there
/// is none.
std::optional<QImage::Format> imageFormat(quint32 shmFormat);

/// Bytes a row of so many pixels, where the compositor leaves that to us. The format is one that
/// `imageFormat` knows.
quint32 packedStride(quint32 shmFormat, int width);

/// Memory that is shared with the compositor for one picture.
class ShmBuffer
{
public:
    /// `layout.format` is one that `imageFormat` knows.
    ShmBuffer(wl_shm *shm, const ShmLayout &layout);
    ~ShmBuffer();
    ShmBuffer(const ShmBuffer &) = delete;
    ShmBuffer &operator=(const ShmBuffer &) = delete;

    /// Null where there was no memory to be had.
    wl_buffer *buffer() const { return m_buffer; }

    /// A copy of what the compositor has put there.
    QImage image() const;

private:
    ShmLayout m_layout;
    std::size_t m_length = 0;
    void *m_memory = nullptr;
    wl_buffer *m_buffer = nullptr;
};

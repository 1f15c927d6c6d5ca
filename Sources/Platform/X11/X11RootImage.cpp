// SPDX-License-Identifier: MIT
#include "Platform/X11/X11RootImage.h"

#include <QScopeGuard>
#include <QSysInfo>

#include <cerrno>
#include <new>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
struct Layout
{
    QImage::Format format = QImage::Format_Invalid;
    int bitsPerPixel = 0;
    int padBits = 0;

    int bytesPerLine(int width) const
    {
        return (width * bitsPerPixel + padBits - 1) / padBits * (padBits / 8);
    }
};

const xcb_visualtype_t *rootVisual(const xcb_screen_t &screen)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0;
         xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == screen.root_visual) {
                return visuals.data;
            }
        }
    }
    return nullptr;
}

QImage::Format imageFormat(int bitsPerPixel, const xcb_visualtype_t &visual)
{
    if (bitsPerPixel == 32 && visual.green_mask == 0xff00) {
        if (visual.red_mask == 0xff0000) {
            return QImage::Format_RGB32;
        }
        // Red first in memory, on little-endian machines.
        return visual.red_mask == 0xff && QSysInfo::ByteOrder == QSysInfo::LittleEndian
                   ? QImage::Format_RGBX8888
                   : QImage::Format_Invalid;
    }
    if (bitsPerPixel == 32 && visual.green_mask == 0xffc00) {
        return visual.red_mask == 0x3ff00000 ? QImage::Format_RGB30 : QImage::Format_BGR30;
    }
    if (bitsPerPixel == 16 && visual.red_mask == 0xf800 && visual.green_mask == 0x7e0) {
        return QImage::Format_RGB16;
    }
    return QImage::Format_Invalid;
}

Layout layoutOf(const X11Connection &connection)
{
    const xcb_setup_t *setup = xcb_get_setup(connection.xcb());
    constexpr auto ownOrder = QSysInfo::ByteOrder == QSysInfo::LittleEndian
                                  ? XCB_IMAGE_ORDER_LSB_FIRST
                                  : XCB_IMAGE_ORDER_MSB_FIRST;
    const xcb_visualtype_t *visual = rootVisual(*connection.screen());
    if (setup->image_byte_order != ownOrder || !visual) {
        return {};
    }
    for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0;
         xcb_format_next(&formats)) {
        if (formats.data->depth == connection.screen()->root_depth) {
            const int bits = formats.data->bits_per_pixel;
            return {imageFormat(bits, *visual), bits, formats.data->scanline_pad};
        }
    }
    return {};
}

/// Shared memory travels as a file descriptor, which only a socket of this machine carries.
bool isLocal(const X11Connection &connection)
{
    sockaddr_storage address = {};
    socklen_t length = sizeof address;
    return getsockname(xcb_get_file_descriptor(connection.xcb()),
                       reinterpret_cast<sockaddr *>(&address), &length) == 0 &&
           address.ss_family == AF_UNIX;
}

bool hasSharedMemory(const X11Connection &connection)
{
    if (!isLocal(connection)) {
        return false;
    }
    const auto *extension = xcb_get_extension_data(connection.xcb(), &xcb_shm_id);
    if (!extension || !extension->present) {
        return false;
    }
    const XcbReply<xcb_shm_query_version_reply_t> version(xcb_shm_query_version_reply(
        connection.xcb(), xcb_shm_query_version(connection.xcb()), nullptr));
    // Segments passed as file descriptors came with 1.2.
    return version && (version->major_version > 1 ||
                       (version->major_version == 1 && version->minor_version >= 2));
}

QImage opaque(const QImage &image)
{
    QImage result = image.format() == QImage::Format_RGB32
                        ? image.copy()
                        : image.convertToFormat(QImage::Format_RGB32);
    if (result.isNull()) {
        throw std::bad_alloc();
    }
    return result;
}
} // namespace

X11RootImage::X11RootImage(const X11Connection &connection)
    : m_connection(connection)
    , m_canShare(connection.isUsable() && hasSharedMemory(connection))
{
}

X11RootImage::~X11RootImage()
{
    release();
}

QRect X11RootImage::bounds() const
{
    if (!m_connection.isUsable()) {
        return {};
    }
    // Asked each time: the screen that came with the connection has the size of that moment.
    const XcbReply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        m_connection.xcb(), xcb_get_geometry(m_connection.xcb(), m_connection.root()), nullptr));
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

QImage X11RootImage::read(const QRect &rect)
{
    if (rect.isEmpty() || !bounds().contains(rect)) {
        return {};
    }
    const Layout layout = layoutOf(m_connection);
    if (layout.format == QImage::Format_Invalid) {
        return {};
    }
    const int bytesPerLine = layout.bytesPerLine(rect.width());
    const auto atEnd = qScopeGuard([this] { release(); });
    const QImage image = readShared(rect, layout.format, bytesPerLine);
    return image.isNull() ? readPlain(rect, layout.format, bytesPerLine) : image;
}

QImage X11RootImage::readShared(const QRect &rect, QImage::Format format, int bytesPerLine)
{
    // A small picture travels faster than a segment is made.
    constexpr std::size_t smallest = 65536;
    const std::size_t bytes =
        static_cast<std::size_t>(bytesPerLine) * static_cast<std::size_t>(rect.height());
    if (!m_canShare || bytes < smallest || !reserve(bytes)) {
        return {};
    }
    const auto cookie = xcb_shm_get_image(
        m_connection.xcb(), m_connection.root(), static_cast<int16_t>(rect.x()),
        static_cast<int16_t>(rect.y()), static_cast<uint16_t>(rect.width()),
        static_cast<uint16_t>(rect.height()), ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment, 0);
    const XcbReply<xcb_shm_get_image_reply_t> reply(
        xcb_shm_get_image_reply(m_connection.xcb(), cookie, nullptr));
    if (!reply) {
        return {};
    }
    return opaque(QImage(m_memory, rect.width(), rect.height(), bytesPerLine, format));
}

QImage X11RootImage::readPlain(const QRect &rect, QImage::Format format, int bytesPerLine)
{
    const auto cookie = xcb_get_image(
        m_connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_connection.root(),
        static_cast<int16_t>(rect.x()), static_cast<int16_t>(rect.y()),
        static_cast<uint16_t>(rect.width()), static_cast<uint16_t>(rect.height()), ~0U);
    const XcbReply<xcb_get_image_reply_t> reply(
        xcb_get_image_reply(m_connection.xcb(), cookie, nullptr));
    if (!reply || xcb_get_image_data_length(reply.get()) < bytesPerLine * rect.height()) {
        return {};
    }
    return opaque(
        QImage(xcb_get_image_data(reply.get()), rect.width(), rect.height(), bytesPerLine, format));
}

bool X11RootImage::reserve(std::size_t bytes)
{
    m_segment = xcb_generate_id(m_connection.xcb());
    const auto cookie =
        xcb_shm_create_segment(m_connection.xcb(), m_segment, static_cast<uint32_t>(bytes), false);
    const XcbReply<xcb_shm_create_segment_reply_t> reply(
        xcb_shm_create_segment_reply(m_connection.xcb(), cookie, nullptr));
    if (!reply || reply->nfd != 1) {
        m_segment = XCB_NONE;
        return false;
    }
    const int file = xcb_shm_create_segment_reply_fds(m_connection.xcb(), reply.get())[0];
    void *memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    const int failure = errno;
    close(file);
    if (memory == MAP_FAILED) {
        if (failure == ENOMEM) {
            // The plain way would need as much memory, and XCB closes the connection to the server
            // when it gets none for an answer.
            throw std::bad_alloc();
        }
        release();
        return false;
    }
    m_memory = static_cast<uchar *>(memory);
    m_size = bytes;
    return true;
}

void X11RootImage::release()
{
    if (m_memory) {
        munmap(m_memory, m_size);
        m_memory = nullptr;
    }
    if (m_segment != XCB_NONE) {
        xcb_shm_detach(m_connection.xcb(), m_segment);
        xcb_flush(m_connection.xcb());
        m_segment = XCB_NONE;
    }
}

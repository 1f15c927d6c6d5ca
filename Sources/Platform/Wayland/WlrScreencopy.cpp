// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WlrScreencopy.h"

#include "Platform/ScreenImage.h"
#include "Platform/Wayland/ShmBuffer.h"
#include "Platform/Wayland/WaylandOutputs.h"

#include <QScreen>
#include <QTransform>

#include <chrono>
#include <wayland-wlr-screencopy-unstable-v1.h>

namespace {
/// When a compositor that shows no frame is given up on, such as one whose output is switched off.
constexpr std::chrono::milliseconds longestWait(2000);

/// The compositor's answers to one request for a picture.
struct Frame
{
    ShmLayout layout;
    bool hasLayout = false;
    bool isLayoutComplete = false;
    bool isUpsideDown = false;
    bool isReady = false;
    bool hasFailed = false;
};

Frame &frameOf(void *data)
{
    return *static_cast<Frame *>(data);
}

const zwlr_screencopy_frame_v1_listener frameListener{
    .buffer =
        [](void *data, zwlr_screencopy_frame_v1 *proxy, uint32_t format, uint32_t width,
           uint32_t height, uint32_t stride) {
            Frame &frame = frameOf(data);
            if (!frame.hasLayout && imageFormat(format)) {
                frame.layout = {format, QSize(static_cast<int>(width), static_cast<int>(height)),
                                stride};
                frame.hasLayout = true;
            }
            frame.isLayoutComplete = zwlr_screencopy_frame_v1_get_version(proxy) <
                                     ZWLR_SCREENCOPY_FRAME_V1_BUFFER_DONE_SINCE_VERSION;
        },
    .flags =
        [](void *data, zwlr_screencopy_frame_v1 *, uint32_t flags) {
            frameOf(data).isUpsideDown = flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT;
        },
    .ready = [](void *data, zwlr_screencopy_frame_v1 *, uint32_t, uint32_t,
                uint32_t) { frameOf(data).isReady = true; },
    .failed = [](void *data, zwlr_screencopy_frame_v1 *) { frameOf(data).hasFailed = true; },
    .damage = [](void *, zwlr_screencopy_frame_v1 *, uint32_t, uint32_t, uint32_t, uint32_t) {},
    .linux_dmabuf = [](void *, zwlr_screencopy_frame_v1 *, uint32_t, uint32_t, uint32_t) {},
    .buffer_done = [](void *data,
                      zwlr_screencopy_frame_v1 *) { frameOf(data).isLayoutComplete = true; },
};

/// Turns a picture as the output's hardware shows it upright, as wl_output.transform tells.
QImage upright(const QImage &image, int32_t transform)
{
    QTransform turn;
    // The numbers count counter-clockwise quarter turns; 4 is added for a flip around the
    // vertical axis, which the compositor does first.
    const bool isFlipped = transform >= WL_OUTPUT_TRANSFORM_FLIPPED;
    turn.rotate(90.0 * (transform % 4));
    if (isFlipped) {
        turn.scale(-1, 1);
    }
    return turn.isIdentity() ? image : image.transformed(turn);
}
} // namespace

WlrScreencopy::WlrScreencopy(const Screens &screens)
    : m_screens(screens)
{
    m_manager =
        m_connection.bindFirst<zwlr_screencopy_manager_v1>(zwlr_screencopy_manager_v1_interface, 3);
    m_shm = m_connection.bindFirst<wl_shm>(wl_shm_interface, 1);
    m_connection.listen();
}

WlrScreencopy::~WlrScreencopy()
{
    if (m_manager) {
        zwlr_screencopy_manager_v1_destroy(m_manager);
    }
    if (m_shm) {
        wl_shm_destroy(m_shm);
    }
}

bool WlrScreencopy::preflightAccess() const
{
    return m_manager && m_shm && m_connection.isUsable();
}

bool WlrScreencopy::requestAccess()
{
    return preflightAccess();
}

QImage WlrScreencopy::createImage(quint32 display, const QRectF &rect)
{
    const QScreen *screen = qtScreen(m_screens, display);
    if (!screen || !preflightAccess()) {
        return {};
    }
    const QRectF within = rect & QRectF(QPointF(0, 0), QSizeF(screen->size()));
    if (within.isEmpty()) {
        return {};
    }
    const QDeadlineTimer deadline(longestWait);
    const WaylandOutputs outputs = bindOutputs(m_connection, deadline);
    const WaylandOutput *output = outputOf(*screen, outputs);
    if (!output) {
        return {};
    }
    const QRect region = within.toAlignedRect();
    Frame frame;
    const WaylandPointer<zwlr_screencopy_frame_v1, zwlr_screencopy_frame_v1_destroy> proxy(
        zwlr_screencopy_manager_v1_capture_output_region(
            m_manager, 0, output->proxy, region.x(), region.y(), region.width(), region.height()));
    zwlr_screencopy_frame_v1_add_listener(proxy.get(), &frameListener, &frame);
    m_connection.dispatchUntil([&] { return frame.isLayoutComplete || frame.hasFailed; }, deadline);
    if (frame.hasFailed || !frame.isLayoutComplete || !frame.hasLayout) {
        return {};
    }
    const ShmBuffer buffer(m_shm, frame.layout);
    if (!buffer.buffer()) {
        return {};
    }
    zwlr_screencopy_frame_v1_copy(proxy.get(), buffer.buffer());
    m_connection.dispatchUntil([&] { return frame.isReady || frame.hasFailed; }, deadline);
    if (!frame.isReady) {
        return {};
    }
    QImage image = buffer.image();
    if (frame.isUpsideDown) {
        image = image.mirrored();
    }
    return croppedToPoints(upright(image, output->transform), region.size(),
                           within.translated(-region.topLeft()));
}

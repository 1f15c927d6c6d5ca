// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WlrScreencopy.h"

#include "Platform/ScreenImage.h"
#include "Platform/Wayland/ShmBuffer.h"

#include <wayland-wlr-screencopy-unstable-v1.h>

namespace {
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
} // namespace

WlrScreencopy::WlrScreencopy(const Screens &screens)
    : OutputRecording(screens)
    , m_manager(connection().bindFirst<zwlr_screencopy_manager_v1>(
          zwlr_screencopy_manager_v1_interface, 3))
{
}

WlrScreencopy::~WlrScreencopy()
{
    if (m_manager) {
        zwlr_screencopy_manager_v1_destroy(m_manager);
    }
}

QImage WlrScreencopy::copy(const WaylandOutput &output, QSize, const QRectF &rect,
                           QDeadlineTimer deadline)
{
    const QRect region = rect.toAlignedRect();
    Frame frame;
    const WaylandPointer<zwlr_screencopy_frame_v1, zwlr_screencopy_frame_v1_destroy> proxy(
        zwlr_screencopy_manager_v1_capture_output_region(
            m_manager, 0, output.proxy, region.x(), region.y(), region.width(), region.height()));
    zwlr_screencopy_frame_v1_add_listener(proxy.get(), &frameListener, &frame);
    connection().dispatchUntil([&] { return frame.isLayoutComplete || frame.hasFailed; }, deadline);
    if (frame.hasFailed || !frame.isLayoutComplete || !frame.hasLayout) {
        return {};
    }
    const ShmBuffer buffer(shm(), frame.layout);
    if (!buffer.buffer()) {
        return {};
    }
    zwlr_screencopy_frame_v1_copy(proxy.get(), buffer.buffer());
    connection().dispatchUntil([&] { return frame.isReady || frame.hasFailed; }, deadline);
    if (!frame.isReady) {
        return {};
    }
    QImage image = buffer.image();
    if (frame.isUpsideDown) {
        image = image.mirrored();
    }
    return croppedToPoints(upright(image, output.transform), region.size(),
                           rect.translated(-region.topLeft()));
}

// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ImageCopyCapture.h"

#include "Platform/ScreenImage.h"
#include "Platform/Wayland/ShmBuffer.h"

#include <utility>
#include <wayland-ext-image-capture-source-v1.h>
#include <wayland-ext-image-copy-capture-v1.h>

namespace {
/// Larger than any output, and so small that nothing overflows.
constexpr quint32 largestSide = 1U << 16U;
/// One for the constraints that the compositor told, one for those that it changed meanwhile.
constexpr int attempts = 2;

/// What buffers the compositor takes.
struct Constraints
{
    QSize size;
    std::optional<quint32> format;
};

struct Session
{
    /// Told so far, until they are complete.
    Constraints coming;
    /// Complete ones that no buffer was made for.
    std::optional<Constraints> constraints;
    bool isStopped = false;
};

struct Frame
{
    int32_t transform = WL_OUTPUT_TRANSFORM_NORMAL;
    bool isReady = false;
    std::optional<quint32> failure;
};

Session &sessionOf(void *data)
{
    return *static_cast<Session *>(data);
}

Frame &frameOf(void *data)
{
    return *static_cast<Frame *>(data);
}

const ext_image_copy_capture_session_v1_listener sessionListener{
    .buffer_size =
        [](void *data, ext_image_copy_capture_session_v1 *, uint32_t width, uint32_t height) {
            if (width <= largestSide && height <= largestSide) {
                sessionOf(data).coming.size =
                    QSize(static_cast<int>(width), static_cast<int>(height));
            }
        },
    .shm_format =
        [](void *data, ext_image_copy_capture_session_v1 *, uint32_t format) {
            Constraints &coming = sessionOf(data).coming;
            if (!coming.format && imageFormat(format)) {
                coming.format = format;
            }
        },
    .dmabuf_device = [](void *, ext_image_copy_capture_session_v1 *, wl_array *) {},
    .dmabuf_format = [](void *, ext_image_copy_capture_session_v1 *, uint32_t, wl_array *) {},
    .done =
        [](void *data, ext_image_copy_capture_session_v1 *) {
            Session &session = sessionOf(data);
            session.constraints = std::exchange(session.coming, {});
        },
    .stopped = [](void *data,
                  ext_image_copy_capture_session_v1 *) { sessionOf(data).isStopped = true; },
};

const ext_image_copy_capture_frame_v1_listener frameListener{
    .transform =
        [](void *data, ext_image_copy_capture_frame_v1 *, uint32_t transform) {
            frameOf(data).transform = static_cast<int32_t>(transform);
        },
    .damage = [](void *, ext_image_copy_capture_frame_v1 *, int32_t, int32_t, int32_t, int32_t) {},
    .presentation_time = [](void *, ext_image_copy_capture_frame_v1 *, uint32_t, uint32_t,
                            uint32_t) {},
    .ready = [](void *data, ext_image_copy_capture_frame_v1 *) { frameOf(data).isReady = true; },
    .failed = [](void *data, ext_image_copy_capture_frame_v1 *,
                 uint32_t reason) { frameOf(data).failure = reason; },
};
} // namespace

ImageCopyCapture::ImageCopyCapture(const Screens &screens, std::chrono::milliseconds longestWait)
    : OutputRecording(screens, longestWait)
    , m_manager(connection().bindFirst<ext_image_copy_capture_manager_v1>(
          ext_image_copy_capture_manager_v1_interface, 1))
    , m_sources(connection().bindFirst<ext_output_image_capture_source_manager_v1>(
          ext_output_image_capture_source_manager_v1_interface, 1))
{
}

ImageCopyCapture::~ImageCopyCapture()
{
    if (m_sources) {
        ext_output_image_capture_source_manager_v1_destroy(m_sources);
    }
    if (m_manager) {
        ext_image_copy_capture_manager_v1_destroy(m_manager);
    }
}

QImage ImageCopyCapture::copy(const WaylandOutput &output, QSize size, const QRectF &rect,
                              QDeadlineTimer deadline)
{
    const WaylandPointer<ext_image_capture_source_v1, ext_image_capture_source_v1_destroy> source(
        ext_output_image_capture_source_manager_v1_create_source(m_sources, output.proxy));
    Session session;
    // A session for each grab: the first frame of one comes at once, later ones with a change.
    const WaylandPointer<ext_image_copy_capture_session_v1,
                         ext_image_copy_capture_session_v1_destroy>
        proxy(ext_image_copy_capture_manager_v1_create_session(m_manager, source.get(), 0));
    ext_image_copy_capture_session_v1_add_listener(proxy.get(), &sessionListener, &session);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        connection().dispatchUntil([&] { return session.constraints || session.isStopped; },
                                   deadline);
        const Constraints told =
            std::exchange(session.constraints, std::nullopt).value_or(Constraints());
        if (session.isStopped || !told.format) {
            return {};
        }
        const ShmBuffer buffer(
            shm(), {*told.format, told.size, packedStride(*told.format, told.size.width())});
        if (!buffer.buffer()) {
            return {};
        }
        Frame frame;
        const WaylandPointer<ext_image_copy_capture_frame_v1,
                             ext_image_copy_capture_frame_v1_destroy>
            copied(ext_image_copy_capture_session_v1_create_frame(proxy.get()));
        ext_image_copy_capture_frame_v1_add_listener(copied.get(), &frameListener, &frame);
        ext_image_copy_capture_frame_v1_attach_buffer(copied.get(), buffer.buffer());
        ext_image_copy_capture_frame_v1_damage_buffer(copied.get(), 0, 0, told.size.width(),
                                                      told.size.height());
        ext_image_copy_capture_frame_v1_capture(copied.get());
        connection().dispatchUntil(
            [&] { return frame.isReady || frame.failure || session.isStopped; }, deadline);
        if (frame.isReady) {
            return croppedToPoints(upright(buffer.image(), frame.transform), size, rect);
        }
        if (frame.failure !=
            quint32(EXT_IMAGE_COPY_CAPTURE_FRAME_V1_FAILURE_REASON_BUFFER_CONSTRAINTS)) {
            return {};
        }
    }
    return {};
}

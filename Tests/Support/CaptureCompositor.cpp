// SPDX-License-Identifier: MIT
#include "Support/CaptureCompositor.h"

#include <QTransform>

#include <mutex>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <wayland-ext-image-capture-source-v1-server.h>
#include <wayland-ext-image-copy-capture-v1-server.h>
#include <wayland-server.h>

namespace {
/// The version of wl_output that tells its name.
constexpr int outputVersion = 4;

void destroyResource(wl_client *, wl_resource *resource)
{
    wl_resource_destroy(resource);
}
} // namespace

class CaptureCompositor::Server
{
public:
    explicit Server(Script script);
    ~Server();

    std::atomic<int> captures = 0;
    QByteArray complaint()
    {
        const std::scoped_lock lock(m_guard);
        return m_complaint;
    }

private:
    struct Frame
    {
        Server *server;
        wl_resource *session;
        wl_resource *buffer;
        QRect damage;
    };

    template <typename Bind>
    void offer(const wl_interface &interface, int version, Bind bind)
    {
        wl_global_create(m_display, &interface, version, this, bind);
    }
    static Server &serverOf(wl_resource *resource)
    {
        return *static_cast<Server *>(wl_resource_get_user_data(resource));
    }
    static Frame &frameOf(wl_resource *resource)
    {
        return *static_cast<Frame *>(wl_resource_get_user_data(resource));
    }
    static void bindOutput(wl_client *client, void *data, uint32_t version, uint32_t id);
    static void bindSources(wl_client *client, void *data, uint32_t version, uint32_t id);
    static void bindManager(wl_client *client, void *data, uint32_t version, uint32_t id);
    static void createSession(wl_client *client, wl_resource *manager, uint32_t id,
                              wl_resource *source, uint32_t options);
    static void createFrame(wl_client *client, wl_resource *session, uint32_t id);
    void tellConstraints(wl_resource *session) const;
    void answer(wl_resource *frame);
    void draw(wl_resource *frame);
    void complain(const char *about)
    {
        const std::scoped_lock lock(m_guard);
        m_complaint.append(about).append("; ");
    }

    Script m_script;
    /// What the hardware has.
    QImage m_shown;
    wl_display *m_display;
    int m_end;
    wl_event_source *m_ending = nullptr;
    std::mutex m_guard;
    QByteArray m_complaint;
    std::thread m_thread;
};

CaptureCompositor::Server::Server(Script script)
    : m_script(std::move(script))
    , m_display(wl_display_create())
    , m_end(eventfd(0, EFD_CLOEXEC))
{
    // The opposite of what makes it upright: a flip of the turned picture.
    QTransform turn;
    if (m_script.transform >= WL_OUTPUT_TRANSFORM_FLIPPED) {
        turn.scale(-1, 1);
    }
    turn.rotate(-90.0 * (m_script.transform % 4));
    m_shown = m_script.picture.transformed(turn);

    wl_display_init_shm(m_display);
    for (const quint32 format : m_script.formats) {
        wl_display_add_shm_format(m_display, format);
    }
    if (m_script.hasOutput) {
        offer(wl_output_interface, outputVersion, &bindOutput);
    }
    if (m_script.offersSources) {
        offer(ext_output_image_capture_source_manager_v1_interface, 1, &bindSources);
    }
    offer(ext_image_copy_capture_manager_v1_interface, 1, &bindManager);
    qputenv("WAYLAND_DISPLAY", wl_display_add_socket_auto(m_display));
    m_ending = wl_event_loop_add_fd(
        wl_display_get_event_loop(m_display), m_end, WL_EVENT_READABLE,
        [](int, uint32_t, void *data) {
            wl_display_terminate(static_cast<wl_display *>(data));
            return 0;
        },
        m_display);
    m_thread = std::thread([this] { wl_display_run(m_display); });
}

CaptureCompositor::Server::~Server()
{
    qunsetenv("WAYLAND_DISPLAY");
    eventfd_write(m_end, 1);
    m_thread.join();
    wl_event_source_remove(m_ending);
    wl_display_destroy_clients(m_display);
    wl_display_destroy(m_display);
    close(m_end);
}

void CaptureCompositor::Server::bindOutput(wl_client *client, void *data, uint32_t version,
                                           uint32_t id)
{
    static const struct wl_output_interface requests
    {
        .release = &destroyResource
    };
    const auto &server = *static_cast<Server *>(data);
    wl_resource *output =
        wl_resource_create(client, &wl_output_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(output, &requests, data, nullptr);
    wl_output_send_geometry(output, 0, 0, 0, 0, WL_OUTPUT_SUBPIXEL_UNKNOWN, "", "",
                            server.m_script.transform);
    wl_output_send_mode(output, WL_OUTPUT_MODE_CURRENT, server.m_shown.width(),
                        server.m_shown.height(), 60000);
    wl_output_send_name(output, server.m_script.outputName.constData());
    wl_output_send_done(output);
}

void CaptureCompositor::Server::bindSources(wl_client *client, void *data, uint32_t version,
                                            uint32_t id)
{
    static const struct ext_output_image_capture_source_manager_v1_interface requests
    {
        .create_source =
            [](wl_client *owner, wl_resource *, uint32_t source, wl_resource *) {
                static const struct ext_image_capture_source_v1_interface none
                {
                    .destroy = &destroyResource
                };
                wl_resource_set_implementation(
                    wl_resource_create(owner, &ext_image_capture_source_v1_interface, 1, source),
                    &none, nullptr, nullptr);
            },
        .destroy = &destroyResource
    };
    wl_resource_set_implementation(
        wl_resource_create(client, &ext_output_image_capture_source_manager_v1_interface,
                           static_cast<int>(version), id),
        &requests, data, nullptr);
}

void CaptureCompositor::Server::bindManager(wl_client *client, void *data, uint32_t version,
                                            uint32_t id)
{
    static const struct ext_image_copy_capture_manager_v1_interface requests
    {
        .create_session = &createSession,
        .create_pointer_cursor_session =
            [](wl_client *, wl_resource *manager, uint32_t, wl_resource *, wl_resource *) {
                serverOf(manager).complain("asked for the pointer");
            },
        .destroy = &destroyResource
    };
    wl_resource_set_implementation(wl_resource_create(client,
                                                      &ext_image_copy_capture_manager_v1_interface,
                                                      static_cast<int>(version), id),
                                   &requests, data, nullptr);
}

void CaptureCompositor::Server::createSession(wl_client *client, wl_resource *manager, uint32_t id,
                                              wl_resource *, uint32_t options)
{
    static const struct ext_image_copy_capture_session_v1_interface requests
    {
        .create_frame = &createFrame, .destroy = &destroyResource
    };
    Server &server = serverOf(manager);
    if (options != 0) {
        server.complain("wants the pointer in the picture");
    }
    wl_resource *session =
        wl_resource_create(client, &ext_image_copy_capture_session_v1_interface, 1, id);
    wl_resource_set_implementation(session, &requests, &server, nullptr);
    if (server.m_script.endsSessions) {
        ext_image_copy_capture_session_v1_send_stopped(session);
    } else {
        server.tellConstraints(session);
    }
}

void CaptureCompositor::Server::tellConstraints(wl_resource *session) const
{
    ext_image_copy_capture_session_v1_send_buffer_size(session, uint32_t(m_shown.width()),
                                                       uint32_t(m_shown.height()));
    for (const quint32 format : m_script.formats) {
        ext_image_copy_capture_session_v1_send_shm_format(session, format);
    }
    ext_image_copy_capture_session_v1_send_done(session);
}

void CaptureCompositor::Server::createFrame(wl_client *client, wl_resource *session, uint32_t id)
{
    static const struct ext_image_copy_capture_frame_v1_interface requests
    {
        .destroy = &destroyResource,
        .attach_buffer = [](wl_client *, wl_resource *frame,
                            wl_resource *buffer) { frameOf(frame).buffer = buffer; },
        .damage_buffer = [](wl_client *, wl_resource *frame, int32_t x, int32_t y, int32_t width,
                            int32_t height) { frameOf(frame).damage = QRect(x, y, width, height); },
        .capture = [](wl_client *, wl_resource *frame) {
            frameOf(frame).server->answer(frame);
        }
    };
    wl_resource *frame =
        wl_resource_create(client, &ext_image_copy_capture_frame_v1_interface, 1, id);
    wl_resource_set_implementation(
        frame, &requests, new Frame{&serverOf(session), session, nullptr, {}},
        [](wl_resource *resource) {
            delete static_cast<Frame *>(wl_resource_get_user_data(resource));
        });
}

void CaptureCompositor::Server::answer(wl_resource *frame)
{
    ++captures;
    wl_resource *session = frameOf(frame).session;
    const CaptureAnswer next =
        m_script.answers.size() > 1 ? m_script.answers.takeFirst() : m_script.answers.constFirst();
    switch (next) {
    case CaptureAnswer::Picture:
        draw(frame);
        return;
    case CaptureAnswer::ChangedConstraints:
        m_shown = m_shown.scaled(m_shown.size() * 2);
        tellConstraints(session);
        ext_image_copy_capture_frame_v1_send_failed(
            frame, EXT_IMAGE_COPY_CAPTURE_FRAME_V1_FAILURE_REASON_BUFFER_CONSTRAINTS);
        return;
    case CaptureAnswer::Failure:
        ext_image_copy_capture_frame_v1_send_failed(
            frame, EXT_IMAGE_COPY_CAPTURE_FRAME_V1_FAILURE_REASON_UNKNOWN);
        return;
    case CaptureAnswer::Stopped:
        ext_image_copy_capture_session_v1_send_stopped(session);
        ext_image_copy_capture_frame_v1_send_failed(
            frame, EXT_IMAGE_COPY_CAPTURE_FRAME_V1_FAILURE_REASON_STOPPED);
        return;
    case CaptureAnswer::Silence:
        return;
    }
}

void CaptureCompositor::Server::draw(wl_resource *frame)
{
    wl_shm_buffer *buffer = wl_shm_buffer_get(frameOf(frame).buffer);
    if (!buffer || frameOf(frame).damage != m_shown.rect() ||
        QSize(wl_shm_buffer_get_width(buffer), wl_shm_buffer_get_height(buffer)) !=
            m_shown.size()) {
        complain("the buffer is not as told, or not damaged as a whole");
        ext_image_copy_capture_frame_v1_send_failed(
            frame, EXT_IMAGE_COPY_CAPTURE_FRAME_V1_FAILURE_REASON_BUFFER_CONSTRAINTS);
        return;
    }
    const uint32_t format = wl_shm_buffer_get_format(buffer);
    if (!m_script.formats.contains(format)) {
        complain("the format is not one of those told");
    }
    wl_shm_buffer_begin_access(buffer);
    QImage target(static_cast<uchar *>(wl_shm_buffer_get_data(buffer)), m_shown.width(),
                  m_shown.height(), wl_shm_buffer_get_stride(buffer),
                  format == WL_SHM_FORMAT_BGR888     ? QImage::Format_RGB888
                  : format == WL_SHM_FORMAT_XBGR8888 ? QImage::Format_RGBX8888
                                                     : QImage::Format_ARGB32);
    for (int y = 0; y < m_shown.height(); ++y) {
        for (int x = 0; x < m_shown.width(); ++x) {
            target.setPixelColor(x, y, m_shown.pixelColor(x, y));
        }
    }
    wl_shm_buffer_end_access(buffer);
    ext_image_copy_capture_frame_v1_send_transform(frame, uint32_t(m_script.transform));
    ext_image_copy_capture_frame_v1_send_damage(frame, 0, 0, m_shown.width(), m_shown.height());
    ext_image_copy_capture_frame_v1_send_presentation_time(frame, 0, 1, 0);
    ext_image_copy_capture_frame_v1_send_ready(frame);
}

CaptureCompositor::CaptureCompositor(const Script &script)
    : m_server(std::make_unique<Server>(script))
{
}

CaptureCompositor::~CaptureCompositor() = default;

int CaptureCompositor::captures() const
{
    return m_server->captures;
}

QByteArray CaptureCompositor::complaint() const
{
    return m_server->complaint();
}

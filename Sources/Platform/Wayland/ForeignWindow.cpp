// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ForeignWindow.h"

#include "Platform/Wayland/QtWayland.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <QGuiApplication>
#include <QWindow>

#include <wayland-xdg-foreign-unstable-v2.h>

using namespace Qt::StringLiterals;

/// What has to live for the handle to hold, on a queue of Qt's connection.
struct ForeignWindow::Export
{
    WaylandPointer<wl_event_queue, wl_event_queue_destroy> queue;
    WaylandPointer<zxdg_exporter_v2, zxdg_exporter_v2_destroy> exporter;
    WaylandPointer<zxdg_exported_v2, zxdg_exported_v2_destroy> exported;
    QString handle;
};

namespace {
const zxdg_exported_v2_listener exportedListener{
    .handle = [](void *data, zxdg_exported_v2 *,
                 const char *handle) { *static_cast<QString *>(data) = QString::fromUtf8(handle); },
};
} // namespace

ForeignWindow::ForeignWindow(QWindow &window)
{
    if (QGuiApplication::platformName() == u"xcb") {
        m_identifier = u"x11:%1"_s.arg(window.winId(), 0, 16);
        return;
    }
    wl_display *display = qtWaylandDisplay();
    wl_surface *surface = qtWaylandSurface(window);
    if (!display || !surface) {
        return;
    }
    m_export = std::make_unique<Export>();
    m_export->queue.reset(wl_display_create_queue(display));
    m_export->exporter.reset(static_cast<zxdg_exporter_v2 *>(
        bindOnQtConnection(zxdg_exporter_v2_interface, 1, m_export->queue.get())));
    if (!m_export->exporter) {
        return;
    }
    m_export->exported.reset(zxdg_exporter_v2_export_toplevel(m_export->exporter.get(), surface));
    zxdg_exported_v2_add_listener(m_export->exported.get(), &exportedListener, &m_export->handle);
    wl_display_roundtrip_queue(display, m_export->queue.get());
    if (!m_export->handle.isEmpty()) {
        m_identifier = u"wayland:"_s + m_export->handle;
    }
}

ForeignWindow::~ForeignWindow() = default;

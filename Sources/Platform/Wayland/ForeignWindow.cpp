// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ForeignWindow.h"

#include "Platform/Wayland/ExportedSurface.h"
#include "Platform/Wayland/QtWayland.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <QGuiApplication>
#include <QWindow>

using namespace Qt::StringLiterals;

/// What has to live for the handle to hold, on a queue of Qt's connection.
struct ForeignWindow::Export
{
    WaylandPointer<wl_event_queue, wl_event_queue_destroy> queue;
    std::unique_ptr<ExportedSurface> surface;
};

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
    wl_event_queue *queue = m_export->queue.get();
    m_export->surface = std::make_unique<ExportedSurface>(
        *surface, ExportedSurface::Protocols::Any,
        [queue](const wl_interface &interface) { return bindOnQtConnection(interface, 1, queue); });
    wl_display_roundtrip_queue(display, queue);
    const QByteArray &name = m_export->surface->name();
    if (!name.isEmpty()) {
        m_identifier = u"wayland:"_s + QString::fromUtf8(name);
    }
}

ForeignWindow::~ForeignWindow() = default;

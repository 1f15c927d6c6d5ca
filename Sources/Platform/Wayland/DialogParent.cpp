// SPDX-License-Identifier: MIT
#include "Platform/Wayland/DialogParent.h"

#include "Platform/Wayland/QtWayland.h"
#include "Platform/Wayland/ShmBuffer.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <QGuiApplication>
#include <QWindow>

#include <chrono>
#include <wayland-gtk-shell.h>
#include <wayland-viewporter.h>
#include <wayland-xdg-foreign-unstable-v1.h>
#include <wayland-xdg-shell.h>

namespace {
/// When a compositor that does not answer is given up on: the dialog stands anywhere, then.
constexpr std::chrono::seconds patience(2);

/// For what has no request that ends it.
template <typename Proxy>
void forget(Proxy *proxy)
{
    wl_proxy_destroy(reinterpret_cast<wl_proxy *>(proxy));
}

const xdg_surface_listener roleListener{
    .configure = [](void *, xdg_surface *role,
                    uint32_t serial) { xdg_surface_ack_configure(role, serial); },
};

const xdg_toplevel_listener toplevelListener{
    .configure = [](void *data, xdg_toplevel *, int32_t width, int32_t height,
                    wl_array *) { *static_cast<QSize *>(data) = QSize(width, height); },
    .close = [](void *, xdg_toplevel *) {},
    .configure_bounds = [](void *, xdg_toplevel *, int32_t, int32_t) {},
    .wm_capabilities = [](void *, xdg_toplevel *, wl_array *) {},
};

const zxdg_exported_v1_listener exportedListener{
    .handle = [](void *data, zxdg_exported_v1 *,
                 const char *handle) { *static_cast<QByteArray *>(data) = handle; },
};
} // namespace

/// The parent is on a connection of its own: on Qt's it would get the keyboard for a moment, and Qt
/// know nothing of it. The dialog is told of it by a name.
struct DialogParent::Parts
{
    template <typename Pointer>
    void bind(Pointer &pointer, const wl_interface &interface)
    {
        using Proxy = typename Pointer::element_type;
        pointer.reset(connection.bindFirst<Proxy>(interface, 1));
    }

    template <typename Pointer>
    void bindOnQt(Pointer &pointer, const wl_interface &interface)
    {
        pointer.reset(static_cast<typename Pointer::pointer>(
            bindOnQtConnection(interface, 1, qtQueue.get())));
    }

    /// Without a size where anything is missing.
    void askForPlace();
    void cover(QSize size);

    QDeadlineTimer deadline{patience};
    WaylandConnection connection;
    WaylandPointer<xdg_wm_base, xdg_wm_base_destroy> shell;
    WaylandPointer<wl_compositor, wl_compositor_destroy> compositor;
    WaylandPointer<wl_shm, wl_shm_destroy> memory;
    WaylandPointer<wp_viewporter, wp_viewporter_destroy> viewporter;
    WaylandPointer<zxdg_exporter_v1, zxdg_exporter_v1_destroy> exporter;
    std::unique_ptr<ShmBuffer> picture;
    WaylandPointer<wl_surface, wl_surface_destroy> surface;
    WaylandPointer<wp_viewport, wp_viewport_destroy> viewport;
    WaylandPointer<xdg_surface, xdg_surface_destroy> role;
    WaylandPointer<xdg_toplevel, xdg_toplevel_destroy> toplevel;
    WaylandPointer<zxdg_exported_v1, zxdg_exported_v1_destroy> exported;
    QSize freeSize;
    QByteArray name;

    WaylandPointer<wl_event_queue, wl_event_queue_destroy> qtQueue;
    WaylandPointer<zxdg_importer_v1, zxdg_importer_v1_destroy> importer;
    WaylandPointer<gtk_shell1, forget<gtk_shell1>> gtkShell;
    WaylandPointer<zxdg_imported_v1, zxdg_imported_v1_destroy> imported;
    WaylandPointer<gtk_surface1, forget<gtk_surface1>> modality;
};

void DialogParent::Parts::askForPlace()
{
    bind(shell, xdg_wm_base_interface);
    bind(compositor, wl_compositor_interface);
    bind(memory, wl_shm_interface);
    bind(viewporter, wp_viewporter_interface);
    bind(exporter, zxdg_exporter_v1_interface);
    if (!shell || !compositor || !memory || !viewporter || !exporter) {
        return;
    }
    surface.reset(wl_compositor_create_surface(compositor.get()));
    viewport.reset(wp_viewporter_get_viewport(viewporter.get(), surface.get()));
    role.reset(xdg_wm_base_get_xdg_surface(shell.get(), surface.get()));
    toplevel.reset(xdg_surface_get_toplevel(role.get()));
    exported.reset(zxdg_exporter_v1_export(exporter.get(), surface.get()));
    xdg_surface_add_listener(role.get(), &roleListener, nullptr);
    xdg_toplevel_add_listener(toplevel.get(), &toplevelListener, &freeSize);
    zxdg_exported_v1_add_listener(exported.get(), &exportedListener, &name);
    xdg_toplevel_set_title(toplevel.get(), QGuiApplication::applicationDisplayName().toUtf8());
    xdg_toplevel_set_app_id(toplevel.get(), QGuiApplication::desktopFileName().toUtf8());
    xdg_toplevel_set_maximized(toplevel.get());
    wl_surface_commit(surface.get());
    if (!connection.roundtrip(deadline) || name.isEmpty()) {
        freeSize = {};
    }
}

void DialogParent::Parts::cover(QSize size)
{
    // One pixel that is transparent, as large as is wanted.
    picture = std::make_unique<ShmBuffer>(
        memory.get(), ShmLayout{WL_SHM_FORMAT_ARGB8888, {1, 1}, sizeof(quint32)});
    const WaylandPointer<wl_region, wl_region_destroy> nowhere(
        wl_compositor_create_region(compositor.get()));
    wp_viewport_set_destination(viewport.get(), size.width(), size.height());
    xdg_surface_set_window_geometry(role.get(), 0, 0, size.width(), size.height());
    wl_surface_set_input_region(surface.get(), nowhere.get());
    wl_surface_attach(surface.get(), picture->buffer(), 0, 0);
    wl_surface_damage(surface.get(), 0, 0, size.width(), size.height());
    wl_surface_commit(surface.get());
    // Before the dialog: what comes on another connection may overtake it.
    connection.roundtrip(deadline);
}

bool DialogParent::isOffered()
{
    const WaylandConnection connection;
    return connection.version(gtk_shell1_interface.name) > 0 &&
           connection.version(zxdg_importer_v1_interface.name) > 0 &&
           connection.version(wp_viewporter_interface.name) > 0;
}

DialogParent::DialogParent()
    : m_parts(std::make_unique<Parts>())
{
    m_parts->askForPlace();
}

DialogParent::~DialogParent()
{
    if (m_parts->modality && m_dialog && m_dialog->isVisible()) {
        gtk_surface1_unset_modal(m_parts->modality.get());
        // Before the parent goes, which is on another connection and could go first.
        m_parts->imported.reset();
        wl_display_roundtrip_queue(qtWaylandDisplay(), m_parts->qtQueue.get());
    }
}

QSize DialogParent::freeSize() const
{
    return m_parts->freeSize;
}

void DialogParent::adopt(QWindow &dialog, QSize size)
{
    Parts &parts = *m_parts;
    wl_display *display = qtWaylandDisplay();
    wl_surface *surface = qtWaylandSurface(dialog);
    if (parts.freeSize.isEmpty() || !display || !surface) {
        return;
    }
    parts.qtQueue.reset(wl_display_create_queue(display));
    parts.bindOnQt(parts.importer, zxdg_importer_v1_interface);
    parts.bindOnQt(parts.gtkShell, gtk_shell1_interface);
    if (!parts.importer || !parts.gtkShell) {
        return;
    }
    parts.cover(size);
    parts.imported.reset(zxdg_importer_v1_import(parts.importer.get(), parts.name));
    zxdg_imported_v1_set_parent_of(parts.imported.get(), surface);
    parts.modality.reset(gtk_shell1_get_gtk_surface(parts.gtkShell.get(), surface));
    gtk_surface1_set_modal(parts.modality.get());
    wl_display_flush(display);
    m_dialog = &dialog;
}

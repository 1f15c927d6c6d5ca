// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ExportedSurface.h"

#include "Platform/Wayland/WaylandConnection.h"

#include <wayland-xdg-foreign-unstable-v1.h>
#include <wayland-xdg-foreign-unstable-v2.h>

namespace {
const zxdg_exported_v1_listener firstListener{
    .handle = [](void *name, zxdg_exported_v1 *,
                 const char *handle) { *static_cast<QByteArray *>(name) = handle; },
};

const zxdg_exported_v2_listener secondListener{
    .handle = [](void *name, zxdg_exported_v2 *,
                 const char *handle) { *static_cast<QByteArray *>(name) = handle; },
};
} // namespace

/// Of one protocol or the other.
struct ExportedSurface::Parts
{
    WaylandPointer<zxdg_exporter_v1, zxdg_exporter_v1_destroy> firstExporter;
    WaylandPointer<zxdg_exporter_v2, zxdg_exporter_v2_destroy> secondExporter;
    WaylandPointer<zxdg_exported_v1, zxdg_exported_v1_destroy> first;
    WaylandPointer<zxdg_exported_v2, zxdg_exported_v2_destroy> second;
    QByteArray name;
};

ExportedSurface::ExportedSurface(wl_surface &surface, Protocols protocols, const Bind &bind)
    : m_parts(std::make_unique<Parts>())
{
    Parts &parts = *m_parts;
    if (protocols == Protocols::Any) {
        parts.secondExporter.reset(
            static_cast<zxdg_exporter_v2 *>(bind(zxdg_exporter_v2_interface)));
    }
    if (parts.secondExporter) {
        parts.second.reset(zxdg_exporter_v2_export_toplevel(parts.secondExporter.get(), &surface));
        zxdg_exported_v2_add_listener(parts.second.get(), &secondListener, &parts.name);
        return;
    }
    parts.firstExporter.reset(static_cast<zxdg_exporter_v1 *>(bind(zxdg_exporter_v1_interface)));
    if (parts.firstExporter) {
        parts.first.reset(zxdg_exporter_v1_export(parts.firstExporter.get(), &surface));
        zxdg_exported_v1_add_listener(parts.first.get(), &firstListener, &parts.name);
    }
}

ExportedSurface::~ExportedSurface() = default;

const QByteArray &ExportedSurface::name() const
{
    return m_parts->name;
}

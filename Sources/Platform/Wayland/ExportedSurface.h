// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <functional>
#include <memory>

struct wl_interface;
struct wl_surface;

/// A surface of ours under a name by which other connections to the compositor can refer to it, by
/// xdg-foreign. The name holds as long as this object, which dies before the surface's connection.
/// Main thread only.
class ExportedSurface
{
public:
    /// Binds version 1 of a global on the surface's connection; null where it is not offered.
    using Bind = std::function<void *(const wl_interface &interface)>;

    /// Which protocols may be used. Names of the one are not for the other.
    enum class Protocols {
        /// zxdg_exporter_v1, for what is imported by zxdg_importer_v1.
        First,
        /// zxdg_exporter_v2, or the first where that is not offered, as on GNOME 43.
        Any,
    };

    /// Asks for a name. `surface` is an ordinary window.
    ExportedSurface(wl_surface &surface, Protocols protocols, const Bind &bind);
    ~ExportedSurface();
    ExportedSurface(const ExportedSurface &) = delete;
    ExportedSurface &operator=(const ExportedSurface &) = delete;

    /// Empty until the connection has handled the compositor's answer, and where the compositor
    /// names no surfaces.
    const QByteArray &name() const;

private:
    struct Parts;

    std::unique_ptr<Parts> m_parts;
};

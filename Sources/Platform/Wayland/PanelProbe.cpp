// SPDX-License-Identifier: MIT
#include "Platform/Wayland/PanelProbe.h"

#include "Platform/Wayland/LayerShellProtocol.h"
#include "Platform/Wayland/WaylandOutputs.h"

#include <chrono>

namespace {
/// When a compositor that does not answer is given up on; without the answer a bar may cover a
/// window.
constexpr std::chrono::seconds patience(2);

const zwlr_layer_surface_v1_listener layerListener{
    .configure =
        [](void *data, zwlr_layer_surface_v1 *, uint32_t, uint32_t width, uint32_t height) {
            *static_cast<QSize *>(data) = QSize(static_cast<int>(width), static_cast<int>(height));
        },
    .closed = [](void *, zwlr_layer_surface_v1 *) {},
};
} // namespace

std::optional<QSize> sizeBesideLayers(const QScreen &screen)
{
    const QDeadlineTimer deadline(patience);
    WaylandConnection connection;
    constexpr quint32 wanted = LayerShellProtocol::destroyableVersion;
    const WaylandPointer<zwlr_layer_shell_v1, zwlr_layer_shell_v1_destroy> shell(
        connection.version(zwlr_layer_shell_v1_interface.name) < wanted
            ? nullptr
            : connection.bindFirst<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, wanted));
    const WaylandPointer<wl_compositor, wl_compositor_destroy> compositor(
        connection.bindFirst<wl_compositor>(wl_compositor_interface, 1));
    const WaylandOutputs outputs = bindOutputs(connection, deadline);
    const WaylandOutput *output = outputOf(screen, outputs);
    if (!shell || !compositor || !output) {
        return std::nullopt;
    }
    QSize size;
    const WaylandPointer<wl_surface, wl_surface_destroy> surface(
        wl_compositor_create_surface(compositor.get()));
    const WaylandPointer<zwlr_layer_surface_v1, zwlr_layer_surface_v1_destroy> layer(
        zwlr_layer_shell_v1_get_layer_surface(shell.get(), surface.get(), output->proxy,
                                              ZWLR_LAYER_SHELL_V1_LAYER_BOTTOM, "vellora-probe"));
    zwlr_layer_surface_v1_add_listener(layer.get(), &layerListener, &size);
    zwlr_layer_surface_v1_set_anchor(layer.get(), LayerShellProtocol::everyEdge);
    // 0 asks to be put beside what takes room.
    zwlr_layer_surface_v1_set_exclusive_zone(layer.get(), 0);
    wl_surface_commit(surface.get());
    connection.dispatchUntil([&size] { return !size.isEmpty(); }, deadline);
    return size.isEmpty() ? std::nullopt : std::optional(size);
}

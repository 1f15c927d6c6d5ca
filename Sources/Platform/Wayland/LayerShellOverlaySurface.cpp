// SPDX-License-Identifier: MIT
#include "Platform/Wayland/LayerShellOverlaySurface.h"

#include "Platform/ScreenImage.h"

#include <QWidget>

#include <algorithm>
#include <utility>

LayerShellOverlaySurface::LayerShellOverlaySurface() = default;

std::optional<QPixmap> LayerShellOverlaySurface::cover(QWidget &panel, const Screen &screen)
{
    panel.setWindowFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    panel.setAttribute(Qt::WA_TranslucentBackground);
    panel.setAttribute(Qt::WA_NoSystemBackground);
    panel.setGeometry(screen.geometry);
    QScreen *output = qtScreen(screen);
    auto layer = output ? m_shell.cover(panel, *output) : nullptr;
    if (!layer) {
        return std::nullopt;
    }
    m_overlays.push_back({&panel, std::move(layer)});
    return QPixmap();
}

void LayerShellOverlaySurface::orderFront(QWidget &panel)
{
    const bool isCovering =
        std::ranges::find(m_overlays, &panel, &Overlay::panel) != m_overlays.end();
    if (isCovering) {
        panel.show();
    }
}

void LayerShellOverlaySurface::makeKey(QWidget & /*panel*/)
{
    // The layer has asked for the keyboard already; a program cannot take it.
}

void LayerShellOverlaySurface::orderOut(QWidget &panel)
{
    std::erase_if(m_overlays, [&](const Overlay &overlay) { return overlay.panel == &panel; });
    panel.hide();
    m_shell.roundtrip();
}

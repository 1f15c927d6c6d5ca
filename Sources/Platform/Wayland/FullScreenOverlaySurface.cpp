// SPDX-License-Identifier: MIT
#include "Platform/Wayland/FullScreenOverlaySurface.h"

#include "Platform/ScreenImage.h"

#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <algorithm>

FullScreenOverlaySurface::FullScreenOverlaySurface(FrozenScreenRecording &recording)
    : m_recording(recording)
{
}

std::optional<QPixmap> FullScreenOverlaySurface::cover(QWidget &panel, const Screen &screen)
{
    if (m_overlays.empty()) {
        m_recording.thaw();
    }
    m_recording.freeze();
    QScreen *output = qtScreen(screen);
    const QImage picture = m_recording.picture(screen.displayNumber.value_or(0));
    if (!output || picture.isNull()) {
        return std::nullopt;
    }
    panel.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    panel.setWindowFlag(Qt::BypassWindowManagerHint, m_shell.isUsable());
    panel.setAttribute(Qt::WA_NoSystemBackground);
    panel.setGeometry(QRect(screen.geometry.topLeft(), sizeOf(screen).toSize()));
    m_overlays.push_back({&panel, output, nullptr});
    return QPixmap::fromImage(picture);
}

void FullScreenOverlaySurface::orderFront(QWidget &panel)
{
    const auto overlay = std::ranges::find(m_overlays, &panel, &Overlay::panel);
    if (overlay == m_overlays.end() || !overlay->screen) {
        return;
    }
    if (m_shell.isUsable()) {
        overlay->window = m_shell.show(panel, *overlay->screen);
        return;
    }
    panel.setScreen(overlay->screen);
    panel.winId();
    panel.windowHandle()->setScreen(overlay->screen);
    panel.showFullScreen();
}

void FullScreenOverlaySurface::makeKey(QWidget &panel)
{
    panel.activateWindow();
}

void FullScreenOverlaySurface::orderOut(QWidget &panel)
{
    std::erase_if(m_overlays, [&](const Overlay &overlay) { return overlay.panel == &panel; });
    panel.hide();
    if (m_overlays.empty()) {
        QTimer::singleShot(0, &m_context, [this] {
            if (m_overlays.empty()) {
                m_recording.thaw();
            }
        });
    }
}

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

QPixmap FullScreenOverlaySurface::cover(QWidget &panel, const Screen &screen)
{
    if (m_panels.empty()) {
        m_recording.thaw();
    }
    m_recording.freeze();
    QScreen *output = qtScreen(screen);
    const QImage picture = m_recording.picture(screen.displayNumber.value_or(0));
    if (!output || picture.isNull()) {
        return {};
    }
    panel.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    panel.setAttribute(Qt::WA_NoSystemBackground);
    panel.setScreen(output);
    panel.setGeometry(QRect(screen.geometry.topLeft(), sizeOf(screen).toSize()));
    panel.winId();
    panel.windowHandle()->setScreen(output);
    m_panels.push_back(&panel);

    QPixmap pixmap = QPixmap::fromImage(picture);
    pixmap.setDevicePixelRatio(picture.width() / sizeOf(screen).width());
    return pixmap;
}

void FullScreenOverlaySurface::orderFront(QWidget &panel)
{
    if (std::ranges::find(m_panels, &panel) != m_panels.end()) {
        panel.showFullScreen();
    }
}

void FullScreenOverlaySurface::makeKey(QWidget &panel)
{
    panel.activateWindow();
}

void FullScreenOverlaySurface::orderOut(QWidget &panel)
{
    std::erase(m_panels, &panel);
    panel.hide();
    if (m_panels.empty()) {
        QTimer::singleShot(0, &m_context, [this] {
            if (m_panels.empty()) {
                m_recording.thaw();
            }
        });
    }
}

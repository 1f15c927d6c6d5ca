// SPDX-License-Identifier: MIT
#include "Platform/Wayland/FullScreenOverlaySurface.h"

#include "Platform/ScreenImage.h"
#include "Platform/Wayland/QtWayland.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <wayland-xdg-shell.h>

namespace {
/// Tells the compositor with each picture of a panel how large the panel is. QtWayland 6.4 does
/// so when the size changes, but not while the compositor is late to show the last picture. GNOME's
/// first size for a screen of another scale is a wrong one; a panel that got the right one at such
/// a moment was drawn beside its screen.
class SizeTeller : public QObject
{
public:
    explicit SizeTeller(QWidget &panel)
        : QObject(&panel)
    {
        panel.installEventFilter(this);
    }

    bool eventFilter(QObject *panel, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            const auto &widget = static_cast<QWidget &>(*panel);
            if (xdg_surface *surface = qtXdgSurface(*widget.windowHandle())) {
                xdg_surface_set_window_geometry(surface, 0, 0, widget.width(), widget.height());
            }
        }
        return false;
    }
};
} // namespace

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
    new SizeTeller(panel);
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

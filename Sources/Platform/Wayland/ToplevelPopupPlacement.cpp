// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ToplevelPopupPlacement.h"

#include <QWidget>
#include <QWindow>

namespace {
/// QtWayland's decoration "adwaita" (6.8), which it takes on GNOME, counts its shadow among a
/// window's margins, so many points on each side beside a border of one. The others have none, and
/// borders of three points. The compositor counts no shadow.
constexpr int shadow = 10;
} // namespace

ToplevelPopupPlacement::ToplevelPopupPlacement(const Screens &screens)
    : m_screens(screens)
{
}

void ToplevelPopupPlacement::makeFloating(QWidget &window)
{
    window.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
}

CocoaSize ToplevelPopupPlacement::frameSize(const QWidget &window) const
{
    QSize size = window.frameSize();
    if (window.windowHandle() && window.windowHandle()->frameMargins().left() > shadow) {
        size -= QSize(2 * shadow, 2 * shadow);
    }
    return {double(size.width()), double(size.height())};
}

CocoaRect ToplevelPopupPlacement::frame(const QWidget &window) const
{
    return m_screens.fromQt(QRectF(QPointF(0, 0), QSizeF(window.frameSize())));
}

void ToplevelPopupPlacement::setFrameOrigin(QWidget & /*window*/, CocoaPoint /*origin*/)
{
}

void ToplevelPopupPlacement::makeKeyAndOrderFront(QWidget &window)
{
    if (window.isVisible()) {
        m_activation.activate(window);
        return;
    }
    // Every compositor gives a new window the keyboard, as far as it lets any program have it.
    window.show();
}

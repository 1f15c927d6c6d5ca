// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ToplevelPopupPlacement.h"

#include <QWidget>

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
    const QSize size = window.frameSize();
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

// SPDX-License-Identifier: MIT
#include "Platform/PopupPlacement.h"

#include <QWidget>

void PopupPlacement::place(QWidget &window, const Origin &origin)
{
    setFrameOrigin(window, origin(frameSize(window)));
}

void PopupPlacement::setFrame(QWidget &window, const CocoaRect &frame)
{
    const CocoaSize outer = frameSize(window);
    const QSizeF borders(outer.width - window.width(), outer.height - window.height());
    window.resize(
        (QSizeF(frame.size.width, frame.size.height) - borders).toSize().expandedTo({0, 0}));
    setFrameOrigin(window, frame.origin);
}

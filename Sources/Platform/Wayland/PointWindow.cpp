// SPDX-License-Identifier: MIT
#include "Platform/Wayland/PointWindow.h"

#include <QGuiApplication>

PointWindow::PointWindow()
{
    QSurfaceFormat transparent = format();
    transparent.setAlphaBufferSize(8);
    setFormat(transparent);
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setTitle(QGuiApplication::applicationDisplayName());
    resize(1, 1);
}

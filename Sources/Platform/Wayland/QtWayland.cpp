// SPDX-License-Identifier: MIT
#include "Platform/Wayland/QtWayland.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

using namespace Qt::StringLiterals;

namespace {
QPlatformNativeInterface *nativeInterface()
{
    return QGuiApplication::platformName().startsWith("wayland"_L1)
               ? QGuiApplication::platformNativeInterface()
               : nullptr;
}
} // namespace

wl_display *qtWaylandDisplay()
{
    auto *native = nativeInterface();
    return native ? static_cast<wl_display *>(native->nativeResourceForIntegration("wl_display"))
                  : nullptr;
}

wl_output *qtWaylandOutput(QScreen &screen)
{
    auto *native = nativeInterface();
    return native ? static_cast<wl_output *>(native->nativeResourceForScreen("output", &screen))
                  : nullptr;
}

wl_surface *qtWaylandSurface(QWindow &window)
{
    auto *native = nativeInterface();
    return native ? static_cast<wl_surface *>(native->nativeResourceForWindow("surface", &window))
                  : nullptr;
}

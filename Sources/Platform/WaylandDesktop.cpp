// SPDX-License-Identifier: MIT
#include "Platform/WaylandDesktop.h"

#include "Platform/Platform.h"
#include "Platform/Sway/SwayEventMonitor.h"
#include "Platform/Sway/SwayKeyTap.h"
#include "Platform/Sway/SwayPopupPlacement.h"
#include "Platform/Wayland/DataControlPasteboard.h"
#include "Platform/Wayland/LayerShellOverlaySurface.h"
#include "Platform/Wayland/ToplevelPopupPlacement.h"
#include "Platform/Wayland/UnboundKeyTap.h"
#include "Platform/Wayland/WaylandEventMonitor.h"
#include "Platform/Wayland/WlrScreencopy.h"

#include <QCoreApplication>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

void prepareWaylandDesktop()
{
    LayerShell::leaveWindowsWithoutRole();
}

bool isWaylandDesktop()
{
    return QGuiApplication::platformName().startsWith("wayland"_L1);
}

QStringList addWaylandServices(Platform &platform)
{
    QStringList missing;
    auto overlay = std::make_unique<LayerShellOverlaySurface>();
    if (!overlay->isUsable()) {
        missing << QCoreApplication::translate(
            "DesktopPlatform",
            "The desktop lets no program cover the screen (zwlr_layer_shell_v1).");
    }
    auto recording = std::make_unique<WlrScreencopy>(*platform.screens);
    if (!recording->preflightAccess()) {
        missing << QCoreApplication::translate(
            "DesktopPlatform",
            "The desktop lets no program see the screen (zwlr_screencopy_manager_v1).");
    }
    auto pasteboard = std::make_unique<DataControlPasteboard>();
    if (!pasteboard->isUsable()) {
        missing << QCoreApplication::translate(
            "DesktopPlatform", "The desktop lets no program without a window set the clipboard "
                               "(ext_data_control_manager_v1, zwlr_data_control_manager_v1).");
    }
    platform.overlaySurface = std::move(overlay);
    platform.screenRecording = std::move(recording);
    platform.pasteboard = std::move(pasteboard);
    if (SwayKeyTap::isUsable()) {
        platform.keyTap = std::make_unique<SwayKeyTap>();
        platform.eventMonitor = std::make_unique<SwayEventMonitor>();
        platform.popupPlacement = std::make_unique<SwayPopupPlacement>(*platform.screens);
    } else {
        platform.keyTap = std::make_unique<UnboundKeyTap>(*platform.systemLog);
        platform.eventMonitor = std::make_unique<WaylandEventMonitor>();
        platform.popupPlacement = std::make_unique<ToplevelPopupPlacement>(*platform.screens);
    }
    return missing;
}

// SPDX-License-Identifier: MIT
#include "Platform/WaylandDesktop.h"

#include "Platform/KDE/GlobalAccelKeyTap.h"
#include "Platform/KDE/KWinScreenShot.h"
#include "Platform/Platform.h"
#include "Platform/Sway/SwayEventMonitor.h"
#include "Platform/Sway/SwayKeyTap.h"
#include "Platform/Sway/SwayPopupPlacement.h"
#include "Platform/Wayland/DataControlPasteboard.h"
#include "Platform/Wayland/LayerShellOverlaySurface.h"
#include "Platform/Wayland/PlasmaPopupPlacement.h"
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

namespace {
/// Null where the desktop lets no program see the screen.
std::unique_ptr<ScreenRecording> makeScreenRecording(const Screens &screens)
{
    auto screencopy = std::make_unique<WlrScreencopy>(screens);
    if (screencopy->preflightAccess()) {
        return screencopy;
    }
    if (KWinScreenShot::isOffered()) {
        return std::make_unique<KWinScreenShot>(screens);
    }
    return nullptr;
}

std::unique_ptr<KeyTap> makeKeyTap(SystemLog &log)
{
    if (SwayKeyTap::isUsable()) {
        return std::make_unique<SwayKeyTap>();
    }
    if (GlobalAccelKeyTap::isUsable()) {
        return std::make_unique<GlobalAccelKeyTap>();
    }
    return std::make_unique<UnboundKeyTap>(log);
}

std::unique_ptr<PopupPlacement> makePopupPlacement(const Screens &screens)
{
    if (SwayKeyTap::isUsable()) {
        return std::make_unique<SwayPopupPlacement>(screens);
    }
    auto plasma = std::make_unique<PlasmaPopupPlacement>(screens);
    if (plasma->isUsable()) {
        return plasma;
    }
    return std::make_unique<ToplevelPopupPlacement>(screens);
}

std::unique_ptr<EventMonitor> makeEventMonitor()
{
    if (SwayKeyTap::isUsable()) {
        return std::make_unique<SwayEventMonitor>();
    }
    return std::make_unique<WaylandEventMonitor>();
}
} // namespace

QStringList addWaylandServices(Platform &platform)
{
    QStringList missing;
    auto overlay = std::make_unique<LayerShellOverlaySurface>();
    if (!overlay->isUsable()) {
        missing << QCoreApplication::translate(
            "DesktopPlatform",
            "The desktop lets no program cover the screen (zwlr_layer_shell_v1).");
    }
    platform.screenRecording = makeScreenRecording(*platform.screens);
    if (!platform.screenRecording) {
        missing << QCoreApplication::translate(
            "DesktopPlatform", "The desktop lets no program see the screen "
                               "(zwlr_screencopy_manager_v1, org.kde.KWin.ScreenShot2).");
    }
    auto pasteboard = std::make_unique<DataControlPasteboard>();
    if (!pasteboard->isUsable()) {
        missing << QCoreApplication::translate(
            "DesktopPlatform", "The desktop lets no program without a window set the clipboard "
                               "(ext_data_control_manager_v1, zwlr_data_control_manager_v1).");
    }
    platform.overlaySurface = std::move(overlay);
    platform.pasteboard = std::move(pasteboard);
    platform.keyTap = makeKeyTap(*platform.systemLog);
    platform.eventMonitor = makeEventMonitor();
    platform.popupPlacement = makePopupPlacement(*platform.screens);
    return missing;
}

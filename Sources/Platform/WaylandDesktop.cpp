// SPDX-License-Identifier: MIT
#include "Platform/WaylandDesktop.h"

#include "Platform/FallbackRecording.h"
#include "Platform/GNOME/CustomKey.h"
#include "Platform/GNOME/CustomKeyTap.h"
#include "Platform/GNOME/ModalDialogs.h"
#include "Platform/KDE/GlobalAccelKey.h"
#include "Platform/KDE/GlobalAccelKeyTap.h"
#include "Platform/KDE/KWinScreenShot.h"
#include "Platform/KDE/KWinWindowFrame.h"
#include "Platform/KDE/PlasmaStruts.h"
#include "Platform/Platform.h"
#include "Platform/Portal/AwaitedPictures.h"
#include "Platform/Portal/GlobalShortcutsKeyTap.h"
#include "Platform/Portal/PortalScreenshot.h"
#include "Platform/Qt/QtPasteboard.h"
#include "Platform/Sway/SwayEventMonitor.h"
#include "Platform/Sway/SwayKeyBinding.h"
#include "Platform/Sway/SwayKeyTap.h"
#include "Platform/Sway/SwayPopupPlacement.h"
#include "Platform/Wayland/DataControlPasteboard.h"
#include "Platform/Wayland/FocusedPasteboard.h"
#include "Platform/Wayland/FullScreenOverlaySurface.h"
#include "Platform/Wayland/ImageCopyCapture.h"
#include "Platform/Wayland/LayerShellOverlaySurface.h"
#include "Platform/Wayland/MutterPopupPlacement.h"
#include "Platform/Wayland/PlasmaPopupPlacement.h"
#include "Platform/Wayland/QtWayland.h"
#include "Platform/Wayland/ToplevelPopupPlacement.h"
#include "Platform/Wayland/UnboundKeyTap.h"
#include "Platform/Wayland/WaylandEventMonitor.h"
#include "Platform/Wayland/WlrScreencopy.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLoggingCategory>

#include <utility>

using namespace Qt::StringLiterals;

void prepareWaylandDesktop()
{
    leaveQtWindowsWithoutRole();
    // No window of ours draws by OpenGL. Where Qt thinks that one might, or that it might have to
    // draw a title bar itself, the first window loads the graphics driver: 50 megabytes.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    if (WaylandConnection().version("zxdg_decoration_manager_v1") > 0) {
        qputenv("QT_WAYLAND_DISABLE_WINDOWDECORATION", "1");
    }
    // Qt 6.8 warns of it when GNOME tells a window that went with the keyboard that it has lost it,
    // as each overlay does.
    QLoggingCategory::setFilterRules(u"qt.qpa.wayland.textinput.warning=false"_s);
}

bool isWaylandDesktop()
{
    return QGuiApplication::platformName().startsWith("wayland"_L1);
}

namespace {
/// Not for X11 programs, whose full-screen windows were gone at once on the desktop that has these
/// protocols, sway. Null where none is offered.
std::unique_ptr<ScreenRecording> makeProtocolRecording(const Screens &screens)
{
    // The older protocol first, where both are: it copies no more than the rectangle.
    auto screencopy = std::make_unique<WlrScreencopy>(screens);
    if (screencopy->preflightAccess()) {
        return screencopy;
    }
    auto imageCopy = std::make_unique<ImageCopyCapture>(screens);
    if (imageCopy->preflightAccess()) {
        return imageCopy;
    }
    return nullptr;
}

/// Null where no portal takes pictures.
std::unique_ptr<ScreenRecording> makePortalRecording(const Screens &screens, SystemLog &log,
                                                     const std::shared_ptr<PanelMenu> &panelMenu)
{
    if (!PortalScreenshot::isOffered()) {
        return nullptr;
    }
    return std::make_unique<PortalScreenshot>(screens, log, panelMenu, PortalScreenshot::Limits());
}

/// Null where the desktop lets no program see the screen.
std::unique_ptr<ScreenRecording> makeScreenRecording(const Screens &screens, SystemLog &log,
                                                     const std::shared_ptr<PanelMenu> &panelMenu)
{
    if (auto recording = isWaylandDesktop() ? makeProtocolRecording(screens) : nullptr) {
        return recording;
    }
    if (KWinScreenShot::isOffered()) {
        return std::make_unique<FallbackRecording>(
            std::make_unique<KWinScreenShot>(screens),
            [&screens, &log, panelMenu] { return makePortalRecording(screens, log, panelMenu); });
    }
    return makePortalRecording(screens, log, panelMenu);
}

/// What covers the screens, and with what is seen of them.
void addCapture(Platform &platform, std::unique_ptr<ScreenRecording> recording)
{
    auto layers = std::make_unique<LayerShellOverlaySurface>();
    if (layers->isUsable()) {
        platform.overlaySurface = std::move(layers);
        platform.screenRecording = std::move(recording);
        return;
    }
    auto frozen = std::make_unique<FrozenScreenRecording>(std::move(recording), *platform.screens);
    platform.overlaySurface = std::make_unique<FullScreenOverlaySurface>(*frozen);
    platform.screenRecording = std::move(frozen);
}

std::unique_ptr<Pasteboard> makePasteboard()
{
    auto dataControl = std::make_unique<DataControlPasteboard>();
    if (dataControl->isUsable()) {
        return dataControl;
    }
    if (isWaylandDesktop()) {
        return std::make_unique<FocusedPasteboard>();
    }
    return std::make_unique<QtPasteboard>();
}

std::unique_ptr<KeyTap> makeKeyTap(SystemLog &log)
{
    if (SwayKeyTap::isUsable()) {
        return std::make_unique<SwayKeyTap>();
    }
    if (GlobalAccelKeyTap::isUsable()) {
        return std::make_unique<GlobalAccelKeyTap>();
    }
    if (GlobalShortcutsKeyTap::isOffered()) {
        return std::make_unique<GlobalShortcutsKeyTap>(log);
    }
    if (CustomKeyTap::isUsable()) {
        return std::make_unique<CustomKeyTap>();
    }
    return std::make_unique<UnboundKeyTap>(log);
}

std::unique_ptr<PopupPlacement> makePopupPlacement(const Screens &screens)
{
    if (SwayKeyTap::isUsable()) {
        return std::make_unique<SwayPopupPlacement>(screens);
    }
    auto plasma = std::make_unique<PlasmaPopupPlacement>(
        screens, &availablePlasmaScreenRect,
        [windowFrame = KWinWindowFrame()](const QString &title) mutable {
            return windowFrame.ofTitle(title);
        });
    if (plasma->isUsable()) {
        return plasma;
    }
    if (MutterPopupPlacement::isUsable()) {
        return std::make_unique<MutterPopupPlacement>(screens, &areModalDialogsAttached);
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

QStringList addWaylandServices(Platform &platform, const std::shared_ptr<PanelMenu> &panelMenu)
{
    QStringList missing;
    auto recording = makeScreenRecording(*platform.screens, *platform.systemLog, panelMenu);
    if (recording) {
        addCapture(platform, std::move(recording));
    } else {
        missing << QCoreApplication::translate(
            "DesktopPlatform", "The desktop lets no program see the screen "
                               "(zwlr_screencopy_manager_v1, "
                               "ext_image_copy_capture_manager_v1, "
                               "org.kde.KWin.ScreenShot2, org.freedesktop.portal.Screenshot).");
    }
    platform.pasteboard = makePasteboard();
    platform.keyTap = makeKeyTap(*platform.systemLog);
    platform.eventMonitor = makeEventMonitor();
    platform.popupPlacement = makePopupPlacement(*platform.screens);
    return missing;
}

void addLeftovers(Platform &platform)
{
    // By what is there now: a session of another kind, or an older desktop, may have left it.
    platform.leftovers.add([] {
        if (CustomKeyTap::isUsable()) {
            CustomKey::removeLeftover();
        }
    });
    platform.leftovers.add([] {
        if (GlobalAccelKeyTap::isUsable()) {
            GlobalAccelKey::removeLeftover();
        }
    });
    platform.leftovers.add([] { SwayKeyBinding::removeLeftover(); });
    platform.leftovers.add([log = platform.systemLog.get()] { removeLeftPictures(*log); });
}

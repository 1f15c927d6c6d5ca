// SPDX-License-Identifier: MIT
#include "Platform/DesktopPlatform.h"

#include "Platform/Flatpak/FlatpakRestart.h"
#include "Platform/Flatpak/FlatpakUpdateSource.h"
#include "Platform/Freedesktop/BusAnswer.h"
#include "Platform/Freedesktop/CanberraSounds.h"
#include "Platform/Freedesktop/FreedesktopApplicationService.h"
#include "Platform/Freedesktop/FreedesktopNotifications.h"
#include "Platform/Freedesktop/SessionLaunch.h"
#include "Platform/Freedesktop/SoundTheme.h"
#include "Platform/Freedesktop/StatusNotifierPanel.h"
#include "Platform/Freedesktop/UninstalledUpdateSource.h"
#include "Platform/Freedesktop/XdgAutostart.h"
#include "Platform/PackageKit/PackageKitUpdateSource.h"
#include "Platform/Portal/PortalLoginItem.h"
#include "Platform/Qt/ExecRestart.h"
#include "Platform/Qt/PaintingThread.h"
#include "Platform/Qt/PanelStatusBar.h"
#include "Platform/Qt/QtMainQueue.h"
#include "Platform/Qt/QtPasteboard.h"
#include "Platform/Qt/QtScreens.h"
#include "Platform/Qt/SessionRestore.h"
#include "Platform/Qt/StandardErrorLog.h"
#include "Platform/Qt/WatchedProgramFile.h"
#include "Platform/Wayland/WaylandOutputs.h"
#include "Platform/Wayland/WaylandSocket.h"
#include "Platform/WaylandDesktop.h"
#include "Platform/X11/X11Platform.h"
#include "Platform/X11/XEmbedTray.h"
#include "TextRecognition/TesseractTextRecognizer.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// What the application object tells, where the caller told nothing.
DesktopPlatformOptions completed(DesktopPlatformOptions options)
{
    const auto complete = [](QString &option, const QString &value) {
        if (option.isEmpty()) {
            option = value;
        }
    };
    complete(options.displayName, QCoreApplication::applicationName());
    complete(options.executablePath, QCoreApplication::applicationFilePath());
    complete(options.iconName, options.applicationId);
    complete(options.iconThemeFolder,
             QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../share/icons"_s));
    return options;
}

/// Screens, their pictures and everything else that depends on the window system.
void addWindowSystem(Platform &platform, const QString &displayName,
                     const std::shared_ptr<PanelMenu> &panelMenu)
{
    // What the Wayland desktop offers by D-Bus it offers to X11 programs too.
    const bool isXwayland = isXwaylandDesktop();
    if (isX11Desktop() && !isXwayland) {
        platform.screens = std::make_unique<QtScreens>(x11PixelGeometry());
        addX11Services(platform);
        platform.pasteboard = std::make_unique<QtPasteboard>();
        return;
    }
    if (isWaylandDesktop() || isXwayland) {
        if (isXwayland) {
            nameWaylandDisplayOf(x11ListeningProcess());
        }
        platform.screens =
            std::make_unique<QtScreens>(isXwayland ? x11PixelGeometry() : waylandPixelGeometry());
        const QStringList missing = addWaylandServices(platform, panelMenu);
        if (isXwayland) {
            platform.popupPlacement = makeX11PopupPlacement(*platform.screens);
        }
        if (missing.isEmpty()) {
            return;
        }
        const QString why =
            isXwayland
                ? QCoreApplication::translate(
                      "DesktopPlatform",
                      "%1 was started as an X11 program on a Wayland desktop, which shows those "
                      "nothing of the screen. %2 Start it with WAYLAND_DISPLAY set and without "
                      "QT_QPA_PLATFORM.")
                : QCoreApplication::translate(
                      "DesktopPlatform",
                      "%1 cannot work on this Wayland desktop. %2 Log in to an X11 session (often "
                      "called “Xorg” on the login screen), or to GNOME, Plasma or sway.");
        throw UnsupportedDesktop(why.arg(displayName, missing.join(u' ')));
    }
    throw UnsupportedDesktop(
        QCoreApplication::translate(
            "DesktopPlatform",
            "%1 cannot see this screen: it works on X11 desktops, and this session is shown by "
            "“%2”. Log in to an X11 session (often called “Xorg” on the login screen).")
            .arg(displayName, QGuiApplication::platformName()));
}

PanelStatusBar::Panels makePanels(const DesktopPlatformOptions &options,
                                  const std::shared_ptr<PanelMenu> &panelMenu)
{
    const StatusItemArtwork artwork(options.iconThemeFolder, options.applicationId);
    PanelStatusBar::Panels panels;
    panels.push_back(std::make_unique<StatusNotifierPanel>(
        StatusNotifierPanel::Identity{options.applicationId, options.displayName}, artwork,
        panelMenu));
    if (isX11Desktop()) {
        panels.push_back(std::make_unique<XEmbedTray>(options.displayName, artwork));
    }
    return panels;
}

std::unique_ptr<LoginItem> makeLoginItem(const DesktopPlatformOptions &options, SystemLog &log)
{
    if (isInFlatpak()) {
        return std::make_unique<PortalLoginItem>(log, options.comment,
                                                 commandAtLogin(options.executablePath));
    }
    return std::make_unique<XdgAutostart>(
        XdgAutostart::Entry{options.applicationId, options.displayName, options.comment,
                            options.iconName, options.executablePath});
}

/// The place where newer versions of this copy come from.
std::unique_ptr<UpdateSource> makeUpdateSource(const DesktopPlatformOptions &options)
{
    if (isInFlatpak()) {
        return std::make_unique<FlatpakUpdateSource>(options.applicationId);
    }
    if (!options.packageName.isEmpty()) {
        return std::make_unique<PackageKitUpdateSource>(options.packageName);
    }
    return std::make_unique<UninstalledUpdateSource>();
}

std::unique_ptr<ProgramRestart> makeProgramRestart(const DesktopPlatformOptions &options)
{
    if (isInFlatpak()) {
        return std::make_unique<FlatpakRestart>(options.executablePath);
    }
    return std::make_unique<ExecRestart>(options.executablePath);
}

} // namespace

void prepareDesktopPlatform()
{
    if (!leaveSilentSessionBus()) {
        StandardErrorLog().log(u"The session bus does not answer; going on without it"_s);
    }
    prepareWaylandDesktop();
}

std::unique_ptr<Platform> makeDesktopPlatform(const DesktopPlatformOptions &given)
{
    const DesktopPlatformOptions options = completed(given);
    stayOutOfRestoredSessions();
    keepPaintingThread();
    auto platform = std::make_unique<Platform>();
    platform->mainQueue = std::make_unique<QtMainQueue>();
    platform->systemLog = std::make_unique<StandardErrorLog>();
    platform->userDefaults = std::make_unique<UserDefaults>();
    const auto panelMenu = std::make_shared<PanelMenu>();
    addWindowSystem(*platform, options.displayName, panelMenu);
    addLeftovers(*platform);
    platform->statusBar = std::make_unique<PanelStatusBar>(
        [options, panelMenu] { return makePanels(options, panelMenu); });
    platform->notifications =
        std::make_unique<FreedesktopNotifications>(FreedesktopNotifications::Identity{
            options.displayName, options.iconName, options.applicationId});
    platform->textRecognizer = std::make_unique<TesseractTextRecognizer>();
    platform->systemSounds = std::make_unique<CanberraSounds>(
        SoundWorker::Identity{options.applicationId.toUtf8(), options.displayName.toUtf8(),
                              options.iconName.toUtf8()},
        SoundTheme::userTheme);
    platform->loginItem = makeLoginItem(options, *platform->systemLog);
    platform->updateSource = makeUpdateSource(options);
    platform->applicationService =
        std::make_unique<FreedesktopApplicationService>(options.applicationId);
    platform->programFile = std::make_unique<WatchedProgramFile>(options.executablePath);
    platform->programRestart = makeProgramRestart(options);
    return platform;
}

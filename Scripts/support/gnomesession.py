# SPDX-License-Identifier: MIT
"""The GNOME Shell of a private desktop: headless, with its portals and their real questions."""

import re
import shutil
import subprocess
from pathlib import Path

# Written where GSettings looks for it before anything runs.
SETTINGS = """[org/gnome/shell]
disable-user-extensions=false
enabled-extensions={extensions}
welcome-dialog-last-shown-version='999'
[org/gnome/desktop/interface]
enable-animations=false
enable-hot-corners=false
cursor-size=24
[org/gnome/desktop/background]
picture-options='none'
picture-uri=''
primary-color='#{wallpaper:06x}'
color-shading-type='solid'
[org/gnome/desktop/notifications]
show-banners=false
[org/gnome/desktop/screensaver]
lock-enabled=false
[org/gnome/desktop/session]
idle-delay=uint32 0
"""

# The shell asks for the system's services; nobody answers, and that is enough.
SYSTEM_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path={socket}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
"""

HAS_LEFT_OVERVIEW = """(() => {
    const main = Main;
    if (main.layoutManager._startingUp)
        return false;
    main.overview.hide();
    return !main.overview.visible;
})()"""

TRAY = "ubuntu-appindicators@ubuntu.com"
TRAY_FOLDER = f"/usr/share/gnome-shell/extensions/{TRAY}"
PORTALS = Path("/usr/share/xdg-desktop-portal/portals")
MEDIA_KEYS = "/usr/libexec/gsd-media-keys"
FILES = (MEDIA_KEYS, str(PORTALS / "gnome.portal"),
         "/usr/share/dbus-1/services/org.freedesktop.portal.Desktop.service")


class GnomeSession:
    """Started by the session of Scripts/in-desktop, which ends what it starts."""

    def __init__(self, session, wallpaper, has_xwayland):
        self._session, self._wallpaper = session, wallpaper
        self._has_xwayland = has_xwayland

    def prepare(self):
        """What the session bus and what it starts have to find."""
        session = self._session
        environment = session.environment
        # A bus that services share has to share its settings; the memory of each is its own.
        environment["GSETTINGS_BACKEND"] = "keyfile"
        settings = Path(environment["XDG_CONFIG_HOME"]) / "glib-2.0/settings/keyfile"
        settings.parent.mkdir(parents=True)
        extensions = f"['{TRAY}']" if session.panel == "appindicator" else "@as []"
        settings.write_text(SETTINGS.format(extensions=extensions, wallpaper=self._wallpaper))
        # Portals of other desktops that are installed take long to fail here.
        portals = session.folder / "portals"
        portals.mkdir()
        for name in ("gnome", "gnome-shell", "gtk"):
            if (PORTALS / f"{name}.portal").exists():
                shutil.copy(PORTALS / f"{name}.portal", portals)
        environment["XDG_DESKTOP_PORTAL_DIR"] = str(portals)
        # The picture of a portal goes there.
        (Path(environment["HOME"]) / "Pictures").mkdir()
        environment["WAYLAND_DISPLAY"] = "wayland-gnome"
        socket = session.folder / "system-bus"
        configuration = session.folder / "system.conf"
        configuration.write_text(SYSTEM_BUS.format(socket=socket))
        environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={socket}"
        bus = session.spawn("system-bus", "dbus-daemon", f"--config-file={configuration}",
                            "--nofork", "--nopidfile")
        session.wait("the system bus", socket.exists, bus)

    def start(self):
        session = self._session
        screens = [f"--virtual-monitor={width}x{height}" for width, height in session.screens]
        runtime = Path(session.environment["XDG_RUNTIME_DIR"])
        pipewire = session.spawn("pipewire", "pipewire")
        session.wait("PipeWire", (runtime / "pipewire-0").exists, pipewire)
        session.spawn("wireplumber", "wireplumber")
        # Unsafe mode lets tests see and ask; a program that it is to be tried on asks the portal.
        x11 = () if self._has_xwayland else ("--no-x11",)
        process = session.spawn("gnome-shell", "gnome-shell", "--headless", *x11,
                                "--wayland-display=wayland-gnome", "--unsafe-mode", *screens)
        session.server = process
        session.wait("GNOME Shell", (runtime / "wayland-gnome").exists, process)
        session.wait("GNOME Shell on the session bus",
                     lambda: session.has_bus_name("org.gnome.Shell"), process)
        if session.scale != 1:
            session.wait("the scale", self._has_scale, process)
        session.wait("the end of the overview", self._leaves_overview, process)
        if self._has_xwayland:
            session.wait("Xwayland", self._tells_display, process)
        keys = session.spawn("media-keys", MEDIA_KEYS)
        session.wait("the settings daemon's keys",
                     lambda: session.has_bus_name("org.gnome.SettingsDaemon.MediaKeys"), keys)

    def _tells_display(self):
        """Where programs find Xwayland, which starts for the first."""
        for name in ("DISPLAY", "XAUTHORITY"):
            answer = self._call("org.gnome.Shell", "Eval", f"imports.gi.GLib.getenv('{name}')")
            told = re.fullmatch(r"""\(true, '"(.+)"'\)""", answer.strip())
            if not told:
                return False
            self._session.environment[name] = told.group(1)
        return True

    def _has_scale(self):
        """Whether the first screen, the only one then, is as dense; if not, makes it so."""
        scale = f"(0, 0, {float(self._session.scale)},"
        state = self._call("org.gnome.Mutter.DisplayConfig", "GetCurrentState")
        if scale in state:
            return True
        width, height = self._session.screens[0]
        serial = re.search(r"uint32 (\d+)", state)
        mode = re.search(rf"'({width}x{height}@[\d.]+)'", state)
        if serial and mode:
            self._call("org.gnome.Mutter.DisplayConfig", "ApplyMonitorsConfig", serial.group(1),
                       "1", f"[{scale} uint32 0, true, [('Meta-0', '{mode.group(1)}',"
                       " @a{sv} {})])]", "@a{sv} {}")
        return False

    def _call(self, name, method, *arguments):
        """What the object of that name answers, as gdbus writes it; nothing when it does not, as a
        shell that is still starting."""
        return subprocess.run(
            ["gdbus", "call", "--session", "-d", name, "-o", "/" + name.replace(".", "/"), "-m",
             f"{name}.{method}", *arguments],
            capture_output=True, text=True, env=self._session.environment, check=False).stdout

    def _leaves_overview(self):
        """A fresh session shows it once it has started; windows are to be seen as they are."""
        answer = self._call("org.gnome.Shell", "Eval", HAS_LEFT_OVERVIEW)
        return answer.strip() == "(true, 'true')"

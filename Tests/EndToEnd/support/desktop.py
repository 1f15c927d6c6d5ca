# SPDX-License-Identifier: MIT
"""The private desktop: its screens, what they show, its pointer, keyboard, clipboard and windows.

All places are pixels of the whole desktop, origin top-left, y down.
"""

from .geometry import (COMPOSITED, HAS_MANAGER, NAME, PANEL, PANEL_IS_ABOVE, SCALE, SCREENS,
                       WALLPAPER, Box, beside_panel, difference, on_screens, points, save, tool)

if NAME == "sway":
    from .sway import (Clipboard, Device, activate, active_window, find_tray_icon,
                       frame_box, has_tray_icon, key, listed_windows, page_box, page_unit,
                       place_page, popups, screenshot, title_of, window_box, windows_titled)
elif NAME in ("kwin_wayland", "kwin_xwayland"):
    from .kwin import (Clipboard, Device, activate, active_window, find_tray_icon,
                       frame_box, has_tray_icon, key, listed_windows, page_box, page_unit,
                       place_page, popups, screenshot, title_of, window_box, windows_titled)
elif NAME in ("gnome", "gnome_xwayland"):
    from .gnome import (Clipboard, Device, activate, active_window, find_tray_icon,
                        frame_box, has_tray_icon, key, listed_windows, page_box, page_unit,
                        place_page, popups, screenshot, title_of, window_box, windows_titled)
else:
    from .x11 import (Clipboard, Device, activate, active_window, find_tray_icon,
                      frame_box, has_tray_icon, key, listed_windows, page_box, page_unit,
                      place_page, popups, screenshot, title_of, window_box, windows_titled)

__all__ = ["COMPOSITED", "HAS_MANAGER", "NAME", "PANEL", "SCALE", "SCREENS",
           "WALLPAPER", "Box", "Clipboard", "Pointer", "activate", "active_window", "beside_panel",
           "difference", "find_tray_icon", "frame_box", "has_tray_icon", "key", "listed_windows",
           "on_screens", "page_box", "page_unit", "place_page", "points", "popups", "save",
           "screenshot", "title_of", "tool", "window_box", "windows_titled"]


class Pointer(Device):
    """What a hand does with the mouse."""

    @classmethod
    def click(cls, x, y, button=1):
        cls.move(x, y)
        cls.click_here(button)

    @classmethod
    def rest(cls):
        """Goes where nothing reacts to it."""
        cls.move(SCREENS[0].right - 5, 60 if PANEL_IS_ABOVE else 5)

    @classmethod
    def drag(cls, start, end, release=True):
        """From one corner to the other in a few steps, as a hand does."""
        cls.move(*start)
        cls.press()
        for step in (0.3, 0.6, 0.9, 1):
            cls.move(start[0] + (end[0] - start[0]) * step, start[1] + (end[1] - start[1]) * step)
        if release:
            cls.release()

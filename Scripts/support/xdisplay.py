# SPDX-License-Identifier: MIT
"""What the scripts ask of an X server directly: who manages it, and whether it is composited."""

import ctypes
import ctypes.util

_TRUE_COLOR = 4
_Z_PIXMAP = 2
_ALL_PLANES = ctypes.c_ulong(-1).value
_CW_BACK_PIXEL, _CW_BORDER_PIXEL, _CW_OVERRIDE_REDIRECT, _CW_COLORMAP = 1 << 1, 1 << 3, 1 << 9, 1 << 13
_INPUT_OUTPUT = 1
_XA_ATOM = 4


class _VisualInfo(ctypes.Structure):
    _fields_ = [("visual", ctypes.c_void_p), ("visualid", ctypes.c_ulong),
                ("screen", ctypes.c_int), ("depth", ctypes.c_int), ("klass", ctypes.c_int),
                ("red_mask", ctypes.c_ulong), ("green_mask", ctypes.c_ulong),
                ("blue_mask", ctypes.c_ulong), ("colormap_size", ctypes.c_int),
                ("bits_per_rgb", ctypes.c_int)]


class _WindowAttributes(ctypes.Structure):
    _fields_ = [("background_pixmap", ctypes.c_ulong), ("background_pixel", ctypes.c_ulong),
                ("border_pixmap", ctypes.c_ulong), ("border_pixel", ctypes.c_ulong),
                ("bit_gravity", ctypes.c_int), ("win_gravity", ctypes.c_int),
                ("backing_store", ctypes.c_int), ("backing_planes", ctypes.c_ulong),
                ("backing_pixel", ctypes.c_ulong), ("save_under", ctypes.c_int),
                ("event_mask", ctypes.c_long), ("do_not_propagate_mask", ctypes.c_long),
                ("override_redirect", ctypes.c_int), ("colormap", ctypes.c_ulong),
                ("cursor", ctypes.c_ulong)]


def _library():
    xlib = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
    pointer, window, atom = ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong
    number, text = ctypes.c_int, ctypes.c_char_p
    for name, result, arguments in [
            ("XOpenDisplay", pointer, [text]),
            ("XCloseDisplay", number, [pointer]),
            ("XDefaultRootWindow", window, [pointer]),
            ("XDefaultScreen", number, [pointer]),
            ("XInternAtom", atom, [pointer, text, number]),
            ("XGetSelectionOwner", window, [pointer, atom]),
            ("XMatchVisualInfo", number, [pointer, number, number, number,
                                          ctypes.POINTER(_VisualInfo)]),
            ("XCreateColormap", ctypes.c_ulong, [pointer, window, pointer, number]),
            ("XCreateWindow", window, [pointer, window, number, number, ctypes.c_uint,
                                       ctypes.c_uint, ctypes.c_uint, number, ctypes.c_uint,
                                       pointer, ctypes.c_ulong,
                                       ctypes.POINTER(_WindowAttributes)]),
            ("XCreateSimpleWindow", window, [pointer, window, number, number, ctypes.c_uint,
                                             ctypes.c_uint, ctypes.c_uint, ctypes.c_ulong,
                                             ctypes.c_ulong]),
            ("XChangeProperty", number, [pointer, window, atom, atom, number, number,
                                         ctypes.POINTER(atom), number]),
            ("XMapRaised", number, [pointer, window]),
            ("XDestroyWindow", number, [pointer, window]),
            ("XSync", number, [pointer, number]),
            ("XGetImage", pointer, [pointer, window, number, number, ctypes.c_uint,
                                    ctypes.c_uint, ctypes.c_ulong, number]),
            ("XGetPixel", ctypes.c_ulong, [pointer, number, number]),
            ("XDestroyImage", number, [pointer]),
            ("XFree", number, [pointer]),
            ("XGetWindowProperty", number, [pointer, window, atom, ctypes.c_long, ctypes.c_long,
                                            number, atom, ctypes.POINTER(atom),
                                            ctypes.POINTER(number),
                                            ctypes.POINTER(ctypes.c_ulong),
                                            ctypes.POINTER(ctypes.c_ulong),
                                            ctypes.POINTER(pointer)])]:
        function = getattr(xlib, name)
        function.restype, function.argtypes = result, arguments
    return xlib


class XDisplay:
    """A connection of our own. `name` is a display such as ":3"; OSError if nobody answers."""

    def __init__(self, name):
        self._x = _library()
        self._display = self._x.XOpenDisplay(name.encode())
        if not self._display:
            raise OSError(f"no X server at {name}")
        self._root = self._x.XDefaultRootWindow(self._display)
        self._screen = self._x.XDefaultScreen(self._display)

    def close(self):
        self._x.XCloseDisplay(self._display)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def _atom(self, name):
        return self._x.XInternAtom(self._display, name.encode(), False)

    def selection_owner(self, name):
        """The window that owns the selection, or 0."""
        return self._x.XGetSelectionOwner(self._display, self._atom(name))

    def has_root_property(self, name):
        kind, form = ctypes.c_ulong(), ctypes.c_int()
        count, rest, value = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_void_p()
        self._x.XGetWindowProperty(self._display, self._root, self._atom(name), 0, 1, False, 0,
                                   ctypes.byref(kind), ctypes.byref(form), ctypes.byref(count),
                                   ctypes.byref(rest), ctypes.byref(value))
        if value:
            self._x.XFree(value)
        return kind.value != 0

    def pixel(self, x, y):
        """The colour that is seen at a place of the screen, as 0xRRGGBB."""
        image = self._x.XGetImage(self._display, self._root, x, y, 1, 1, _ALL_PLANES, _Z_PIXMAP)
        try:
            return self._x.XGetPixel(image, 0, 0) & 0xFFFFFF
        finally:
            self._x.XDestroyImage(image)

    def show_desktop_window(self, width, height, colour):
        """A window over the whole screen, below all others, for as long as we are connected."""
        window = self._x.XCreateSimpleWindow(self._display, self._root, 0, 0, width, height, 0, 0,
                                             colour)
        kind = ctypes.c_ulong(self._atom("_NET_WM_WINDOW_TYPE_DESKTOP"))
        self._x.XChangeProperty(self._display, window, self._atom("_NET_WM_WINDOW_TYPE"),
                                _XA_ATOM, 32, 0, ctypes.byref(kind), 1)
        self._x.XMapRaised(self._display, window)
        self._x.XSync(self._display, False)

    def glass(self):
        """Maps a small, wholly transparent window at (8, 8)."""
        return Glass(self)


class Glass:
    """A transparent window: one sees the screen through it where a compositing manager is at
    work, and black where there is none."""

    X, Y, SIZE = 8, 8, 16

    def __init__(self, display):
        self._owner = display
        x, connection, root = display._x, display._display, display._root
        info = _VisualInfo()
        if not x.XMatchVisualInfo(connection, display._screen, 32, _TRUE_COLOR,
                                  ctypes.byref(info)):
            raise OSError("the X server has no visual with an alpha channel")
        attributes = _WindowAttributes(background_pixel=0, border_pixel=0, override_redirect=1)
        attributes.colormap = x.XCreateColormap(connection, root, info.visual, 0)
        self._window = x.XCreateWindow(
            connection, root, self.X, self.Y, self.SIZE, self.SIZE, 0, 32, _INPUT_OUTPUT,
            info.visual,
            _CW_BACK_PIXEL | _CW_BORDER_PIXEL | _CW_OVERRIDE_REDIRECT | _CW_COLORMAP,
            ctypes.byref(attributes))
        x.XMapRaised(connection, self._window)
        x.XSync(connection, False)

    def close(self):
        self._owner._x.XDestroyWindow(self._owner._display, self._window)
        self._owner._x.XSync(self._owner._display, False)

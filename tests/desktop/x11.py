"""The few X requests that no command line tool answers, through libX11."""
import ctypes


class _Image(ctypes.Structure):
    """The head of Xlib's XImage, as far as it is read here."""
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.POINTER(ctypes.c_char)),
                ("byte_order", ctypes.c_int), ("bitmap_unit", ctypes.c_int),
                ("bitmap_bit_order", ctypes.c_int), ("bitmap_pad", ctypes.c_int),
                ("depth", ctypes.c_int), ("bytes_per_line", ctypes.c_int)]


_LONG, _INT, _POINTER = ctypes.c_ulong, ctypes.c_int, ctypes.c_void_p
_X = ctypes.CDLL("libX11.so.6")
_X.XOpenDisplay.restype, _X.XOpenDisplay.argtypes = _POINTER, [ctypes.c_char_p]
_X.XDefaultRootWindow.restype, _X.XDefaultRootWindow.argtypes = _LONG, [_POINTER]
_X.XInternAtom.restype, _X.XInternAtom.argtypes = _LONG, [_POINTER, ctypes.c_char_p, _INT]
_X.XGetSelectionOwner.restype, _X.XGetSelectionOwner.argtypes = _LONG, [_POINTER, _LONG]
_X.XListProperties.restype = ctypes.POINTER(_LONG)
_X.XListProperties.argtypes = [_POINTER, _LONG, ctypes.POINTER(_INT)]
_X.XFree.argtypes = [_POINTER]
_X.XGetImage.restype = ctypes.POINTER(_Image)
_X.XGetImage.argtypes = [_POINTER, _LONG, _INT, _INT, _INT, _INT, _LONG, _INT]
_X.XDestroyImage.argtypes = [ctypes.POINTER(_Image)]
_X.XCloseDisplay.argtypes = [_POINTER]

_XTEST = ctypes.CDLL("libXtst.so.6")
_XTEST.XTestFakeKeyEvent.argtypes = [_POINTER, ctypes.c_uint, _INT, _LONG]
_X.XSync.argtypes = [_POINTER, _INT]

_ALL_PLANES, _Z_PIXMAP = 0xFFFFFFFF, 2


class Connection:
    """A connection to the display of that name. Not for use from several threads."""

    def __init__(self, display):
        self.display = _X.XOpenDisplay(display.encode())
        if not self.display:
            raise OSError(f"cannot connect to the display {display}")
        self.root = _X.XDefaultRootWindow(self.display)

    def _atom(self, name):
        return _X.XInternAtom(self.display, name.encode(), 0)

    def selection_has_owner(self, selection):
        return _X.XGetSelectionOwner(self.display, self._atom(selection)) != 0

    def root_has_property(self, name):
        count = _INT()
        atoms = _X.XListProperties(self.display, self.root, ctypes.byref(count))
        if not atoms:
            return False
        found = self._atom(name) in atoms[:count.value]
        _X.XFree(atoms)
        return found

    def pixels(self, x, y, width, height):
        """What the screen shows there: rows of 4 bytes (blue, green, red, unused) a pixel."""
        image = _X.XGetImage(self.display, self.root, x, y, width, height, _ALL_PLANES, _Z_PIXMAP)
        content = image.contents.data[:image.contents.bytes_per_line * height]
        _X.XDestroyImage(image)
        return content

    def press(self, *keycodes):
        """Presses the physical keys one after another, whatever they mean, and releases them."""
        for codes, down in ((keycodes, 1), (reversed(keycodes), 0)):
            for code in codes:
                _XTEST.XTestFakeKeyEvent(self.display, code, down, 0)
        _X.XSync(self.display, 0)

    def close(self):
        _X.XCloseDisplay(self.display)

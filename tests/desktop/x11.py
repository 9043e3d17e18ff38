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

_X.XSelectInput.argtypes = [_POINTER, _LONG, ctypes.c_long]
_X.XPending.argtypes = [_POINTER]
_X.XNextEvent.argtypes = [_POINTER, _POINTER]

_ALL_PLANES, _Z_PIXMAP = 0xFFFFFFFF, 2
_SUBSTRUCTURE_NOTIFY_MASK, _PROPERTY_CHANGE_MASK = 1 << 19, 1 << 22
_CREATE_NOTIFY, _MAP_NOTIFY, _CONFIGURE_NOTIFY, _CLIENT_MESSAGE = 16, 19, 22, 33


class _AnyEvent(ctypes.Structure):
    _fields_ = [("type", _INT), ("serial", _LONG), ("send_event", _INT), ("display", _POINTER)]


class _MapEvent(ctypes.Structure):
    _fields_ = [*_AnyEvent._fields_, ("event", _LONG), ("window", _LONG), ("override", _INT)]


class _ConfigureEvent(ctypes.Structure):
    """The event of a creation has the same places."""
    _fields_ = [*_AnyEvent._fields_, ("event", _LONG), ("window", _LONG), ("x", _INT), ("y", _INT),
                ("width", _INT), ("height", _INT)]


class _ClientMessageEvent(ctypes.Structure):
    _fields_ = [*_AnyEvent._fields_, ("window", _LONG), ("message_type", _LONG), ("format", _LONG),
                ("data", ctypes.c_ubyte * 20)]


class _Event(ctypes.Union):
    """Xlib's XEvent, as far as it is read here."""
    _fields_ = [("type", _INT), ("map", _MapEvent), ("configure", _ConfigureEvent),
                ("message", _ClientMessageEvent), ("pad", ctypes.c_long * 24)]


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


class Recording(Connection):
    """Knows what has happened to the windows since it was made, also what was over before anybody
    looked: the server keeps the events until they are asked for."""

    def __init__(self, display):
        super().__init__(display)
        self._sizes, self._popups, self._activated, self._broadcasts = {}, [], [], {}
        _X.XSelectInput(self.display, self.root, _SUBSTRUCTURE_NOTIFY_MASK | _PROPERTY_CHANGE_MASK)
        _X.XSync(self.display, 0)

    def popups(self):
        """The sizes of all windows that came onto the screen past the window manager, in order."""
        self._read()
        return list(self._popups)

    def activations(self, window):
        """How often somebody asked the window manager to give that window the keyboard."""
        self._read()
        return self._activated.count(window)

    def startup_messages(self):
        """What was told to the desktop about starts of programs, in order."""
        self._read()
        return [pieces.split(b"\0")[0].decode() for pieces in self._broadcasts.values()
                if b"\0" in pieces]

    def _read(self):
        event = _Event()
        while _X.XPending(self.display):
            _X.XNextEvent(self.display, ctypes.byref(event))
            if event.type in (_CREATE_NOTIFY, _CONFIGURE_NOTIFY):
                change = event.configure
                self._sizes[change.window] = (change.width, change.height)
                # The server gives the numbers of those that are gone to new ones.
                if event.type == _CREATE_NOTIFY and change.window in self._activated:
                    self._activated = [each for each in self._activated if each != change.window]
            elif event.type == _MAP_NOTIFY and event.map.override:
                self._popups.append(self._sizes.get(event.map.window))
            elif event.type == _CLIENT_MESSAGE:
                self._take(event.message)

    def _take(self, message):
        if message.message_type == self._atom("_NET_ACTIVE_WINDOW"):
            self._activated.append(message.window)
        elif message.message_type in (self._atom("_NET_STARTUP_INFO_BEGIN"),
                                      self._atom("_NET_STARTUP_INFO")):
            before = self._broadcasts.get(message.window, b"")
            self._broadcasts[message.window] = before + bytes(message.data)

"""Commands to the running program over the session bus, many at once and without waiting for
answers. Speaks the wire protocol by itself: the tools for it take a process for each call."""
import os
import socket
import struct

BUS = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
PROGRAM = ("org.vellumry.Vellumry", "/org/vellumry/Vellumry", "org.freedesktop.Application")
CALL, NO_REPLY, VERSION = 1, 1, 1
# The fields of a header, with their types.
PATH, INTERFACE, MEMBER, DESTINATION, SIGNATURE = (1, "o"), (2, "s"), (3, "s"), (6, "s"), (8, "g")


def _aligned(data, size):
    return data + b"\0" * (-len(data) % size)


def _text(value, length="<I"):
    raw = value.encode()
    return struct.pack(length, len(raw)) + raw + b"\0"


class RemoteCommands:
    """Its connection lasts until close(); the program at the other end may come and go."""

    def __init__(self, address):
        self._serial = 0
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(20)
        self.socket.connect(address.removeprefix("unix:path="))
        user = str(os.getuid()).encode().hex()
        self.socket.sendall(f"\0AUTH EXTERNAL {user}\r\n".encode())
        answer = self.socket.recv(1024)
        if not answer.startswith(b"OK "):
            raise AssertionError(f"the bus refuses: {answer!r}")
        self.socket.sendall(b"BEGIN\r\n" + self._call(BUS, "Hello"))

    def close(self):
        self.socket.close()

    def send(self, action, times=1):
        """Asks for the action so many times in a row."""
        arguments = _aligned(_text(action), 4) + struct.pack("<I", 0)  # no parameter
        arguments = _aligned(arguments + struct.pack("<I", 0), 8)  # nothing of the platform
        self.socket.sendall(b"".join(
            self._call(PROGRAM, "ActivateAction", "sava{sv}", arguments) for _ in range(times)))

    def _call(self, receiver, method, signature="", arguments=b""):
        destination, path, interface = receiver
        fields = b""
        for (number, kind), value in ((PATH, path), (INTERFACE, interface), (MEMBER, method),
                                      (DESTINATION, destination), (SIGNATURE, signature)):
            fields = _aligned(fields, 8) + bytes([number]) + _text(kind, "<B")
            fields = fields + _text(value, "<B") if kind == "g" else (
                _aligned(fields, 4) + _text(value))
        self._serial += 1
        head = struct.pack("<cBBBIII", b"l", CALL, NO_REPLY, VERSION, len(arguments), self._serial,
                           len(fields))
        return _aligned(head + fields, 8) + arguments

"""A token of the compositor for the keyboard focus (xdg-activation), as a desktop that handles its own
shortcuts would make one. Speaks the wire protocol by itself: no package has a tool for it."""
import socket
import struct

DISPLAY, REGISTRY, SYNC, ACTIVATION, TOKEN = 1, 2, 3, 4, 5
GET_REGISTRY, BIND, GET_TOKEN, COMMIT = 1, 0, 1, 3  # opcodes of requests; sync is 0
INTERFACE = "xdg_activation_v1"


def _text(value):
    raw = value.encode() + b"\0"
    return struct.pack("=I", len(raw)) + raw + b"\0" * (-len(raw) % 4)


class TokenMaker:
    """Tokens die with whoever made them, so it stays connected until close()."""

    def __init__(self, display):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(20)
        self.socket.connect(display)
        self._next = TOKEN
        self._send(DISPLAY, GET_REGISTRY, struct.pack("=I", REGISTRY))
        self._send(DISPLAY, 0, struct.pack("=I", SYNC))
        name = None
        while True:
            sender, opcode, body = self._receive()
            if sender == SYNC:
                break
            if sender == REGISTRY and opcode == 0:
                number, length = struct.unpack_from("=II", body)
                if body[8:8 + length - 1].decode() == INTERFACE:
                    name = number
        if name is None:
            raise AssertionError(f"the compositor has no {INTERFACE}")
        self._send(REGISTRY, BIND,
                   struct.pack("=I", name) + _text(INTERFACE) + struct.pack("=II", 1, ACTIVATION))

    def close(self):
        self.socket.close()

    def make(self):
        token, self._next = self._next, self._next + 1
        self._send(ACTIVATION, GET_TOKEN, struct.pack("=I", token))
        self._send(token, COMMIT, b"")
        while True:
            sender, _, body = self._receive()
            if sender == token:
                length = struct.unpack_from("=I", body)[0]
                return body[4:4 + length - 1].decode()

    def _send(self, target, opcode, body):
        self.socket.sendall(struct.pack("=II", target, (8 + len(body)) << 16 | opcode) + body)

    def _receive(self):
        target, word = struct.unpack("=II", self._read(8))
        body = self._read((word >> 16) - 8)
        if target == DISPLAY and word & 0xffff == 0:
            raise AssertionError(f"the compositor refuses: {body!r}")
        return target, word & 0xffff, body

    def _read(self, size):
        data = b""
        while len(data) < size:
            piece = self.socket.recv(size - len(data))
            if not piece:
                raise AssertionError("the compositor has gone")
            data += piece
        return data

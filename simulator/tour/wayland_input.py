"""A pointer and a keyboard for a Wayland compositor that has none: a small client of its virtual input protocols."""
import socket
import struct
import tempfile
import time

from stage import TourError

DISPLAY, REGISTRY = 1, 2
MANAGERS = "wl_seat", "zwlr_virtual_pointer_manager_v1", "zwp_virtual_keyboard_manager_v1"
KEYMAP = b"""xkb_keymap {
 xkb_keycodes { include "evdev+aliases(qwerty)" };
 xkb_types { include "complete" };
 xkb_compat { include "complete" };
 xkb_symbols { include "pc+us+inet(evdev)" };
};
"""
LEFT_BUTTON = 0x110
SHIFT, CONTROL = 1, 4  # modifier masks
# The kernel's key codes, by what the keys say plain and shifted.
CODES = {character: code
         for first, plain, shifted in ((2, "1234567890-=", "!@#$%^&*()_+"), (16, "qwertyuiop[]", "QWERTYUIOP{}"),
                                       (30, "asdfghjkl;'", 'ASDFGHJKL:"'), (44, "zxcvbnm,./", "ZXCVBNM<>?"))
         for row, mask in ((plain, 0), (shifted, SHIFT))
         for character, code in zip(row, ((first + at, mask) for at in range(len(row))))}
CODES[" "] = 57, 0
NAMED = {"Escape": 1, "BackSpace": 14, "Tab": 15, "Return": 28, "Home": 102, "Up": 103, "Left": 105, "Right": 106,
         "End": 107, "Down": 108, "Delete": 111}


class WaylandInput:
    """Connected from the start until close(). Positions are points of a screen whose size is given in points."""

    def __init__(self, path, screen):
        self.screen = screen
        self.connection = socket.socket(socket.AF_UNIX)
        self.connection.connect(str(path))
        self.last_id = REGISTRY
        self.globals = {}
        self.request(DISPLAY, 1, REGISTRY)
        self.sync()
        seat, pointers, keyboards = (self.bind(interface) for interface in MANAGERS)
        self.pointer, self.keyboard = self.new_id(), self.new_id()
        self.request(pointers, 0, seat, self.pointer)
        self.request(keyboards, 0, seat, self.keyboard)
        self.send_keymap()
        self.sync()

    def close(self):
        self.connection.close()

    # The wire

    def new_id(self):
        self.last_id += 1
        return self.last_id

    def request(self, target, opcode, *arguments, files=()):
        body = b"".join(argument if isinstance(argument, bytes) else struct.pack("=I", argument)
                        for argument in arguments)
        message = struct.pack("=II", target, (8 + len(body)) << 16 | opcode) + body
        socket.send_fds(self.connection, [message], list(files))

    def sync(self):
        """Waits until the compositor has done all that was asked."""
        callback = self.new_id()
        self.request(DISPLAY, 0, callback)
        while True:
            target, size_and_opcode = struct.unpack("=II", self.receive(8))
            body = self.receive((size_and_opcode >> 16) - 8)
            if target == callback:
                return
            if target == DISPLAY and size_and_opcode & 0xffff == 0:
                raise TourError(f"the compositor says {body[12:].rstrip(bytes(1)).decode()}")
            if target == REGISTRY and size_and_opcode & 0xffff == 0:
                name, length = struct.unpack_from("=II", body)
                self.globals[body[8:8 + length - 1].decode()] = name

    def receive(self, size):
        received = b""
        while len(received) < size:
            part = self.connection.recv(size - len(received))
            if not part:
                raise TourError("the compositor hung up")
            received += part
        return received

    def bind(self, interface):
        if interface not in self.globals:
            raise TourError(f"the compositor has no {interface}")
        text = interface.encode() + b"\0"
        text += bytes(-len(text) % 4)
        bound = self.new_id()
        self.request(REGISTRY, 0, self.globals[interface], len(interface) + 1, text, 1, bound)
        return bound

    def send_keymap(self):
        with tempfile.TemporaryFile() as file:
            file.write(KEYMAP + b"\0")
            file.flush()
            self.request(self.keyboard, 0, 1, len(KEYMAP) + 1, files=[file.fileno()])

    # Hands

    def now(self):
        return int(time.monotonic() * 1000) & 0xffffffff

    def move_to(self, x, y):
        # In hundredths, for half points count as well.
        numbers = (round(number * 100) for number in (x, y, *self.screen))
        self.request(self.pointer, 1, self.now(), *numbers)
        self.request(self.pointer, 4)
        self.sync()

    def button(self, pressed):
        self.request(self.pointer, 2, self.now(), LEFT_BUTTON, int(pressed))
        self.request(self.pointer, 4)
        self.sync()

    def strike(self, code, modifiers):
        self.request(self.keyboard, 2, modifiers, 0, 0, 0)
        for pressed in 1, 0:
            self.request(self.keyboard, 1, self.now(), code, pressed)
        self.request(self.keyboard, 2, 0, 0, 0, 0)
        self.sync()

    def type(self, text):
        for character in text:
            self.strike(*CODES[character])

    def key(self, name):
        *prefix, last = name.split("+")
        code = NAMED[last] if last in NAMED else CODES[last][0]
        self.strike(code, CONTROL if prefix == ["ctrl"] else 0)

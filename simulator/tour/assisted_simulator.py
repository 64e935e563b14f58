"""VexmorSimulator used the way a screen reader uses it: without a picture of it, without hands, through AT-SPI alone, on
session and accessibility buses of its own. Wants Debian's Python, for its bindings to libatspi."""
import os
import time

import gi

from driven_simulator import DrivenSimulator
from stage import TourError, wait_until

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

SESSION_CONFIGURATION = "/usr/share/dbus-1/session.conf"

class Element:
    """Something on the screen, as a screen reader knows it."""

    def __init__(self, accessible):
        self.accessible = accessible

    def __str__(self):
        return f"{self.role} {self.name!r}"

    name = property(lambda self: self.accessible.get_name())
    description = property(lambda self: self.accessible.get_description())
    role = property(lambda self: self.accessible.get_role_name())
    child_count = property(lambda self: self.accessible.get_child_count())

    def child(self, index):
        found = self.accessible.get_child_at_index(index)
        return Element(found) if found else None

    def states(self):
        return {state.value_nick for state in self.accessible.get_state_set().get_states()}

    def actions(self):
        return [self.accessible.get_action_name(index) for index in range(self.accessible.get_n_actions())]

    def text(self):
        text = self.accessible.get_text_iface()
        return text.get_text(0, text.get_character_count()) if text else None

    def place(self):
        """x, y, width and height, in pixels of the screen."""
        extents = self.accessible.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    def do(self, action):
        actions = self.actions()
        if action not in actions:
            raise TourError(f"{self} offers {actions}, not {action}")
        self.accessible.do_action(actions.index(action))

    def put_text(self, text):
        self.accessible.get_editable_text_iface().set_text_contents(text)

    def showing_children(self):
        """One by one; of a list that says that it has too many for that, from the first one in sight to the last."""
        has_many = "manages-descendants" in self.states()
        for index in range(self.first_in_sight() if has_many else 0, self.child_count):
            child = self.child(index)
            if child and "showing" in child.states():
                yield child
            elif has_many:
                return

    def first_in_sight(self):
        x, y, width, height = self.place()
        for below in range(0, height, height // 64 + 1):
            at = self.accessible.get_component_iface().get_accessible_at_point(x + width // 2, y + below,
                                                                               Atspi.CoordType.SCREEN)
            if at:
                return at.get_index_in_parent()
        return self.child_count

    def walk(self, depth=0):
        """What is showing of this element and all below it, in reading order, each with its depth."""
        yield depth, self
        for child in self.showing_children():
            yield from child.walk(depth + 1)


class AssistedSimulator(DrivenSimulator):
    """A running simulator; `root` is its window. What it tells of itself is collected in `told`."""

    def start_simulator(self):
        session = {"DBUS_SESSION_BUS_ADDRESS": self.start_session_bus(), "GSETTINGS_BACKEND": "memory"}
        self.environment |= {**session, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        os.environ.update({**session, "DISPLAY": self.environment["DISPLAY"], "XDG_RUNTIME_DIR": str(self.scratch)})
        if Atspi.init() not in (0, 1):
            raise TourError("there is no accessibility bus")
        Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)
        self.listen()
        super().start_simulator()
        wait_until(self.find_root, "the app is not on the accessibility bus")

    def start_session_bus(self):
        socket = self.scratch / "session-bus"
        self.start("dbus-daemon", f"--config-file={SESSION_CONFIGURATION}", f"--address=unix:path={socket}", "--nofork",
                   "--nopidfile", env=self.environment | {"GSETTINGS_BACKEND": "memory"})
        wait_until(socket.exists, "the session bus did not start")
        return f"unix:path={socket}"

    def find_root(self):
        self.root = None
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            app = desktop.get_child_at_index(index)
            if app and app.get_process_id() == self.process.pid and app.get_child_count():
                self.root = Element(app.get_child_at_index(0))
        return self.root

    # Ears

    def listen(self):
        self.told = []
        self.listener = Atspi.EventListener.new(self.hear)
        for event in ("object:state-changed:focused", "object:state-changed:showing", "object:state-changed:checked"):
            self.listener.register(event)

    def hear(self, event):
        if not event.detail1:
            return
        try:
            self.told.append((event.type.rpartition(":")[2], str(Element(event.source))))
        except GLib.Error:
            pass  # gone already

    def hear_what_was_told(self):
        while GLib.MainContext.default().iteration(False):
            pass
        return self.told

    def settle(self, quiet=0.4, at_most=5):
        """Waits until nothing has been told for a while."""
        end = time.monotonic() + at_most
        since = time.monotonic()
        while time.monotonic() < min(end, since + quiet):
            before = len(self.told)
            if len(self.hear_what_was_told()) != before:
                since = time.monotonic()
            time.sleep(0.02)

    # What a person who uses it wants

    def screen(self):
        """What is showing, without the elements that merely hold others."""
        return [element for _, element in self.root.walk() if element.role != "filler"]

    def find(self, role, name):
        found = [element for element in self.screen() if (element.role, element.name) == (role, name)]
        return found[0] if found else None

    def get(self, role, name):
        """The element with this role and name, once it is there."""
        found = []
        wait_until(lambda: found.append(self.find(role, name)) or found[-1],
                   lambda: f"no {role} {name!r} among {[str(each) for each in self.screen()]}")
        return found[-1]

    def do(self, role, name, action="Press"):
        self.get(role, name).do(action)
        self.settle()

"""VexmorSimulator used from outside: real taps, drags and keys on a stage and with a bus of its own.

Points are the app's, counted from the upper left corner of its window, which shows the screen below the status bar. A
negative x counts from the right edge, where bars and rows have their controls on a screen of any width."""
import hashlib
import os
import plistlib
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

from stage import TourError, wait_until
from stage_x11 import X11Stage

PREFERENCES = "var/mobile/Library/Preferences"
APP_RULES = f"{PREFERENCES}/com.Urmeld.FirewallRules2.plist"
GLOBAL_RULES = f"{PREFERENCES}/com.Urmeld.FirewallGlobalRules2.plist"
GUI_SETTINGS = f"{PREFERENCES}/com.Urmeld.FirewallSettings2.plist"
EXPORTS = f"{PREFERENCES}/Vxm"
LISTS = "Applications/VexmorGUI.app/Lists"

BAR, SEARCH, ROW = 40, 38, 50  # heights in points

BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path={socket}</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/><allow receive_sender="*" eavesdrop="true"/><allow own="*"/>
  </policy>
</busconfig>
"""


class DrivenSimulator:
    """A running simulator on `device`; pictures go to `pictures`, numbered in the order in which they are taken."""

    def __init__(self, program, device, pictures, arguments=(), stage=None):
        self.program, self.device, self.pictures = Path(program), Path(device), Path(pictures)
        self.arguments = arguments
        self.stage = stage or X11Stage()
        self.picture_number = 0
        self.children = []

    def __enter__(self):
        self.scratch = Path(tempfile.mkdtemp(prefix="vexmor-tour-"))
        try:
            self.environment = {
                **os.environ,
                "DBUS_SYSTEM_BUS_ADDRESS": self.start_bus(),
                "XDG_RUNTIME_DIR": str(self.scratch),
                "LC_ALL": "C.UTF-8",
                **self.stage.open(self.start, self.scratch),
            }
            if os.geteuid() == 0:  # the web engine's sandbox cannot be had as root
                self.environment["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
            self.start_simulator()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.stage.close()
        for child in reversed(self.children):
            if child.poll() is None:
                child.kill()
            child.wait()
        shutil.rmtree(self.scratch)

    # What runs

    def start(self, *command, **options):
        options = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **options}
        child = subprocess.Popen(command, **options)
        self.children.append(child)
        return child

    def start_bus(self):
        socket = self.scratch / "system-bus"
        configuration = self.scratch / "bus.conf"
        configuration.write_text(BUS_CONFIGURATION.format(socket=socket))
        self.start("dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile")
        wait_until(socket.exists, "the bus did not start")
        return f"unix:path={socket}"

    def start_simulator(self):
        with open(self.scratch / "output", "wb") as output, open(self.scratch / "errors", "wb") as errors:
            self.process = self.start(self.program, "--device", self.device, *self.arguments, env=self.environment,
                                      stdout=output, stderr=errors)
        wait_until(self.find_window, lambda: f"no window appeared: {(self.scratch / 'errors').read_text().strip()}")
        self.width, self.height = self.stage.window_size()
        self.settle()

    def find_window(self):
        if self.process.poll() is not None:
            raise TourError(f"the simulator ended: {(self.scratch / 'errors').read_text().strip()}")
        return self.stage.find_window(self.process)

    # Hands

    def move_to(self, x, y):
        self.stage.move_to(x if x >= 0 else self.width + x, y)

    def tap(self, x, y):
        self.move_to(x, y)
        self.stage.press()
        self.stage.release()
        self.settle()

    def tap_near_middle(self, right, down):
        """Taps what is so far from the window's middle, as an alert's buttons are."""
        self.tap(self.width / 2 + right, self.height / 2 + down)

    def swipe_left(self, y, start=260, end=100):
        self.move_to(start, y)
        self.stage.press()
        for step in range(1, 13):
            self.move_to(start + (end - start) * step / 12, y)
        self.stage.release()
        self.settle()

    def type(self, text):
        self.stage.type(text)
        self.settle()

    def key(self, *names):
        self.stage.key(*names)
        self.settle()

    def replace_text(self, text):
        self.stage.key("ctrl+a")
        self.type(text)

    def terminate(self):
        """Asks the app to end; returns its exit status."""
        self.process.send_signal(signal.SIGTERM)
        try:
            return self.process.wait(10)
        except subprocess.TimeoutExpired as error:
            raise TourError("the app did not end when asked to") from error

    # Eyes

    def settle(self, quiet=0.4, at_most=5):
        """Waits until the picture has been still for a while: animations are over, answers are painted. A blinking
        cursor changes it only every half second."""
        end = time.monotonic() + at_most
        seen, since = None, time.monotonic()
        while time.monotonic() < end and time.monotonic() - since < quiet:
            now = hashlib.sha1(self.stage.pixels()).digest()
            if now != seen:
                seen, since = now, time.monotonic()
            time.sleep(0.05)

    def picture(self, name):
        self.picture_number += 1
        file = self.pictures / f"{self.picture_number:02}-{name}.png"
        self.stage.picture(file)
        print(f"tour: {file}", flush=True)

    def plist(self, name):
        with open(self.device / name, "rb") as file:
            return plistlib.load(file)

    def printed(self):
        return (self.scratch / "output").read_text().splitlines()

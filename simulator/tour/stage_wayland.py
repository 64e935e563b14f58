"""A Wayland compositor of our own."""
import json
import os
import pwd
import subprocess

from stage import DESKTOP, Stage, TourError, wait_until
from wayland_input import WaylandInput

# A phone's compositor gives a window the whole screen; a desktop's gives it the size that it asks for.
CONFIGURATION = """
xwayland disable
default_border none
focus_follows_mouse no
seat * hide_cursor 100
output HEADLESS-1 mode --custom {pixels}@60Hz scale {scale} position 0 0 bg #707070 solid_color
"""
FLOATING = "for_window [app_id=.*] floating enable, move position 40 20\n"


class WaylandStage(Stage):
    """Wants sway and grim."""

    def open(self, start, scratch):
        place = scratch / "compositor"
        place.mkdir(mode=0o700)
        configuration = place / "sway.conf"
        pixels = "x".join(str(round(points * self.scale)) for points in self.screen)
        configuration.write_text(CONFIGURATION.format(pixels=pixels, scale=self.scale)
                                 + (FLOATING if self.screen == DESKTOP else ""))
        display, control = place / "wayland-1", place / "control"
        self.environment = {**os.environ, "WAYLAND_DISPLAY": str(display), "SWAYSOCK": str(control)}
        start("sway", "--config", configuration, **self.somebody(scratch, place),
              env={"PATH": os.environ["PATH"], "XDG_RUNTIME_DIR": str(place), "SWAYSOCK": str(control),
                   "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"})
        wait_until(lambda: display.exists() and control.exists(), "the compositor did not start")
        self.input = WaylandInput(display, self.screen)
        return {"WAYLAND_DISPLAY": str(display), "QT_QPA_PLATFORM": "wayland", "QT_SCALE_FACTOR": "1"}

    @staticmethod
    def somebody(scratch, place):
        """Whom to start the compositor as, which refuses to be root's: where we are root, nobody."""
        if os.geteuid() != 0:
            return {}
        nobody = pwd.getpwnam("nobody")
        scratch.chmod(0o711)
        for path in place, *place.iterdir():
            os.chown(path, nobody.pw_uid, nobody.pw_gid)
        return {"user": nobody.pw_uid, "group": nobody.pw_gid, "extra_groups": []}

    def close(self):
        if hasattr(self, "input"):
            self.input.close()

    def find_window(self, process):
        self.process = process
        return self.window() is not None

    def window(self):
        """The window's rectangle on the screen: x, y, width, height."""
        tree = subprocess.run(["swaymsg", "--raw", "--type", "get_tree"], env=self.environment, capture_output=True,
                              check=False).stdout
        nodes = [json.loads(tree)] if tree else []
        while nodes:
            node = nodes.pop()
            if node.get("pid") == self.process.pid:
                return [node["rect"][part] for part in ("x", "y", "width", "height")]
            nodes += node["nodes"] + node["floating_nodes"]
        return None

    def window_size(self):
        return tuple(self.window()[2:])

    def move_to(self, x, y):
        left, top, *_ = self.window()
        self.input.move_to(left + x, top + y)

    def press(self):
        self.input.button(True)

    def release(self):
        self.input.button(False)

    def type(self, text):
        self.input.type(text)

    def key(self, *names):
        for name in names:
            self.input.key(name)

    def pixels(self):
        return self.shoot("-t", "ppm", "-")

    def picture(self, file):
        self.shoot(file)

    def shoot(self, *to):
        window = self.window()
        if not window:
            raise TourError("the window is gone")
        x, y, width, height = window
        return subprocess.run(["grim", "-g", f"{x},{y} {width}x{height}", *to], env=self.environment,
                              capture_output=True, check=True).stdout

"""An X11 display of our own."""
import os
import subprocess

from stage import Stage, TourError


class X11Stage(Stage):
    """A bare display, without a window manager. Wants Xvfb, xdotool and ImageMagick."""

    def open(self, start, scratch):
        reading, writing = os.pipe()
        size = "x".join(str(round(points * self.scale)) for points in self.screen)
        # A display without windows would start anew, and refuse meanwhile whoever comes next.
        start("Xvfb", "-displayfd", str(writing), "-screen", "0", f"{size}x24", "-nolisten", "tcp", "-noreset",
              pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise TourError("the display did not start")
        # A scale of 1 is named as well: the factor of whoever runs this is not ours.
        environment = {"DISPLAY": f":{number}", "QT_QPA_PLATFORM": "xcb", "QT_SCALE_FACTOR": str(self.scale)}
        self.environment = {**os.environ, **environment}
        return environment

    def find_window(self, process):
        self.window = self.xdotool("search", "--onlyvisible", "--pid", str(process.pid)).partition("\n")[0]
        if not self.window:
            return False
        self.xdotool("windowfocus", "--sync", self.window)
        return True

    def window_size(self):
        lines = self.xdotool("getwindowgeometry", "--shell", self.window).splitlines()
        geometry = dict(line.split("=") for line in lines)
        return tuple(round(int(geometry[side]) / self.scale) for side in ("WIDTH", "HEIGHT"))

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.environment, capture_output=True, text=True,
                              check=False).stdout.strip()

    def move_to(self, x, y):
        self.xdotool("mousemove", "--window", self.window, *(str(round(at * self.scale)) for at in (x, y)))

    def press(self):
        self.xdotool("mousedown", "1")

    def release(self):
        self.xdotool("mouseup", "1")

    def type(self, text):
        self.xdotool("type", "--delay", "20", text)

    def key(self, *names):
        self.xdotool("key", *names)

    def pixels(self):
        return self.shoot("-depth", "8", "rgb:-")

    def picture(self, file):
        self.shoot(file)

    def shoot(self, *to):
        return subprocess.run(["import", "-window", self.window, *to], env=self.environment, capture_output=True,
                              check=True).stdout

"""What the app is shown on while the tour uses it."""
import time

DESKTOP = 700, 600  # points; room for the app's window and more


class TourError(Exception):
    """What happened is not what the action should have led to."""


class Stage:
    """A screen of our own with one window on it. All positions are points, those of the window from its upper left."""

    def __init__(self, screen=DESKTOP, scale=2):
        self.screen, self.scale = screen, scale

    def open(self, start, scratch):
        """Brings the screen up with start(command...), its sockets in `scratch`. Returns the environment for the app."""
        raise NotImplementedError

    def close(self):
        """Lets go of what open() got hold of; the processes that it started are ended by their starter."""

    def find_window(self, process):
        """Whether the process has a window by now, which then has the keyboard."""
        raise NotImplementedError

    def window_size(self):
        raise NotImplementedError

    def move_to(self, x, y):
        raise NotImplementedError

    def press(self):
        raise NotImplementedError

    def release(self):
        raise NotImplementedError

    def type(self, text):
        raise NotImplementedError

    def key(self, *names):
        """Strikes keys one after the other; a name is X11's, with "ctrl+" before it perhaps."""
        raise NotImplementedError

    def pixels(self):
        """Bytes that are equal as long as the window looks the same."""
        raise NotImplementedError

    def picture(self, file):
        """Writes what the window shows, pixel by pixel, into a PNG file."""
        raise NotImplementedError


def wait_until(holds, otherwise, seconds=10):
    end = time.monotonic() + seconds
    while not holds():
        if time.monotonic() > end:
            raise TourError(otherwise() if callable(otherwise) else otherwise)
        time.sleep(0.05)

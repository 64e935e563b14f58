#!/usr/bin/env -S python3 -B
"""Takes the tour on screens of every size and sharpness that the app is made for, and leaves pictures of every screen
in build/pictures: a folder for each kind of display, size and scale, and beside it a sheet that shows them all. An option
narrows the choice; it may be given more than once. Sizes are in points; on a desktop the app has a window of its own,
on everything else it fills the screen."""
import argparse
import re
import subprocess
import sys
from pathlib import Path

from layout import tell
from names import look_at_names
from stage import DESKTOP, TourError
from stage_wayland import WaylandStage
from stage_x11 import X11Stage
from tour import take_tour

PICTURES = Path(__file__).resolve().parents[2] / "build/pictures"
DISPLAYS = {"x11": X11Stage, "wayland": WaylandStage}
SIZES = ["desktop", "320x480", "360x720", "412x915"]
SCALES = ["1", "1.5", "2", "3"]
SHORT_SCREEN = 480  # points; where the app's design is the short one


def size(text):
    if text != "desktop" and not re.fullmatch(r"\d{3,4}x\d{3,4}", text):
        raise argparse.ArgumentTypeError(f"desktop or WxH, not {text}")
    return text


def parse_arguments():
    parser = argparse.ArgumentParser(prog="scripts/pictures", description=__doc__)
    parser.add_argument("simulator", metavar="SIMULATOR", type=Path)
    parser.add_argument("--size", action="append", type=size)
    parser.add_argument("--scale", action="append", type=lambda text: f"{float(text):g}")
    parser.add_argument("--display", action="append", choices=DISPLAYS)
    return parser.parse_args()


def take_pictures(program, folder, display, size, scale):
    is_desktop = size == "desktop"
    screen = DESKTOP if is_desktop else tuple(int(points) for points in size.split("x"))
    arguments = ["--screen", "320x480"] if not is_desktop and screen[1] <= SHORT_SCREEN else []

    def stage():
        return DISPLAYS[display](screen, float(scale))

    take_tour(program, folder, stage(), arguments)
    look_at_names(program, folder / "names", stage(), arguments)
    pictures = [*sorted(folder.glob("*.png")), *sorted(folder.glob("names/*.png"))]
    sheet = folder.with_suffix(folder.suffix + ".png")
    subprocess.run(["montage", *pictures, "-tile", "8x", "-geometry", "320x+6+6", "-background", "#808080", sheet],
                   check=True)
    tell(f"{sheet} shows them all")


def main():
    arguments = parse_arguments()
    for display in arguments.display or DISPLAYS:
        for size in arguments.size or SIZES:
            for scale in arguments.scale or SCALES:
                name = f"{display}-{size}-at-{scale}"
                try:
                    take_pictures(arguments.simulator, PICTURES / name, display, size, scale)
                except (OSError, subprocess.CalledProcessError, TourError) as error:
                    sys.exit(f"pictures: {name}: {error}")


main()

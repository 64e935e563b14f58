#!/usr/bin/env -S python3 -B
"""demonstrate.py [--picture] SIMULATOR ENGINE DIRECTORY

The app, the engine's service and the real firewall daemon in a network of its own, on the demonstration device with one
more app, curl. Opens the app, and makes of this terminal one in that network until its shell ends. With --picture the
app is used by simulated taps on a display of its own, a terminal beside it, and the picture left in DIRECTORY."""
import shutil
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "simulator/tour"))
from driven_simulator import SEARCH, DrivenSimulator  # noqa: E402
from layout import ADD, APP_LIST, FOUND_APPS, ONE_APP, SEARCH_FIELD, TITLE_X, Table  # noqa: E402
from network import FilteredNetwork, NetworkError, becomes  # noqa: E402
from stage import TourError, wait_until  # noqa: E402
from stage_x11 import X11Stage  # noqa: E402

ENTRY = """[Desktop Entry]
Type=Application
Name=curl
Exec=/usr/bin/curl
Icon=utilities-terminal
"""
WELCOME = """
This terminal is in a network of its own now, and so is the firewall; the machine's is not touched.
Every name leads to a web server: try `curl news.example`. Then, in the app: the plus, curl, curl again,
"Always Deny Rules", "Add Hostname/IP", tracker.example. And here: `curl tracker.example`, and
`vexmor-engine explain --device device curl tracker.example`. `exit` ends it all.
"""
CHOOSER = Table(["curl"], header=SEARCH)
SCREEN = 850, 548  # points: the app's window, and a terminal
TERMINAL_X = 320


def say(text):
    print(f"demonstration: {text}", flush=True)


def make_device(directory):
    shutil.rmtree(directory, ignore_errors=True)
    shutil.copytree(ROOT / "resources/demo", directory / "device")
    (directory / "device/usr/share/applications/curl.desktop").write_text(ENTRY)
    return directory / "device"


def shell_in(network, directory):
    """A command: an interactive shell in the network and the directory."""
    settings = {"PS1": "$ ", "PATH": f"{network.engine.parent}:{network.environment['PATH']}"}
    return network.inside("env", "--chdir", directory, *(f"{key}={value}" for key, value in settings.items()),
                          "bash", "--noprofile", "--norc", "-i")


def use_by_hand(simulator, network, directory):
    with open(directory / "app.log", "wb") as log:
        app = subprocess.Popen([simulator, "--device", network.device], stdout=log, stderr=log)
    print(WELCOME)
    try:
        subprocess.run(shell_in(network, directory), check=False)
    finally:
        app.terminate()
        app.wait()


class Terminal:
    """An xterm beside the app's window, typed into."""

    def __init__(self, phone, command):
        self.phone, self.stage = phone, phone.stage
        x, points = round(TERMINAL_X * self.stage.scale), 10 * self.stage.scale
        phone.start("xterm", "-geometry", f"+{x}+0", "-fa", "Liberation Mono", "-fs", str(points * 0.75), "-bg", "#1d2424",
                    "-fg", "#e8eeee", "-bd", "#1d2424", "-b", "12", "-e", *command, env=phone.environment)
        wait_until(self.find, "no terminal appeared")
        self.stage.xdotool("windowsize", self.window, str(round(self.stage.screen[0] * self.stage.scale) - x),
                           str(round(self.stage.screen[1] * self.stage.scale)))

    def find(self):
        self.window = self.stage.xdotool("search", "--onlyvisible", "--class", "xterm").partition("\n")[0]
        return self.window

    def run(self, command):
        self.stage.xdotool("windowfocus", "--sync", self.window)
        self.stage.type(command)
        self.stage.key("Return")
        time.sleep(1.5)


def deny_tracker(phone):
    phone.tap(*ADD)
    phone.tap(TITLE_X, CHOOSER.row("curl"))
    phone.tap(*SEARCH_FIELD)
    phone.type("curl")
    phone.tap(TITLE_X, FOUND_APPS.row_behind(0))
    phone.tap(TITLE_X, ONE_APP.row("Always Deny Rules"))
    phone.tap(TITLE_X, APP_LIST.row("Add Hostname/IP"))
    phone.type("tracker.example")
    phone.key("Return")


def take_picture(simulator, network, directory):
    file = directory / "engine.png"
    with DrivenSimulator(simulator, network.device, directory, ["--network", "wifi"], X11Stage(SCREEN)) as phone:
        phone.stage.xdotool("windowmove", "--sync", phone.stage.window, "0", "0")
        terminal = Terminal(phone, shell_in(network, directory))
        terminal.run("curl tracker.example")
        phone.stage.find_window(phone.process)
        deny_tracker(phone)
        denied = becomes(lambda: network.run("curl", "-s", "tracker.example")[0] != 0)
        for command in ("curl tracker.example", "curl news.example",
                        "vexmor-engine explain --device device curl tracker.example"):
            terminal.run(command)
        subprocess.run(["import", "-window", "root", file], env=phone.stage.environment, check=True)
    if not denied:
        raise TourError("curl still reaches the host that was denied")
    say(f"{file}: the same command before the rule and after it")


def main():
    arguments = sys.argv[1:]
    has_picture = arguments[:1] == ["--picture"]
    if len(arguments) != 3 + has_picture:
        sys.exit("usage: demonstrate.py [--picture] SIMULATOR ENGINE DIRECTORY")
    simulator, engine, directory = (Path(path).absolute() for path in arguments[has_picture:])
    try:
        device = make_device(directory)
        with FilteredNetwork(engine, device, directory / "network") as network, \
                open(directory / "engine.log", "wb") as log:
            network.start_service(stdout=log, stderr=log)
            (take_picture if has_picture else use_by_hand)(simulator, network, directory)
    except (OSError, TourError, NetworkError) as error:
        sys.exit(f"demonstration: {error}")


main()

#!/usr/bin/env -S python3 -B
"""kills.py SIMULATOR DIRECTORY KILLS SEED

The app is killed at a random moment of a random change, KILLS times; beside some of the changes, another program
truncates and overwrites the file in place. Then changes are made on a full disk, in a folder that is mounted read-only,
and while the bus dies. Each time every file holds all that it held before the change or all that the change leaves, and
the next start leaves nothing else behind. Tells figures at the end; the first loss ends it with a line, and leaves the
device in DIRECTORY. Wants mounts of its own."""
import collections
import datetime
import errno
import hashlib
import itertools
import os
import plistlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

from driven_simulator import (APP_RULES, BAR, EXPORTS, GLOBAL_RULES, GUI_SETTINGS, LISTS, PREFERENCES, SEARCH,
                              DrivenSimulator)
from layout import ADD, ALL_APPS, DELETE_X, FILES, GLOBAL_LIST, MAIN, ONE_APP, SETTINGS, SWITCH_X, TITLE_X, Table
from stage import TourError
from stage_x11 import X11Stage

SMALL, LARGE = 20_000, 300_000  # rules
LARGE_SHARE = 10  # one kill of so many is on files of the larger kind
OVERWRITTEN_SHARE = 6  # of so many changes one is made beside another writer
FEW = 25  # for so many kills there is one change on a full disk, one in a read-only folder, and one without a bus
MANY = "MANY"  # where the list of that many rules is put
DATE = datetime.datetime(2024, 1, 20, 10)
MARKER = {"150": True}
DISABLED = f"{PREFERENCES}/com.Urmeld.Firewall.disabled"
CHOOSER = Table(header=SEARCH)
APPS = [f"org.example.App{number}" for number in range(6)]  # the first has most of the rules, and stays
GENERATION = re.compile(rb"(<key>x-generation</key>\s*<integer>)(\d+)")
TEMPORARY = re.compile(r"\..*\.vxm-[a-z0-5]{12}")
PLANTED = {"x-kept": {"deep": [1, 2.5, b"\x00\xff", DATE, "\u00fc"], "empty": {}}}


def tell(text):
    print(f"scripts/kills: {text}", flush=True)


class Loss(Exception):
    """The files hold what they must not, or the app has not survived what it must."""


# What the files hold

def rules(count):
    return [{"date": DATE, "rule": f"host{number:06}.example"} for number in range(count)]


def array_of_rules(count, depth):
    """The text of such a list, as plistlib writes it."""
    tabs = "\t" * depth
    return "".join([f"{tabs}<array>\n", *(
        f"{tabs}\t<dict>\n{tabs}\t\t<key>date</key>\n{tabs}\t\t<date>2024-01-20T10:00:00Z</date>\n"
        f"{tabs}\t\t<key>rule</key>\n{tabs}\t\t<string>host{number:06}.example</string>\n{tabs}\t</dict>\n"
        for number in range(count)), f"{tabs}</array>"]).encode()


def shortened(value):
    """Long lists, which nothing changes, as their length and digest."""
    if isinstance(value, list) and len(value) >= SMALL:
        return f"{len(value)} rules, {hashlib.sha1(repr(value).encode()).hexdigest()}"
    return {key: shortened(each) for key, each in value.items()} if isinstance(value, dict) else value


class Device:
    """A device's files, as property lists read them that know nothing of the app."""

    def __init__(self, directory):
        self.directory = Path(directory)
        self.known = {}

    def path(self, name):
        return self.directory / name

    def make(self, count):
        for folder in EXPORTS, LISTS, "usr/share/applications":
            self.path(folder).mkdir(parents=True, exist_ok=True)
        for number, identifier in enumerate(APPS):
            self.path(f"usr/share/applications/{identifier}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName=App {number}\nExec=true\n")
        apps = {
            APPS[0]: {"allow": [], "deny": MANY, "allowEverything": "", "stillUseRules": False, "x-generation": 1,
                      **PLANTED},
            APPS[1]: {"allow": rules(3), "deny": [], "allowEverything": "2", **PLANTED},
            **MARKER}
        everywhere = {"globalAllow": rules(5), "globalDeny": MANY, "x-generation": 1, **PLANTED, **MARKER}
        settings = {"showAllowHelp": False, "didShowEditAlert": True, **PLANTED}
        self.many = b"<string>%s</string>" % shortened(rules(count)).encode()
        self.texts = {APP_RULES: array_of_rules(count, 2), GLOBAL_RULES: array_of_rules(count, 1)}
        self.contents = {name: re.sub(rb"\t*<string>MANY</string>", self.texts[name], plistlib.dumps(value))
                         for name, value in ((APP_RULES, apps), (GLOBAL_RULES, everywhere))}
        self.contents[GUI_SETTINGS] = plistlib.dumps(settings)
        for name in self.texts:
            if shortened(plistlib.loads(self.contents[name])) != self.parse(self.contents[name]):
                raise TourError(f"{name} is not read as it was written")
        self.restore()

    def restore(self):
        """Makes the files anew, and removes what was kept of others."""
        for name, content in self.contents.items():
            self.path(name).write_bytes(content)
        for suffix in ".previous", ".damaged":
            for name in self.contents:
                self.path(name + suffix).unlink(missing_ok=True)

    def tidy(self):
        """Removes what would be in the way of later changes."""
        self.path(DISABLED).unlink(missing_ok=True)
        for file in self.exports():
            file.unlink()
        if not all(self.is_whole(name) for name in (APP_RULES, GLOBAL_RULES)):
            self.restore()

    def is_whole(self, name):
        return GENERATION.search(self.path(name).read_bytes()) is not None

    def exports(self):
        return [file for file in self.path(EXPORTS).iterdir() if not TEMPORARY.fullmatch(file.name)]

    def parse(self, content):
        """What stands in the file for the many rules is known and need not be parsed each time."""
        for text in self.texts.values():
            content = content.replace(text, self.many)
        return shortened(plistlib.loads(content))

    def read(self, name):
        """None when there is no such file."""
        try:
            content = self.path(name).read_bytes()
        except FileNotFoundError:
            return None
        digest = hashlib.sha1(content).digest()
        if digest not in self.known:
            try:
                self.known[digest] = self.parse(content)
            except Exception as error:  # whatever a parser says to half a file
                raise Loss(f"{name} cannot be read: {error}") from error
        return self.known[digest]

    def state(self):
        names = [APP_RULES, GLOBAL_RULES, GUI_SETTINGS]
        names += [f"{EXPORTS}/{file.name}" for file in self.exports()]
        return {**{name: self.read(name) for name in names}, DISABLED: self.path(DISABLED).exists()}

    def stamp(self, change):
        """Equal as long as the change has not been made."""
        path = self.path(change.file)
        status = path.stat() if path.exists() else None
        return status and (status.st_ino, status.st_mtime_ns), len(self.exports())

    def temporaries(self):
        return [file.name for folder in (PREFERENCES, EXPORTS) for file in os.scandir(self.path(folder))
                if TEMPORARY.fullmatch(file.name)]


# The changes: each takes the app from its first screen to where one input is left, returns that input as xdotool
# takes it, and says whether `after` is a state that the input leads to.

class Change:
    file = GLOBAL_RULES
    starts_empty = False  # where the file holds no dictionary
    is_of_one_dictionary = True
    numbers = itertools.count()

    def approach(self, phone):
        raise NotImplementedError

    def becomes(self, before, after):
        """Whether the one file is changed as it should be; `before` and `after` are what it held and holds."""
        raise NotImplementedError

    def leads(self, before, after):
        others = before.keys() | after.keys()
        return all(before.get(name) == after.get(name) for name in others - {self.file}) and \
            self.becomes(before.get(self.file), after.get(self.file))


class GlobalSwitch(Change):
    starts_empty = True

    def __init__(self, title, key):
        self.title, self.key = title, key

    def approach(self, phone):
        phone.tap(*SETTINGS)
        return phone.aim(SWITCH_X, ALL_APPS.row(self.title))

    def becomes(self, before, after):
        return after == {**before, self.key: not before.get(self.key, False)}


class MasterSwitch(Change):
    file = DISABLED
    is_of_one_dictionary = False

    def approach(self, phone):
        phone.tap(*SETTINGS)
        return phone.aim(SWITCH_X, ALL_APPS.row("Enabled"))

    def becomes(self, before, after):
        return after is not before


class AppSwitch(Change):
    file = APP_RULES

    def approach(self, phone):
        phone.tap(TITLE_X, MAIN.row_behind(0))
        return phone.aim(SWITCH_X, ONE_APP.row("Allow All Connections"))

    def becomes(self, before, after):
        record = before[APPS[0]]
        return after == {**before, APPS[0]: {**record, "allowEverything": "" if record["allowEverything"] else "1"}}


class AppAddedOrDeleted(Change):
    """The second app is deleted, or another one is added where there is none."""
    file = APP_RULES

    def approach(self, phone):
        if len(records(phone.files.read(APP_RULES))) > 1:
            phone.swipe_left(MAIN.row_behind(1))
            return phone.aim(DELETE_X, MAIN.row_behind(1))
        phone.tap(*ADD)
        return phone.aim(TITLE_X, CHOOSER.row_behind(1))

    def becomes(self, before, after):
        less, more = sorted((before, after), key=len)
        changed = more.keys() - less.keys()
        fresh = {"allow": [], "deny": [], "allowEverything": ""}
        return len(changed) == 1 and less == {key: more[key] for key in less} and \
            (less is after or all(after[key] == fresh for key in changed))


class RuleAdded(Change):
    def approach(self, phone):
        self.host = f"added{next(self.numbers)}.example"
        phone.tap(TITLE_X, MAIN.row("Global Allow"))
        phone.tap(TITLE_X, GLOBAL_LIST.row("Add Hostname/IP"))
        phone.type(self.host)
        return "key", "Return"

    def becomes(self, before, after):
        return gained(before, after) == [self.host]


class RuleDeleted(Change):
    def approach(self, phone):
        phone.tap(TITLE_X, MAIN.row("Global Allow"))
        phone.swipe_left(GLOBAL_LIST.row_behind(0))
        return phone.aim(DELETE_X, GLOBAL_LIST.row_behind(0))

    def becomes(self, before, after):
        return len(gained(after, before)) == 1


class ListImported(Change):
    def approach(self, phone):
        self.hosts = [f"listed{next(self.numbers)}.example" for _ in range(50)]
        phone.files.path(f"{LISTS}/A list").write_text("\n".join(self.hosts))
        phone.tap(TITLE_X, MAIN.row("Global Allow"))
        phone.tap(TITLE_X, GLOBAL_LIST.row("Import | Delete All"))
        phone.tap_near_middle(0, 71)  # "Import"
        phone.tap(TITLE_X, FILES.row_behind(0))
        return phone.aim(phone.width / 2 + 57, phone.height / 2 + 47)  # "YES"

    def becomes(self, before, after):
        return gained(before, after) == self.hosts


class EverythingExported(Change):
    is_of_one_dictionary = False

    def approach(self, phone):
        phone.tap(*SETTINGS)
        phone.tap(TITLE_X, ALL_APPS.row("Import/Export Settings"))
        return phone.aim(phone.width / 2, BAR + 112)  # "Export"

    def leads(self, before, after):
        new = after.keys() - before.keys()
        return all(after[name] == before[name] for name in before) and [after[name] for name in new] == [
            {"appRules": before[APP_RULES], "globalRules": before[GLOBAL_RULES], "settings": before[GUI_SETTINGS]}]


class EverythingDeleted(Change):
    """App rules first: each of the two steps is a state of its own."""
    is_of_one_dictionary = False

    def approach(self, phone):
        phone.tap(*SETTINGS)
        phone.tap(TITLE_X, ALL_APPS.row("Delete All Rules and Settings"))
        phone.key("Tab")
        return "key", "Return"

    def leads(self, before, after):
        apps_alone = {**before, APP_RULES: MARKER}
        return after in (apps_alone, {**apps_alone, GLOBAL_RULES: MARKER})


def records(app_rules):
    return [key for key, value in app_rules.items() if isinstance(value, dict)]


def gained(before, after):
    """The hosts that the allowed ones of all apps have gained, in order; nothing when anything else has changed."""
    if {**before, "globalAllow": 0} != {**after, "globalAllow": 0}:
        return []
    left = list(before["globalAllow"])
    new = []
    for rule in after["globalAllow"]:
        if rule in left:
            left.remove(rule)
        else:
            new.append(rule)
    return [] if left else [rule["rule"] for rule in new]


CHANGES = [GlobalSwitch("Block If NOT On WiFi", "blockNonWiFi"), GlobalSwitch("Deny Tab In Front", "denyTabFront"),
           MasterSwitch(), AppSwitch(), AppAddedOrDeleted(), RuleAdded(), RuleDeleted(), ListImported(),
           EverythingExported(), EverythingDeleted()]


class Phone(DrivenSimulator):
    """A running app on a device's files, which can be killed."""

    def __init__(self, program, files):
        self.files = files
        super().__init__(program, files.directory, files.directory, stage=X11Stage(scale=1))

    def settle(self, quiet=0.15, at_most=10):
        """A long list keeps the app busy while its picture is still."""
        super().settle(quiet, at_most)
        wait_for(self.is_idle, 30)

    def is_idle(self):
        before = self.work()
        time.sleep(0.1)
        return before == self.work() and before[0] in "SZ" and not self.files.temporaries()

    def work(self):
        """The state of the main thread, and the processor time of all threads."""
        values = Path(f"/proc/{self.process.pid}/stat").read_text().rpartition(")")[2].split()
        return values[0], values[11], values[12]

    def start_simulator(self):
        before = self.files.state()
        super().start_simulator()
        if left := self.files.temporaries():
            raise Loss(f"the start has left {left}")
        require(before, self.files.state(), lambda: False, "the start")

    def restart(self):
        self.process.kill()
        self.process.wait()
        self.files.tidy()
        self.start_simulator()

    def start_bus(self):
        (self.scratch / "system-bus").unlink(missing_ok=True)
        address = super().start_bus()
        self.bus = self.children[-1]
        return address

    def aim(self, x, y):
        self.move_to(x, y)
        return "click", "1"

    def give(self, given):
        """Begins to give the app an input, and does not wait for it."""
        return self.start("xdotool", *given, env=self.stage.environment)

    def check_is_alive(self):
        if self.process.poll() is not None:
            raise Loss(f"the app has ended: {(self.scratch / 'errors').read_text().strip()}")


def differences(before, after):
    """The names of what differs, down to the keys."""
    found = []
    for name in before.keys() | after.keys():
        old, new = before.get(name), after.get(name)
        if isinstance(old, dict) and isinstance(new, dict):
            found += [f"{Path(name).name}: {key}" for key in old.keys() | new.keys() if old.get(key) != new.get(key)]
        elif old != new:
            found.append(Path(name).name)
    return ", ".join(sorted(found))


def require(before, after, leads, what):
    """Whether the state is a new one; a loss if it is neither the old one nor a new one."""
    if after == before:
        return False
    if not leads():
        raise Loss(f"{what} has left neither the old nor the new state: {differences(before, after)}")
    return True


class Overwriter(threading.Thread):
    """Another program, which truncates a file and writes it again in parts, with the next generation's number."""

    def __init__(self, path, moments):
        super().__init__()
        self.path, self.moments = path, moments
        self.content = GENERATION.sub(lambda found: found[1] + b"%d" % (int(found[2]) + 1), path.read_bytes())

    def run(self):
        time.sleep(self.moments.pop())
        part = len(self.content) // len(self.moments) + 1
        with open(self.path, "wb", buffering=0) as file:
            for start, pause in zip(range(0, len(self.content), part), self.moments):
                file.write(self.content[start:start + part])
                time.sleep(pause)


class Kills:
    """Kills the app on one device's files."""

    def __init__(self, program, files, chance):
        self.program, self.files, self.chance = program, files, chance
        self.figures = collections.Counter()
        self.durations = {}

    def run(self, count):
        with Phone(self.program, self.files) as phone:
            for number in range(count):
                change = self.chance.choice(CHANGES)
                if change not in self.durations:
                    self.durations[change] = make_known(phone, change)
                    phone.restart()
                overwritten = change.is_of_one_dictionary and not self.chance.randrange(OVERWRITTEN_SHARE)
                try:
                    self.kill(phone, change, overwritten)
                except (Loss, TourError) as error:
                    raise type(error)(f"kill {number + 1}, {type(change).__name__}: {error}") from error
                if number % 10 == 9:
                    tell(f"{number + 1} of {count}")

    def kill(self, phone, change, overwritten):
        given = change.approach(phone)
        before = self.files.state()
        duration = self.durations[change]
        other = None
        if overwritten:
            other = Overwriter(self.files.path(change.file), [self.chance.uniform(0, duration / 4) for _ in range(5)])
            other.start()
        hand = phone.give(given)
        self.wait_for_moment(duration)
        phone.process.kill()
        phone.process.wait()
        hand.wait()
        if other:
            other.join()
        self.figures["in the midst"] += bool(self.files.temporaries())
        self.figures["overwritten"] += bool(other)
        after = self.files.state()
        is_new = self.is_new_beside(other, change, before, after) if other else \
            require(before, after, lambda: change.leads(before, after), "the kill")
        self.check_kept(before, after)
        self.figures["new" if is_new else "old"] += 1
        phone.restart()

    def wait_for_moment(self, duration):
        moment = self.chance.choice(["at any time", "while the new file is written", "when it takes its place"])
        if moment == "at any time":
            time.sleep(self.chance.uniform(0, 1.3 * duration))
            return
        wait_for(self.files.temporaries, 2 * duration)
        if moment == "while the new file is written":
            time.sleep(self.chance.uniform(0, duration / 2))
        else:
            wait_for(lambda: not self.files.temporaries(), duration)

    def is_new_beside(self, other, change, before, after):
        """Whether the change is there as well: made of what the other program had found, or of what it has written."""
        written = {**before, change.file: self.files.parse(other.content)}
        if after == written:
            return False
        if any(change.leads(each, after) for each in (before, written)):
            return True
        # What was cut short when the app read it counts as none, and is kept.
        damaged = self.files.read(f"{change.file}.damaged")
        if change.starts_empty and damaged == written[change.file] and not self.files.is_whole(change.file):
            self.figures["read half"] += 1
            return True
        raise Loss(f"a kill beside another writer has left neither's state: {differences(written, after)}")

    def check_kept(self, before, after):
        for name in APP_RULES, GLOBAL_RULES:
            kept = self.files.read(f"{name}.previous")
            if after[name] == MARKER and kept != before[name]:
                raise Loss(f"{name}.previous is not what was deleted")


def wait_for(holds, seconds):
    end = time.monotonic() + seconds
    while not holds() and time.monotonic() < end:
        time.sleep(0.001)


def make_known(phone, change):
    """Makes the change without disturbing it. Returns the seconds from the input to the files being new."""
    given = change.approach(phone)
    before = phone.files.state()
    stamp = phone.files.stamp(change)
    start = time.monotonic()
    hand = phone.give(given)
    wait_for(lambda: phone.files.stamp(change) != stamp, 20)
    duration = time.monotonic() - start
    hand.wait()
    phone.settle()
    after = phone.files.state()
    if not change.leads(before, after):
        raise TourError(f"{type(change).__name__} has not changed what it should: {differences(before, after)}")
    return duration


# Disks, folders and buses

def mount(*arguments):
    subprocess.run(["mount", *arguments], check=True, capture_output=True)


class Disk:
    """The folder of the files on a small file system of its own. What it held at an error is kept in its place."""

    def __init__(self, files):
        self.folder = files.path(PREFERENCES)

    def __enter__(self):
        self.folder.mkdir(parents=True)
        mount("-t", "tmpfs", "-o", "size=16m", "tmpfs", str(self.folder))
        return self

    def __exit__(self, error, *_):
        with tempfile.TemporaryDirectory() as kept:
            if error:
                shutil.copytree(self.folder, kept, dirs_exist_ok=True, symlinks=True)
            subprocess.run(["umount", "--lazy", str(self.folder)], check=True)
            shutil.copytree(kept, self.folder, dirs_exist_ok=True, symlinks=True)

    def fill(self):
        with open(self.folder / "filler", "wb", buffering=0) as file:
            for size in 1 << 16, 1:
                try:
                    while True:
                        file.write(bytes(size))
                except OSError as error:
                    if error.errno != errno.ENOSPC:
                        raise

    def free(self):
        (self.folder / "filler").unlink()

    def let_write(self, may_write):
        mount("-o", f"remount,{'rw' if may_write else 'ro'}", str(self.folder))


WRITING = [change for change in CHANGES if change.is_of_one_dictionary]


def refuse(phone, chance, forbid, allow):
    """Makes a change that cannot be written: the files stay as they are. Later it can be made."""
    change = chance.choice(WRITING)
    is_early = chance.randrange(2)
    if is_early:
        forbid()
        phone.restart()
    given = change.approach(phone)
    before = phone.files.state()
    if not is_early:
        forbid()
    phone.give(given).wait()
    phone.settle()
    phone.check_is_alive()
    require(before, phone.files.state(), lambda: False, type(change).__name__)
    if phone.files.temporaries():
        raise Loss(f"{type(change).__name__} has left {phone.files.temporaries()}")
    allow()
    phone.restart()
    make_known(phone, change)
    phone.restart()


def run_refused(program, files, chance, count, forbid, allow):
    with Disk(files) as disk:
        files.make(SMALL)
        with Phone(program, files) as phone:
            for _ in range(count):
                refuse(phone, chance, lambda: forbid(disk), lambda: allow(disk))
    return collections.Counter(old=count, new=count)


def run_without_bus(program, files, chance, count):
    """The bus is killed about when a change is made: the change is there, and the app ends well."""
    files.make(SMALL)
    with Phone(program, files) as phone:
        for _ in range(count):
            change = chance.choice(CHANGES)
            given = change.approach(phone)
            before = files.state()
            hand = phone.give(given)
            time.sleep(chance.uniform(0, 0.2))
            phone.bus.kill()
            phone.bus.wait()
            hand.wait()
            wait_for(lambda: change.leads(before, files.state()), 10)
            if not require(before, files.state(), lambda: change.leads(before, files.state()), type(change).__name__):
                raise Loss(f"{type(change).__name__} was not made while the bus died")
            if phone.terminate() != 0:
                raise Loss(f"the app ended with {phone.process.returncode} without a bus")
            phone.start_bus()
            phone.restart()
    return collections.Counter(new=count)


COLUMNS = ["changes", "old", "new", "in the midst", "overwritten", "read half", "seconds"]


def row(title, values):
    return f"kills: {title:<24}" + "".join(f"{value:>{max(len(name), 7) + 2}}" for name, value in zip(COLUMNS, values))


def main():
    program, directory, kills, seed = Path(sys.argv[1]), Path(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4])
    chance = random.Random(seed)
    shutil.rmtree(directory, ignore_errors=True)
    on_large = kills // LARGE_SHARE
    few = max(1, kills // FEW)

    def killed(size, count):
        def run(files):
            files.make(size)
            part = Kills(program, files, chance)
            part.run(count)
            return part.figures
        return run

    parts = {
        f"killed, {SMALL} rules": killed(SMALL, kills - on_large),
        f"killed, {LARGE} rules": killed(LARGE, on_large),
        "full disk": lambda files: run_refused(program, files, chance, few, Disk.fill, Disk.free),
        "read-only folder": lambda files: run_refused(program, files, chance, few, lambda disk: disk.let_write(False),
                                                      lambda disk: disk.let_write(True)),
        "dying bus": lambda files: run_without_bus(program, files, chance, few),
    }
    table = [row("", COLUMNS)]
    for number, (title, run) in enumerate(parts.items()):
        files = Device(directory / f"device-{number}")
        start = time.monotonic()
        try:
            figures = run(files)
        except (Loss, OSError, TourError, subprocess.SubprocessError) as error:
            sys.exit(f"kills: seed {seed}, {title}: {error}; the device is {files.directory}")
        table.append(row(title, [figures["old"] + figures["new"], *(figures[name] for name in COLUMNS[1:-1]),
                                 round(time.monotonic() - start)]))
        tell(f"{title}: nothing lost")
    shutil.rmtree(directory)
    print("\n".join(table))


main()

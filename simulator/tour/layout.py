"""Where things are on the app's screens, in points below the status bar and, where x is negative, from the right edge;
and how a step is checked."""
import re
from pathlib import Path

from driven_simulator import BAR, ROW, SEARCH
from stage import TourError

BACK = SETTINGS = 26, 20
ADD = EDIT = RIGHT = -28, 20
SEARCH_FIELD = 160, BAR + SEARCH / 2
CANCEL_SEARCH = -25, BAR + SEARCH / 2
DELETE_X = SWITCH_X = -35
DELETE_CONTROL_X = 18
TITLE_X = 100
RULE_LIST_HEADER = 82
HELP = Path(__file__).resolve().parents[2] / "docs/site/Vexmor/moreInfo/firewall.html"
SORT_Y = BAR + 62


def sort_by_name(phone):
    phone.tap(phone.width / 2 - 50, SORT_Y)


def sort_by_date(phone):
    phone.tap(phone.width / 2 + 50, SORT_Y)


class Table:
    """A table below the bar: the height of its header, its sections as lists of what their rows say, and the height of the
    band behind each."""

    def __init__(self, *sections, header=0, band=0):
        self.sections, self.header, self.band = sections, header, band

    def row(self, title):
        """The middle of the row that says this."""
        above = 0
        for bands, section in enumerate(self.sections):
            if title in section:
                return self.middle(above + section.index(title), bands)
            above += len(section)
        raise TourError(f"no row says {title!r} in {self.sections}")

    def row_behind(self, index):
        """The middle of a row of what follows the sections."""
        return self.middle(sum(map(len, self.sections)) + index, len(self.sections))

    def middle(self, index, bands):
        return BAR + self.header + self.band * bands + ROW * index + ROW / 2


def described(screen):
    """A screen of switches, of which the help lists every row, section by section."""
    chapter = re.search(rf'<h2 id="{screen}">.*?<h2', HELP.read_text(), re.DOTALL)[0]
    return Table(*(re.findall("<dt>(.*?)</dt>", section) for section in re.findall("(?s)<dl>.*?</dl>", chapter)), band=6)


MAIN = Table(["Global Allow", "Global Deny"], header=SEARCH, band=3)  # the apps follow
FOUND_APPS = Table(header=SEARCH)
GLOBAL_LIST = Table(["Add Hostname/IP", "Import | Delete All"], header=RULE_LIST_HEADER, band=3)  # the rules follow
APP_LIST = Table(["Add Hostname/IP"], header=RULE_LIST_HEADER, band=3)
FILES = Table()
FOUND_RULES = Table(header=SEARCH + 3)
ONE_APP = described("app")
ALL_APPS = described("settings")


def check(holds, otherwise):
    if not holds:
        raise TourError(otherwise)


def tell(text):
    print(f"tour: {text}", flush=True)

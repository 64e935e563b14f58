"""Where things are on the app's screens, in points below the status bar and, where x is negative, from the right edge;
and how a step is checked."""
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
SORT_Y = BAR + 62


def sort_by_name(phone):
    phone.tap(phone.width / 2 - 50, SORT_Y)


def sort_by_date(phone):
    phone.tap(phone.width / 2 + 50, SORT_Y)


def row(index, header=0, bands=0):
    """The middle of a table's row, below the bar, the table's header and the bands between sections."""
    return BAR + header + bands + ROW * index + ROW / 2


def check(holds, otherwise):
    if not holds:
        raise TourError(otherwise)


def tell(text):
    print(f"tour: {text}", flush=True)

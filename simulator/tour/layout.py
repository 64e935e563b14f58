"""Where things are on the app's screens, in points below the status bar, and how a step is checked."""
from driven_simulator import BAR, ROW, SEARCH, TourError

BACK = SETTINGS = 26, 20
ADD = EDIT = RIGHT = 292, 20
SEARCH_FIELD = 160, BAR + SEARCH / 2
CANCEL_SEARCH = 295, BAR + SEARCH / 2
DELETE_X = SWITCH_X = 285
DELETE_CONTROL_X = 18
TITLE_X = 100
RULE_LIST_HEADER = 82
SORT_BY_NAME, SORT_BY_DATE = (110, BAR + 62), (210, BAR + 62)


def row(index, header=0, bands=0):
    """The middle of a table's row, below the bar, the table's header and the bands between sections."""
    return BAR + header + bands + ROW * index + ROW / 2


def check(holds, otherwise):
    if not holds:
        raise TourError(otherwise)


def tell(text):
    print(f"tour: {text}", flush=True)

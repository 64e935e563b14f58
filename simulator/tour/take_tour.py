#!/usr/bin/env -S python3 -B
"""take_tour.py SIMULATOR DIRECTORY

Uses the app as a person would: adds an app, blocks it, gives it a rule, removes it; keeps the rules of an app and of all
apps; imports hosts; changes a setting, looks at the log, exports everything, reads the documentation; ends the app.
Leaves numbered pictures and the device in DIRECTORY. Succeeds only if after each step the files hold what was done."""
import sys
from pathlib import Path

from layout import tell
from stage import TourError
from tour import take_tour


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: take_tour.py SIMULATOR DIRECTORY")
    program, directory = Path(sys.argv[1]), Path(sys.argv[2])
    try:
        take_tour(program, directory)
    except (OSError, TourError) as error:
        sys.exit(f"tour: {error}")
    tell(f"every step left what it should; the pictures are in {directory}")


main()

#!/usr/bin/env python3
"""plistlib.py [--write] FOLDER: what Python's plistlib makes of the property lists in a folder.

Prints a line for each file, by name: what it says, or "-" when it is no dictionary. With --write, writes each that is
one again, as FILE.xml and FILE.binary."""
import calendar
import datetime
import struct
import sys

sys.path.pop(0)  # not this file
import plistlib  # noqa: E402
from pathlib import Path  # noqa: E402


def said(value):
    """The same words as in Said.h."""
    if isinstance(value, bool):
        return "yes" if value else "no"
    if isinstance(value, int):
        return f"i{value % 2**64}"
    if isinstance(value, float):
        return "nan" if value != value else "r" + struct.pack(">d", value).hex()
    if isinstance(value, str):
        return "s" + value.encode("utf-8", "surrogatepass").hex()
    if isinstance(value, bytes):
        return "x" + value.hex()
    if isinstance(value, datetime.datetime):
        return f"d{calendar.timegm(value.timetuple())}"
    if isinstance(value, list):
        return "[" + ",".join(map(said, value)) + "]"
    if isinstance(value, dict):
        return "{" + ",".join(sorted(said(key) + "=" + said(element) for key, element in value.items())) + "}"
    return "?"


def answer(path, is_writing):
    try:
        value = plistlib.loads(path.read_bytes())
        print(said(value) if isinstance(value, dict) else "-")
    except Exception:  # it throws whatever it comes upon, and reads values that contain themselves
        print("-")
        return
    if is_writing:
        for suffix, form in (".xml", plistlib.FMT_XML), (".binary", plistlib.FMT_BINARY):
            Path(str(path) + suffix).write_bytes(plistlib.dumps(value, fmt=form))


for file in sorted(Path(sys.argv[-1]).iterdir()):
    answer(file, sys.argv[1] == "--write")

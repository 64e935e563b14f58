#!/usr/bin/env python3
"""reader.py CHANGING FILE...: reads property lists over and over until the file CHANGING is gone, as an engine would
that never rests.

In every file the values of "left" and "right" belong together. Says "ready" when all files have been read once; at the
end says how often a file was read, how many different values were met, and prints a line for whatever was wrong."""
import os
import plistlib
import sys

reads = 0
values = set()
wrong = []


def look(name):
    try:
        with open(name, "rb") as file:
            pair = plistlib.load(file)
    except Exception as error:  # whatever it is, a reader must not meet it
        wrong.append(f"{name}: unreadable: {error!r}")
        return
    if pair.get("left") != pair.get("right"):
        wrong.append(f"{name}: {pair.get('left')} beside {pair.get('right')}")
    values.add(pair.get("left"))


while not reads or os.path.exists(sys.argv[1]):
    for file_name in sys.argv[2:]:
        look(file_name)
        reads += 1
    if reads == len(sys.argv) - 2:
        print("ready", flush=True)
print(reads, len(values))
print("\n".join(wrong[:20]))

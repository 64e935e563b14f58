#!/usr/bin/env -S /usr/bin/python3 -B
"""accessibility_tree.py SIMULATOR

Prints what a screen reader finds on every screen of the app, and in its alerts: each element in reading order with its
role, name, description, states and actions. Works on a copy of the demonstration device, under a display and on buses
of its own."""
import shutil
import sys
import tempfile
from pathlib import Path

from assisted_simulator import AssistedSimulator
from documentation import DocumentationServer
from stage import TourError

ROOT = Path(__file__).resolve().parents[2]

# States that go without saying.
USUAL = {"enabled", "sensitive", "showing", "visible", "focusable", "selectable", "transient", "selectable-text",
         "opaque"}


def show(phone, title):
    print(f"\n== {title}\n")
    for depth, element in phone.root.walk():
        states = element.states()
        notes = sorted(states - USUAL) + ([] if "enabled" in states else ["disabled"])
        text = element.text() if "editable" in states else None
        parts = [f"{'  ' * depth}{element}"]
        if element.description:
            parts.append(f"- {element.description!r}")
        if text:
            parts.append(f"= {text!r}")
        if notes:
            parts.append(f"[{', '.join(notes)}]")
        if element.actions():
            parts.append(f"({', '.join(element.actions())})")
        print(*parts)


def back(phone):
    phone.do("push button", "Back")


def app_screens(phone):
    show(phone, "Main screen")
    phone.get("text", "Search").put_text("o")
    phone.settle()
    show(phone, "Main screen, searching")
    phone.do("push button", "Cancel")
    phone.do("push button", "Add")
    show(phone, "Add App")
    phone.do("push button", "Done")
    phone.do("list item", "Harbour Mail")
    show(phone, "An app")
    phone.do("list item", "Always Deny Rules")
    show(phone, "The rules of an app")
    back(phone)
    back(phone)


def rule_screens(phone):
    phone.do("list item", "Global Allow")
    show(phone, "Global Allow, its help")
    phone.do("push button", "Dismiss")
    show(phone, "Global Allow")
    phone.do("list item", "Add Hostname/IP")
    show(phone, "Global Allow, adding a rule")
    phone.do("push button", "Cancel")
    phone.do("push button", "Edit")
    show(phone, "Global Allow, its help on edit mode")
    phone.do("push button", "OK")
    show(phone, "Global Allow, in edit mode")
    phone.do("push button", "Done")
    phone.get("text", "Search").put_text("1")
    phone.settle()
    show(phone, "Global Allow, searching")
    phone.do("push button", "Cancel")
    phone.do("list item", "Import | Delete All")
    show(phone, "Global Allow, importing or deleting")
    phone.do("push button", "Import")
    show(phone, "Import")
    back(phone)
    back(phone)


def settings_screens(phone):
    phone.do("push button", "Settings")
    show(phone, "Settings")
    phone.do("list item", "Delete All Rules and Settings")
    show(phone, "Settings, asking before deleting everything")
    phone.do("push button", "Cancel")
    phone.do("list item", "Log")
    show(phone, "Log")
    back(phone)
    phone.do("list item", "Import/Export Settings")
    phone.do("push button", "Export")
    show(phone, "Import/Export")
    phone.do(*next((element.role, element.name) for element in phone.screen() if element.role == "list item"))
    show(phone, "Import/Export, asking before importing")
    phone.do("push button", "Cancel")
    back(phone)
    phone.do("list item", "Documentation")
    phone.get("link", "Troubleshooting and FAQ")
    show(phone, "Documentation")


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: accessibility_tree.py SIMULATOR")
    with tempfile.TemporaryDirectory(prefix="vexmor-accessibility-") as scratch, DocumentationServer() as documentation:
        device = Path(scratch) / "device"
        shutil.copytree(ROOT / "resources/demo", device)
        arguments = ["--network", "wifi", "--documentation-host", documentation.host]
        try:
            with AssistedSimulator(sys.argv[1], device, scratch, arguments) as phone:
                phone.settle()
                for part in (app_screens, rule_screens, settings_screens):
                    part(phone)
        except (OSError, TourError) as error:
            sys.exit(f"accessibility-tree: {error}")


main()

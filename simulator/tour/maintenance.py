"""Importing hosts, the settings, the log, the export, the documentation."""
import os

from driven_simulator import APP_RULES, BAR, EXPORTS, GLOBAL_RULES, GUI_SETTINGS, LISTS
from layout import ALL_APPS, BACK, FILES, GLOBAL_LIST, MAIN, SETTINGS, SWITCH_X, TITLE_X, check, tell


def import_hosts(phone):
    before = phone.plist(GLOBAL_RULES)
    lists = [file.read_text().split("\n") for file in (phone.device / LISTS).iterdir()]

    phone.tap(TITLE_X, MAIN.row("Global Deny"))
    phone.picture("global-deny")
    phone.tap(TITLE_X, GLOBAL_LIST.row("Import | Delete All"))
    phone.tap_near_middle(0, 71)  # "Import"
    phone.tap(TITLE_X, FILES.row_behind(0))
    phone.picture("import")
    phone.tap_near_middle(57, 47)  # "YES"
    phone.tap(*BACK)
    phone.picture("imported")

    after = phone.plist(GLOBAL_RULES)
    known = len(before["globalDeny"])
    check(after["globalDeny"][:known] == before["globalDeny"], "the rules that were there should be as they were")
    imported = [rule["rule"] for rule in after["globalDeny"][known:]]
    check(imported in lists, f"the imported hosts should be one of {lists}, not {imported}")
    check({**after, "globalDeny": 0} == {**before, "globalDeny": 0}, "only the denied hosts should have changed")
    tell(f"{len(imported)} denied hosts imported")
    phone.tap(*BACK)


def settings_and_export(phone):
    phone.tap(*SETTINGS)
    phone.tap(SWITCH_X, ALL_APPS.row("Block If NOT On WiFi"))
    phone.picture("settings")
    check(phone.plist(GLOBAL_RULES)["blockNonWiFi"] is True, "the switch should be in the global rules file")
    check(phone.printed() == ["posted com.urmeld.vxm.reloadBoth"], f"one post should be in {phone.printed()}")
    tell("blocking when not on Wi-Fi is on, and the engine was told")
    phone.tap(TITLE_X, ALL_APPS.row("Log"))
    phone.picture("log")
    phone.tap(*BACK)

    phone.tap(TITLE_X, ALL_APPS.row("Import/Export Settings"))
    phone.tap(phone.width / 2, BAR + 112)  # "Export"
    phone.picture("export")
    exported = os.listdir(phone.device / EXPORTS)
    check(len(exported) == 1, f"one export should be among {exported}")
    files = {"appRules": APP_RULES, "globalRules": GLOBAL_RULES, "settings": GUI_SETTINGS}
    check(phone.plist(f"{EXPORTS}/{exported[0]}") == {key: phone.plist(file) for key, file in files.items()},
          "the export should hold the three files")
    tell(f"{exported[0]} holds everything")
    phone.tap(*BACK)


def read_documentation(phone):
    phone.tap(TITLE_X, ALL_APPS.row("Documentation"))
    phone.settle(quiet=2, at_most=20)  # the web engine starts and the page loads
    phone.picture("documentation")
    phone.tap(*BACK)
    phone.tap(*BACK)

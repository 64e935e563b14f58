"""An app on its way under the firewall and out again."""
from driven_simulator import APP_RULES, SEARCH
from layout import (ADD, APP_LIST, BACK, CANCEL_SEARCH, DELETE_X, FOUND_APPS, ONE_APP, SEARCH_FIELD, SWITCH_X, TITLE_X,
                    Table, check, tell)

# The demonstration device's apps without rules, as the chooser sorts them.
CHOOSER = Table(["GameCenterDaemon", "Larder", "Nightjar Radio", "Paper Crane", "Parley", "Penny Ledger", "Shutterleaf",
                 "Überland"], header=SEARCH)
PARLEY = "org.example.Parley"


def add_and_block_an_app(phone):
    before = phone.plist(APP_RULES)

    def check_record(**expected):
        rules = phone.plist(APP_RULES)
        check(rules.pop(PARLEY, {}) == expected, f"{PARLEY} should have {expected} in {phone.plist(APP_RULES)}")
        check(rules == before, f"{PARLEY} alone should have changed in {rules}")
        tell(f"{PARLEY}: {expected or 'no record'}")

    fresh = {"allow": [], "deny": [], "allowEverything": ""}
    check_record()
    phone.picture("main")
    phone.tap(*ADD)
    phone.picture("chooser")
    phone.tap(TITLE_X, CHOOSER.row("Parley"))
    phone.picture("app-added")
    check_record(**fresh)

    phone.tap(*SEARCH_FIELD)
    phone.type("parl")
    phone.picture("search")
    phone.tap(TITLE_X, FOUND_APPS.row_behind(0))
    check_record(**fresh, stillUseRules=False)
    phone.tap(SWITCH_X, ONE_APP.row("Deny All Connections"))
    phone.picture("all-connections-denied")
    check_record(**{**fresh, "allowEverything": "2"}, stillUseRules=False)

    phone.tap(TITLE_X, ONE_APP.row("Always Allow Rules"))
    phone.tap(TITLE_X, APP_LIST.row("Add Hostname/IP"))
    phone.type("*.Friends.example")
    phone.picture("new-rule")
    phone.key("Return")
    phone.picture("rule-added")
    added = phone.plist(APP_RULES)[PARLEY]["allow"]
    check([rule["rule"] for rule in added] == ["*.friends.example"], f"the rule should be in {added}")
    phone.tap(*BACK)
    phone.tap(*BACK)

    phone.swipe_left(FOUND_APPS.row_behind(0))
    phone.picture("app-swiped")
    phone.tap(DELETE_X, FOUND_APPS.row_behind(0))
    check_record()
    phone.tap(*CANCEL_SEARCH)

"""An app on its way under the firewall and out again."""
from driven_simulator import APP_RULES, SEARCH
from layout import (ADD, BACK, CANCEL_SEARCH, DELETE_X, RULE_LIST_HEADER, SEARCH_FIELD, SWITCH_X, TITLE_X, check, row,
                    tell)

# The demonstration device's apps without rules, as the chooser sorts them.
OFFERED = ["GameCenterDaemon", "Larder", "Nightjar Radio", "Paper Crane", "Parley", "Penny Ledger", "Shutterleaf",
           "Überland"]
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
    phone.tap(TITLE_X, row(OFFERED.index("Parley"), SEARCH))
    phone.picture("app-added")
    check_record(**fresh)

    phone.tap(*SEARCH_FIELD)
    phone.type("parl")
    phone.picture("search")
    phone.tap(TITLE_X, row(0, SEARCH))
    check_record(**fresh, stillUseRules=False)
    phone.tap(SWITCH_X, row(1))
    phone.picture("all-connections-denied")
    check_record(**{**fresh, "allowEverything": "2"}, stillUseRules=False)

    phone.tap(TITLE_X, row(4, bands=12))
    phone.tap(TITLE_X, row(0, RULE_LIST_HEADER))
    phone.type("*.Friends.example")
    phone.picture("new-rule")
    phone.key("Return")
    phone.picture("rule-added")
    added = phone.plist(APP_RULES)[PARLEY]["allow"]
    check([rule["rule"] for rule in added] == ["*.friends.example"], f"the rule should be in {added}")
    phone.tap(*BACK)
    phone.tap(*BACK)

    phone.swipe_left(row(0, SEARCH))
    phone.picture("app-swiped")
    phone.tap(DELETE_X, row(0, SEARCH))
    check_record()
    phone.tap(*CANCEL_SEARCH)

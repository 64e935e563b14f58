"""The rule lists of one app and of all apps: adding, editing, deleting, sorting, searching."""
from driven_simulator import APP_RULES, GLOBAL_RULES, GUI_SETTINGS, SEARCH
from layout import (BACK, DELETE_X, EDIT, RULE_LIST_HEADER, SWITCH_X, TITLE_X, check, row, sort_by_date, sort_by_name,
                    tell)

HARBOUR_MAIL = "org.example.HarbourMail"


class RuleList:
    """A rule list on the screen. `rules` reads it from its file; `rows_above` counts the rows above the rules."""

    def __init__(self, phone, rules, rows_above):
        self.phone, self.rules, self.rows_above = phone, rules, rows_above

    def rule_row(self, index):
        return row(self.rows_above + index, RULE_LIST_HEADER, bands=3)

    def hosts(self):
        return [entry["rule"] for entry in self.rules()]

    def add(self, host):
        before = self.hosts()
        self.phone.tap(TITLE_X, row(0, RULE_LIST_HEADER))
        self.phone.type(host)
        self.phone.key("Return")
        check(sorted(self.hosts()) == sorted([*before, host.lower()]), f"{host} should be in {self.hosts()}")

    def edit_first(self, old, new, is_first_time=False):
        """Edits the first rule in place. The first time ever, edit mode is explained."""
        others = sorted(host for host in self.hosts() if host != old)
        self.phone.tap(*EDIT)
        if is_first_time:
            self.phone.picture("edit-mode")
            check(self.phone.plist(GUI_SETTINGS)["didShowEditAlert"] is True, "edit mode should be explained once")
            self.phone.key("Return")
        self.phone.tap(TITLE_X, self.rule_row(0))
        self.phone.replace_text(new)
        self.phone.picture("editing")
        self.phone.key("Return")
        first, *rest = self.hosts()
        check(first == new and sorted(rest) == others, f"{new} should stand for {old} in {self.hosts()}")
        self.phone.tap(*EDIT)

    def delete_first(self):
        before = self.hosts()
        self.phone.swipe_left(self.rule_row(0))
        self.phone.tap(DELETE_X, self.rule_row(0))
        check(self.hosts() == before[1:], f"{before[0]} should be gone from {self.hosts()}")


def rules_of_all_apps(phone):
    phone.tap(TITLE_X, row(0, SEARCH))
    phone.picture("help")
    phone.key("Tab", "Return")  # "Hide Alert"
    check(phone.plist(GUI_SETTINGS)["showAllowHelp"] is False, "the help should not come again")

    rules = RuleList(phone, lambda: phone.plist(GLOBAL_RULES)["globalAllow"], rows_above=2)
    rules.add("*.Zzz.example")
    sort_by_date(phone)
    phone.picture("newest-first")
    rules.edit_first("*.zzz.example", "zzy.example", is_first_time=True)
    sort_by_name(phone)
    phone.tap(160, row(0) - 5)
    phone.type("ZZY")
    phone.picture("rule-search")
    phone.swipe_left(row(0) + 41)
    phone.tap(DELETE_X, row(0) + 41)
    check("zzy.example" not in rules.hosts(), f"zzy.example should be gone from {rules.hosts()}")
    phone.key("Escape")
    tell(f"all apps: a rule added, edited, found and deleted; {len(rules.hosts())} allowed hosts as before")
    phone.tap(*BACK)


def rules_of_an_app(phone):
    def record():
        return phone.plist(APP_RULES)[HARBOUR_MAIL]

    phone.tap(TITLE_X, row(2, SEARCH, bands=3))
    before = record()
    phone.picture("app")
    phone.tap(SWITCH_X, row(0))
    check(record() == {**before, "allowEverything": "1"}, f"all connections should be allowed in {record()}")
    phone.picture("all-connections-allowed")
    phone.tap(SWITCH_X, row(0))
    check(record()["allowEverything"] == "", f"the app's rules alone should count in {record()}")

    phone.tap(TITLE_X, row(5, bands=12))
    rules = RuleList(phone, lambda: record()["deny"], rows_above=1)
    rules.add("*.Aaa.example")
    phone.picture("app-rules")
    rules.edit_first("*.aaa.example", "aab.example")
    rules.delete_first()
    check({**record(), "deny": 0} == {**before, "deny": 0, "allowEverything": ""}, "the rest should be as it was")
    tell(f"{HARBOUR_MAIL}: allow-all and back; a rule added, edited, deleted; {len(rules.hosts())} denied hosts as before")
    phone.tap(*BACK)
    phone.tap(*BACK)

"""The rule lists of one app and of all apps: adding, editing, deleting, sorting, searching."""
from driven_simulator import APP_RULES, GLOBAL_RULES, GUI_SETTINGS
from layout import (APP_LIST, BACK, DELETE_X, EDIT, FOUND_RULES, GLOBAL_LIST, MAIN, ONE_APP, SEARCH_FIELD, SWITCH_X,
                    TITLE_X, check, sort_by_date, sort_by_name, tell)

HARBOUR_MAIL = "org.example.HarbourMail"


class RuleList:
    """A rule list on the screen. `rules` reads it from its file."""

    def __init__(self, phone, table, rules):
        self.phone, self.table, self.rules = phone, table, rules

    def hosts(self):
        return [entry["rule"] for entry in self.rules()]

    def add(self, host):
        before = self.hosts()
        self.phone.tap(TITLE_X, self.table.row("Add Hostname/IP"))
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
        self.phone.tap(TITLE_X, self.table.row_behind(0))
        self.phone.replace_text(new)
        self.phone.picture("editing")
        self.phone.key("Return")
        first, *rest = self.hosts()
        check(first == new and sorted(rest) == others, f"{new} should stand for {old} in {self.hosts()}")
        self.phone.tap(*EDIT)

    def delete_first(self):
        before = self.hosts()
        self.phone.swipe_left(self.table.row_behind(0))
        self.phone.tap(DELETE_X, self.table.row_behind(0))
        check(self.hosts() == before[1:], f"{before[0]} should be gone from {self.hosts()}")


def rules_of_all_apps(phone):
    phone.tap(TITLE_X, MAIN.row("Global Allow"))
    phone.picture("help")
    phone.key("Tab", "Return")  # "Hide Alert"
    check(phone.plist(GUI_SETTINGS)["showAllowHelp"] is False, "the help should not come again")

    rules = RuleList(phone, GLOBAL_LIST, lambda: phone.plist(GLOBAL_RULES)["globalAllow"])
    rules.add("*.Zzz.example")
    sort_by_date(phone)
    phone.picture("newest-first")
    rules.edit_first("*.zzz.example", "zzy.example", is_first_time=True)
    sort_by_name(phone)
    phone.tap(*SEARCH_FIELD)
    phone.type("ZZY")
    phone.picture("rule-search")
    phone.swipe_left(FOUND_RULES.row_behind(0))
    phone.tap(DELETE_X, FOUND_RULES.row_behind(0))
    check("zzy.example" not in rules.hosts(), f"zzy.example should be gone from {rules.hosts()}")
    phone.key("Escape")
    tell(f"all apps: a rule added, edited, found and deleted; {len(rules.hosts())} allowed hosts as before")
    phone.tap(*BACK)


def rules_of_an_app(phone):
    def record():
        return phone.plist(APP_RULES)[HARBOUR_MAIL]

    phone.tap(TITLE_X, MAIN.row_behind(0))
    before = record()
    phone.picture("app")
    phone.tap(SWITCH_X, ONE_APP.row("Allow All Connections"))
    check(record() == {**before, "allowEverything": "1"}, f"all connections should be allowed in {record()}")
    phone.picture("all-connections-allowed")
    phone.tap(SWITCH_X, ONE_APP.row("Allow All Connections"))
    check(record()["allowEverything"] == "", f"the app's rules alone should count in {record()}")

    phone.tap(TITLE_X, ONE_APP.row("Always Deny Rules"))
    rules = RuleList(phone, APP_LIST, lambda: record()["deny"])
    rules.add("*.Aaa.example")
    phone.picture("app-rules")
    rules.edit_first("*.aaa.example", "aab.example")
    rules.delete_first()
    check({**record(), "deny": 0} == {**before, "deny": 0, "allowEverything": ""}, "the rest should be as it was")
    tell(f"{HARBOUR_MAIL}: allow-all and back; a rule added, edited, deleted; {len(rules.hosts())} denied hosts as before")
    phone.tap(*BACK)
    phone.tap(*BACK)

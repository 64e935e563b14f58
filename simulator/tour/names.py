"""Names in every script, and names that are too long, wherever the app shows a name."""
import datetime
import plistlib
import shutil

from driven_simulator import APP_RULES, EXPORTS, GLOBAL_RULES, GUI_SETTINGS, LISTS, DrivenSimulator
from layout import ALL_APPS, BACK, EDIT, FILES, GLOBAL_LIST, MAIN, SETTINGS, TITLE_X

NAMES = {
    "Arabic": "جدار الحماية للتطبيقات",
    "Hebrew": "חומת אש ליישומים",
    "Japanese": "ファイアウォールの設定",
    "Chinese": "防火墙应用程序设置",
    "Korean": "방화벽 설정 애플리케이션",
    "Thai": "ไฟร์วอลล์สำหรับแอปพลิเคชัน",
    "Emoji": "🔥🧱 Wall 👩‍🚒 of 🇪🇺 fire",
    "Long": " ".join(["An app with a name that goes on and on"] * 8)[:300],
}
DATE = datetime.datetime(2024, 1, 20, 10)


def make_device(directory):
    shutil.rmtree(directory, ignore_errors=True)
    for folder in EXPORTS, LISTS, "usr/share/applications":
        (directory / folder).mkdir(parents=True)
    records = {f"org.example.{key}": {"allow": [], "deny": [], "allowEverything": ""} for key in NAMES}
    # Hosts are written without spaces.
    rules = [{"rule": name.replace(" ", "-"), "date": DATE} for name in NAMES.values()]
    for file, dictionary in ((APP_RULES, {**records, "150": True}),
                             (GLOBAL_RULES, {"globalAllow": rules, "150": True}),
                             (GUI_SETTINGS, {"showAllowHelp": False, "didShowEditAlert": True})):
        (directory / file).write_bytes(plistlib.dumps(dictionary))
    for key, name in NAMES.items():
        (directory / f"usr/share/applications/org.example.{key}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName={name}\nExec=true\n")
        for folder in EXPORTS, LISTS:
            (directory / folder / name[:80]).write_text("host.example\n")


def look_at_names(program, directory, stage=None, arguments=()):
    """Leaves numbered pictures and the device in `directory`."""
    make_device(directory / "device")
    with DrivenSimulator(program, directory / "device", directory, arguments, stage) as phone:
        long = 1  # the longest name comes behind Emoji
        phone.picture("apps")
        phone.tap(TITLE_X, MAIN.row_behind(long))
        phone.picture("app")
        phone.tap(*BACK)

        phone.tap(TITLE_X, MAIN.row("Global Allow"))
        phone.picture("rules")
        phone.tap(*EDIT)
        phone.tap(TITLE_X, GLOBAL_LIST.row_behind(long))
        phone.picture("editing")
        phone.key("Return")
        phone.tap(*EDIT)
        phone.tap(TITLE_X, GLOBAL_LIST.row("Import | Delete All"))
        phone.tap_near_middle(0, 71)  # "Import"
        phone.picture("lists")
        phone.tap(TITLE_X, FILES.row_behind(0))
        phone.picture("list-question")
        phone.key("Escape")
        phone.tap(*BACK)
        phone.tap(*BACK)

        phone.tap(*SETTINGS)
        phone.tap(TITLE_X, ALL_APPS.row("Import/Export Settings"))
        phone.picture("exports")

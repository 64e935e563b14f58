"""The tour: the app used as a person would, from its start to its end."""
import shutil
from pathlib import Path

from apps import add_and_block_an_app
from documentation import DocumentationServer
from driven_simulator import DrivenSimulator
from layout import check, tell
from maintenance import import_hosts, read_documentation, settings_and_export
from rules import rules_of_all_apps, rules_of_an_app

DEMONSTRATION = Path(__file__).resolve().parents[2] / "resources/demo"
PARTS = (add_and_block_an_app, rules_of_all_apps, rules_of_an_app, import_hosts, settings_and_export,
         read_documentation)


def end(phone):
    check(phone.terminate() == 0, "the app did not end well")
    check(phone.printed() == ["posted com.urmeld.vxm.reloadBoth"] * 2, f"a last post should be in {phone.printed()}")
    tell("at its end the app told the engine to reread both files")


def take_tour(program, directory, stage=None, arguments=()):
    """Leaves numbered pictures and the device in `directory`. Raises TourError at the first step that does not leave in
    the files what it should."""
    shutil.rmtree(directory, ignore_errors=True)
    shutil.copytree(DEMONSTRATION, directory / "device")
    with DocumentationServer() as documentation:
        arguments = [*arguments, "--network", "wifi", "--documentation-host", documentation.host]
        with DrivenSimulator(program, directory / "device", directory, arguments, stage) as phone:
            for part in (*PARTS, end):
                part(phone)

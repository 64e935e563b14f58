"""connections.py PROGRAMS FILTERED PLAIN FOLDER

Seconds that a connection takes through the real firewall daemon, a name and a number a line: "filtered" with the rules
of the device FILTERED, "plain" with those of PLAIN, which has none. PROGRAMS holds vexmor-engine, and vexmor-bench, the
app of FILTERED; that device denies host0.denied.example. Each daemon has a network of its own, below FOLDER."""
import statistics
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "simulator/engine"))
from network import FilteredNetwork, NetworkError, becomes  # noqa: E402

ROUNDS = 21
CONNECTIONS = 50  # in each round, to as many hosts
PATIENCE = 120    # seconds, until the daemon has taken up a million rules
SETTLING = 10     # seconds, as it looks at them every four, and all connections may wait then


def connect(network, programs, domain, count):
    return network.run(programs / "vexmor-bench", "--worker", "connect", domain, 80, count)


def measure(network, programs):
    status, said = connect(network, programs, "example.net", CONNECTIONS)
    if status:
        sys.exit(f"connections: {said}")
    return float(said.split()[1])


def main():
    programs, *devices, folder = (Path(argument) for argument in sys.argv[1:])
    filtered, plain = (FilteredNetwork(programs / "vexmor-engine", device, folder / f"network of {device.name}")
                       for device in devices)
    seconds = {"filtered": [], "plain": []}
    with filtered, plain:
        for network in filtered, plain:
            network.start_service()
        if not becomes(lambda: "denied" in connect(filtered, programs, "denied.example", 1)[1], PATIENCE):
            sys.exit("connections: the rules do not take effect")
        time.sleep(SETTLING)
        for _ in range(ROUNDS):
            seconds["filtered"].append(measure(filtered, programs))
            seconds["plain"].append(measure(plain, programs))
    for name, measured in seconds.items():
        print(name, statistics.median(measured))


try:
    main()
except NetworkError as problem:
    sys.exit(f"connections: {problem}")

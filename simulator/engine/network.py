"""A network of its own that the real firewall daemon filters, with the engine's service in it, and another network
with servers, to which a cable leads. The machine's network is not touched; all ends with it. Wants root, or a kernel
that allows user namespaces."""
import os
import signal
import subprocess
import tempfile
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
SYSTEM = f"{os.environ.get('PATH', '/usr/bin:/bin')}:/usr/sbin:/sbin"
NAMESPACES = "--net", "--mount", "--pid"
# The daemon that scripts/daemon.sh unpacks, or else the machine's own.
DAEMONS = HERE.parents[1] / "build/daemon/usr/bin/opensnitchd", Path("/usr/bin/opensnitchd")

# Answers whoever connects, at every address of both kinds, with the host that was asked for.
SERVER = """
import http.server, socket, sys
class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        text = f"You have reached {self.headers['Host']}.\\n".encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)
    def log_message(self, *_):
        pass
class Server(http.server.ThreadingHTTPServer):
    address_family = socket.AF_INET6
Server(("::", int(sys.argv[1])), Handler).serve_forever()
"""


class NetworkError(Exception):
    """There is no such network here, and why."""


def unsharing(*command):
    return ["unshare", *NAMESPACES, "--fork", "--kill-child", "--mount-proc",
            *([] if os.geteuid() == 0 else ["--map-root-user"]), *command]


def obstacle():
    """Why there can be no such network on this machine; empty when there can."""
    if not any(daemon.exists() for daemon in DAEMONS):
        return "there is no opensnitchd here"
    done = subprocess.run(unsharing(HERE / "try_network.sh"), env={**os.environ, "PATH": SYSTEM},
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    return "" if done.returncode == 0 else f"this system has no network of one's own with queues: {done.stdout.strip()}"


class FilteredNetwork:
    """Every host name leads to a server at port 80; one that ends in six.example by IPv6. `engine` is vexmor-engine; its
    device, and its rules and lists below `folder`."""

    def __init__(self, engine, device, folder):
        self.engine, self.device, self.folder = (Path(path).absolute() for path in (engine, device, folder))
        self.rules, self.state = self.folder / "rules", self.folder / "state"
        self.interface = f"unix://{self.folder}/interface"
        self.service = None

    def __enter__(self):
        if problem := obstacle():
            raise NetworkError(problem)
        self.rules.mkdir(parents=True)
        self.scratch = Path(tempfile.mkdtemp(dir=self.folder))
        self.environment = {**os.environ, "PATH": SYSTEM}
        self.first = subprocess.Popen(unsharing(HERE / "make_network.sh", self.scratch, self.interface),
                                      env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        try:
            said = self.first.stdout.readline()
            if said != "ready\n":
                raise NetworkError(f"there is no namespace: {said}{self.first.stdout.read()}")
            pid = self.first.pid
            self.init = Path(f"/proc/{pid}/task/{pid}/children").read_text().split()[0]
            self.start(HERE / "run_in_world.sh", self.scratch, "python3", "-c", SERVER, "80")
            self.start_daemon()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if self.service:
            self.stop_service()
        self.first.kill()
        self.first.wait()

    def inside(self, *command):
        rights = [] if os.geteuid() == 0 else ["--user", "--preserve-credentials"]
        return ["nsenter", "--target", self.init, "--root", *NAMESPACES, *rights, *map(str, command)]

    def start(self, *command, **options):
        return subprocess.Popen(self.inside(*command), env=self.environment, **options)

    def run(self, *command):
        """The program's exit status and what it said."""
        done = subprocess.run(self.inside(*command), env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, check=False)
        return done.returncode, done.stdout

    def start_daemon(self):
        daemon = next(daemon for daemon in DAEMONS if daemon.exists())
        status, said = self.run(HERE / "start_daemon.sh", self.scratch, daemon, self.rules)
        if status:
            raise NetworkError(f"the daemon does not run: {said}{(self.scratch / 'output').read_text()}")

    def stop_daemon(self, number=signal.SIGTERM):
        self.run(HERE / "stop_daemon.sh", self.scratch, int(number))

    def start_service(self, **options):
        self.service = self.start("sh", "-c", 'echo $$ >"$0" && exec "$@"', self.scratch / "service", self.engine,
                                  "--device", self.device, "--rules", self.rules, "--state", self.state,
                                  "--interface", self.interface, **options)

    def stop_service(self, number=signal.SIGTERM):
        """Returns its exit status. The signal goes to the service itself, not to nsenter, its parent."""
        self.run("sh", "-c", 'kill -"$1" "$(cat "$0")"', self.scratch / "service", int(number))
        status = self.service.wait()
        self.service = None
        return status


def becomes(holds, seconds=15):
    """Whether it holds before the time is over."""
    end = time.monotonic() + seconds
    while not holds():
        if time.monotonic() > end:
            return False
        time.sleep(0.05)
    return True

#!/usr/bin/env -S python3 -B
"""documentation.py COMMAND...

Serves the documentation pages on the loopback while a command runs that is told where: it gets the arguments
--documentation-host 127.0.0.1:PORT. Ends with the command's exit status."""
import functools
import http.server
import subprocess
import sys
import threading
from pathlib import Path

PAGES = Path(__file__).resolve().parents[2] / "docs/site"


class Handler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


class DocumentationServer:
    """Serves from __enter__ to __exit__; `host` is its address with the port."""

    def __enter__(self):
        handler = functools.partial(Handler, directory=PAGES)
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self.host = f"127.0.0.1:{self.server.server_port}"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.server.shutdown()


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit("usage: documentation.py COMMAND...")
    with DocumentationServer() as documentation:
        try:
            sys.exit(subprocess.call([*sys.argv[1:], "--documentation-host", documentation.host]))
        except KeyboardInterrupt:
            sys.exit(130)

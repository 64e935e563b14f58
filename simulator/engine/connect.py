#!/usr/bin/env python3
"""connect.py HOST PORT: makes a TCP connection, and exits with 0 when it was let through within three seconds."""
import socket
import sys

try:
    socket.create_connection((sys.argv[1], int(sys.argv[2])), timeout=3).close()
except OSError as problem:
    sys.exit(str(problem))

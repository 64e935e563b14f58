#!/usr/bin/env python3
"""listen.py PORT: accepts TCP connections, and closes them. Says "ready" before the first one."""
import socket
import sys

server = socket.create_server(("", int(sys.argv[1])), backlog=64)
print("ready", flush=True)
while True:
    server.accept()[0].close()

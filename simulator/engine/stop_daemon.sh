#!/bin/sh
# stop_daemon.sh FOLDER SIGNAL
# Sends the daemon a signal and waits until it is gone.
kill -"$2" "$(cat "$1/daemon")" || exit 0
while kill -0 "$(cat "$1/daemon")"; do sleep 0.02; done 2>/dev/null
exit 0

#!/bin/sh
# run_in_world.sh FOLDER COMMAND...
# Becomes a command in the network where the servers are, from the network that FOLDER is of.
folder=$1
shift
exec nsenter --target "$(cat "$folder/world")" --net "$@"

#!/bin/sh
# start_daemon.sh FOLDER DAEMON RULES
# Starts the firewall daemon in the network that FOLDER is of. Ends when it filters; fails when it has ended.
folder=$1
PATH=$folder/bin:$PATH XTABLES_LOCKFILE=$folder/xtables.lock
export PATH XTABLES_LOCKFILE
rm -f "$folder/log"
"$2" -rules-path "$3" -log-file "$folder/log" >"$folder/output" 2>&1 &
echo $! >"$folder/daemon"
while kill -0 $!; do
    grep -q 'Running on netfilter queue' "$folder/log" && iptables -t mangle -S OUTPUT | grep -q NFQUEUE && exit
    sleep 0.05
done 2>/dev/null
exit 1

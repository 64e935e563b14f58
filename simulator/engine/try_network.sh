#!/bin/sh
# try_network.sh
# Succeeds in a network of its own where make_network.sh and the daemon would; otherwise says why not.
for tool in ip iptables-legacy ip6tables-legacy dnsmasq python3; do
    command -v $tool >/dev/null || { echo "there is no $tool here"; exit 1; }
done
export XTABLES_LOCKFILE=/dev/null
iptables-legacy -t mangle -A OUTPUT -m conntrack --ctstate NEW -j NFQUEUE

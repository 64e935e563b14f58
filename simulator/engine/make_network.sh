#!/bin/sh
# make_network.sh FOLDER INTERFACE [ACTION]
# Makes a network for a firewall daemon to filter, as the first process of namespaces of its own (network, mounts,
# processes): /etc with the daemon's configuration in it, addresses, and a DNS server that knows every name. The daemon
# looks for its interface at the address, and does with a connection that no rule matches what the action says (allow).
# Says "ready", and waits for the processes that nobody else waits for.
set -eu
folder=$1
mkdir "$folder/machine-etc" "$folder/bin"
mount --bind /etc "$folder/machine-etc"
mount -t tmpfs -o mode=755 tmpfs /etc
for entry in "$folder"/machine-etc/*; do
    case ${entry##*/} in resolv.conf | opensnitchd) ;; *) ln -s "$entry" /etc ;; esac
done
mkdir /etc/opensnitchd
cat >/etc/opensnitchd/default-config.json <<EOF
{"Server": {"Address": "$2", "LogFile": ""}, "DefaultAction": "${3:-allow}", "DefaultDuration": "once",
 "InterceptUnknown": false, "ProcMonitorMethod": "proc", "LogLevel": 1, "Firewall": "iptables",
 "Stats": {"MaxEvents": 150, "MaxStats": 25}}
EOF
printf 'nameserver 127.0.0.1\noptions timeout:1 attempts:1\n' >/etc/resolv.conf
ip link set lo up
ip address add 192.0.2.1/24 dev lo
ip address add 2001:db8::1/128 dev lo 2>/dev/null || true
ln -s "$(command -v iptables-legacy)" "$folder/bin/iptables"
ln -s "$(command -v ip6tables-legacy)" "$folder/bin/ip6tables"
# Names that end in six.example have an IPv6 address, all others an IPv4 one.
dnsmasq --no-daemon --conf-file=/dev/null --no-resolv --no-hosts --pid-file= --listen-address=127.0.0.1 \
    --bind-interfaces '--address=/six.example/2001:db8::1' '--address=/#/192.0.2.1' >"$folder/names" 2>&1 &
until ss -lun | grep -q 127.0.0.1:53; do
    kill -0 $! || { cat "$folder/names"; exit 1; }
    sleep 0.02
done
echo ready
sleep infinity &
wait

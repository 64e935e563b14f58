#!/bin/sh
# make_network.sh FOLDER INTERFACE [ACTION]
# Makes a network for a firewall daemon to filter, as the first process of namespaces of its own (network, mounts,
# processes): /etc with the daemon's configuration in it, and a cable to a second network, the world, where servers are.
# There a DNS server knows every name. The daemon looks for its interface at the address, and does with a connection that
# no rule matches what the action says (allow). Says "ready", and waits for the processes that nobody else waits for.
# run_in_world.sh runs a program in the world.
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
printf 'nameserver 203.0.113.1\noptions timeout:1 attempts:1\n' >/etc/resolv.conf

unshare --net sleep infinity &
world=$!
echo $world >"$folder/world"
in_world() { "$(dirname "$0")/run_in_world.sh" "$folder" "$@"; }
until [ "$(readlink /proc/$world/ns/net)" != "$(readlink /proc/self/ns/net)" ]; do sleep 0.01; done
ip link set lo up
in_world ip link set lo up
ip link add eth0 type veth peer name eth0 netns $world
ip address add 203.0.113.2/24 dev eth0
in_world ip address add 203.0.113.1/24 dev eth0
ip link set eth0 up
in_world ip link set eth0 up
# All of 192.0.2.0/24 is the world's, and of IPv6, where the kernel has it, one address.
ip route add 192.0.2.0/24 via 203.0.113.1
in_world ip route add local 192.0.2.0/24 dev lo
if [ -e /proc/net/if_inet6 ]; then
    ip address add 2001:db8:1::2/64 dev eth0 nodad
    in_world ip address add 2001:db8:1::1/64 dev eth0 nodad
    in_world ip address add 2001:db8::1/128 dev lo
    ip route add 2001:db8::1 via 2001:db8:1::1
fi
ln -s "$(command -v iptables-legacy)" "$folder/bin/iptables"
ln -s "$(command -v ip6tables-legacy)" "$folder/bin/ip6tables"
# Names that end in six.example have an IPv6 address, all others an IPv4 one.
in_world dnsmasq --no-daemon --conf-file=/dev/null --no-resolv --no-hosts --pid-file= --listen-address=203.0.113.1 \
    --bind-interfaces '--address=/six.example/2001:db8::1' '--address=/#/192.0.2.1' >"$folder/names" 2>&1 &
until in_world ss -lun | grep -q 203.0.113.1:53; do
    kill -0 $! || { cat "$folder/names"; exit 1; }
    sleep 0.02
done
echo ready
sleep infinity &
wait

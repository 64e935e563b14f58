# shellcheck shell=bash
# The firewall daemon that the engine drives, for its tests: Debian's package, unpacked into a folder of the build. To
# install it would start it, and a machine on which somebody runs ./test would be filtered from then on.

# ensure_daemon: makes build/daemon, unless it is there. Downloads 4 MB from the machine's own sources.
ensure_daemon() {
    local root=$PWD/build/daemon wanted log package as_root=()
    [ ! -x "$root/usr/bin/opensnitchd" ] || return 0
    wanted=$(packages daemon) log=$(mktemp)
    say "unpacking $wanted into build/daemon"
    rm -rf "$root" "$root.new"
    mkdir -p "$root.new"
    # shellcheck disable=SC2086
    if ! (cd "$root.new" && apt-get -qq -o APT::Sandbox::User=root download $wanted) >"$log" 2>&1; then
        # Where everything else is installed already, apt may not know yet what there is.
        [ "$(id -u)" -eq 0 ] || as_root=(sudo)
        apt "$log" update 2>/dev/null || true
        (cd "$root.new" && apt-get -qq -o APT::Sandbox::User=root download $wanted) >"$log" 2>&1 ||
            { cat "$log" >&2; rm -f "$log"; fail "cannot get $wanted"; }
    fi
    for package in "$root.new"/*.deb; do
        dpkg-deb --extract "$package" "$root.new" || fail "cannot unpack $package"
    done
    rm -f "$log" "$root.new"/*.deb
    mv "$root.new" "$root"
}

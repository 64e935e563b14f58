# shellcheck shell=bash
# Debian's packages of another architecture, unpacked into a folder of the build: what a cross compiler links against and
# an emulator loads. They are neither installed nor configured, so the machine's own packages stay as they are.

# sysroot ARCHITECTURE: the folder.
sysroot() { printf '%s/build/sysroot-%s' "$PWD" "$1"; }

# ensure_sysroot ARCHITECTURE: makes the folder from the -dev packages of the groups build and test and all that they
# depend on, unless it was made from the same list before. Downloads 206 MB from the machine's own sources, takes a minute
# and 0.8 GB on the disk.
ensure_sysroot() {
    local root wanted; root=$(sysroot "$1")
    wanted=$(packages build test | grep -- '-dev$')
    [ "$(cat "$root/made-from" 2>/dev/null)" != "$root"$'\n'"$wanted" ] || return 0
    say "making build/sysroot-$1 from Debian's packages for $1"
    rm -rf "$root" || fail "cannot replace $root"
    # apt gets a state of its own: the machine's does not know this architecture.
    local state=$root/apt database=$root/var/lib/dpkg options log; log=$(mktemp)
    # shellcheck disable=SC2034  # read by apt()
    local as_root=()
    options=(-o APT::Architecture="$1" -o APT::Architectures::="$1" -o APT::Sandbox::User=root
        -o Dir::State="$state" -o Dir::State::status="$database/status" -o Dir::Cache="$state")
    mkdir -p "$state"/{lists,archives}/partial "$database/info" && : >"$database/status"
    apt "$log" "${options[@]}" update 2>/dev/null || true  # as for the machine's own packages
    # shellcheck disable=SC2086
    if ! apt "$log" "${options[@]}" install --no-install-recommends --download-only $wanted; then
        local reason; reason=$(grep -m1 '^E:' "$log" || tail -n1 "$log"); rm -f "$log"
        fail "cannot get Debian's packages for $1 (${reason:-apt-get failed})"
    fi
    rm -f "$log"
    printf '%s\n' "$(dpkg --print-architecture)" "$1" >"$database/arch"
    echo 1 >"$database/info/format"  # of Multi-Arch packages, file names include the architecture
    local package
    for package in "$state"/archives/*.deb; do
        unpack "$package" "$root" || fail "cannot unpack $package"
    done
    rm -rf "$state"
    printf '%s\n%s\n' "$root" "$wanted" >"$root/made-from"
}

# unpack PACKAGE ROOT: unpacks a package there and enters it into the dpkg database there, in which dpkg-shlibdeps looks
# up libraries. It looks for the path at which it found them, so the database lists files with ROOT in front.
unpack() {
    local root=$2 information=$2/var/lib/dpkg/info control=$2/apt/control name file
    rm -rf "$control"
    dpkg-deb --control "$1" "$control" || return
    { sed '/^$/d' "$control/control"; printf 'Status: install ok installed\n\n'; } >>"$root/var/lib/dpkg/status"
    name=$(sed -n 's/^Package: //p' "$control/control")
    ! grep -q '^Multi-Arch: same' "$control/control" || name=$name:$(sed -n 's/^Architecture: //p' "$control/control")
    for file in shlibs symbols; do
        [ ! -f "$control/$file" ] || mv "$control/$file" "$information/$name.$file"
    done
    dpkg-deb --fsys-tarfile "$1" |
        tar -C "$root" -xv --no-same-owner --no-same-permissions \
            --exclude='./usr/share/doc/*' --exclude='./usr/share/man/*' --exclude='./usr/share/locale/*' |
        sed "s|^\.|$root|; s|/\$||" >"$information/$name.list"
}

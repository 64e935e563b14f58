# shellcheck shell=bash
# What ./run, ./test, ./bench and .ci/run share. Sourced by bash; leaves the caller in the project's root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '%s: %s\n' "$0" "$*"; }

# fail MESSAGE: one line, exit status 1. misuse MESSAGE: the same with exit status 2.
fail() { printf '%s: %s\n' "$0" "$*" >&2; exit 1; }
misuse() { printf '%s: %s\n' "$0" "$*" >&2; exit 2; }

# option_value OPTION [VALUE]: the value that an option must have.
option_value() {
    [ -n "${2:-}" ] || misuse "$1 needs a value"
    printf '%s' "$2"
}

is_seconds() { [[ $1 =~ ^[1-9][0-9]{0,6}$ ]]; }

# packages GROUP...: the packages of these groups of packaging/packages.txt, one a line.
packages() {
    local group
    for group in "$@"; do
        sed -n "s/^$group: *//p" packaging/packages.txt
    done | tr -s ' ' '\n' | sort -u
}

is_installed() { [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

# ensure_packages GROUP...: installs what is missing; says nothing when nothing is.
ensure_packages() {
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
        fail "this is not a Debian system; install by hand what packaging/packages.txt names"
    local package missing=() as_root=()
    for package in $(packages "$@"); do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "missing packages, and neither root nor sudo to install them: ${missing[*]}"
        as_root=(sudo)
    fi
    say "installing ${missing[*]}"
    apt() {
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 \
            -o Dpkg::Use-Pty=0 "$@" >"$log" 2>&1
    }
    local log; log=$(mktemp)
    apt update || true  # a source of the machine's own may be out of reach; what counts is whether the packages come
    if ! apt install -y --no-install-recommends "${missing[@]}"; then
        local reason; reason=$(grep -m1 '^E:' "$log" || tail -n1 "$log"); rm -f "$log"
        fail "could not install ${missing[*]} (${reason:-apt-get failed})"
    fi
    rm -f "$log"
}

# build PRESET [TARGET...]: configures and builds; everything when no target is named.
build() {
    local preset=$1 targets=(); shift
    [ $# -eq 0 ] || targets=(--target "$@")
    mkdir -p build 2>/dev/null && [ -w build ] || fail "cannot write to $PWD/build"
    say "building $preset"
    local log; log=$(mktemp)
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; rm -f "$log"; fail "configuring $preset failed"; }
    rm -f "$log"
    cmake --build --preset "$preset" "${targets[@]}" || fail "building $preset failed"
}

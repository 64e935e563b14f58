# shellcheck shell=bash
# What ./run, ./test, ./bench and .ci/run share. Sourced by bash; leaves the caller in the project's root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The command's name as one types it: bash makes the path absolute when one script becomes another.
command=${0#"$PWD"/}

say() { printf '%s: %s\n' "$command" "$*"; }

# fail MESSAGE: one line, exit status 1. misuse MESSAGE: the same with exit status 2.
fail() { printf '%s: %s\n' "$command" "$*" >&2; exit 1; }
misuse() { printf '%s: %s\n' "$command" "$*" >&2; exit 2; }

# option_value OPTION [VALUE]: the value that an option must have.
option_value() {
    [ -n "${2:-}" ] || misuse "$1 needs a value"
    printf '%s' "$2"
}

is_number() { [[ $1 =~ ^[1-9][0-9]{0,6}$ ]]; }

# The fuzz targets there are, one a line, and where what they find is kept from one run to the next.
fuzz_targets() { sed -n 's/^vexmor_fuzz(\(\w*\).*/\1/p' fuzz/CMakeLists.txt; }
fuzz_cache() { echo "${XDG_CACHE_HOME:-$HOME/.cache}/vexmor/fuzz"; }

source scripts/progress.sh
source scripts/sysroot.sh
source scripts/daemon.sh

# packages GROUP...: the packages of these groups of packaging/packages.txt, one a line.
packages() {
    local group
    for group in "$@"; do
        sed -n "s/^$group: *//p" packaging/packages.txt
    done | tr -s ' ' '\n' | sort -u
}

# missing_packages GROUP...: those of them that are not installed.
missing_packages() {
    local wanted; wanted=$(packages "$@")
    comm -23 <(echo "$wanted") <(dpkg-query -W -f '${Package} ${db:Status-Status}\n' 2>/dev/null |
        sed -n 's/ installed$//p' | sort -u)
}

# apt LOG ARGUMENT...: apt-get, after the words of the caller's `as_root`; says how far it is, and what goes wrong in LOG.
apt() {
    local log=$1; shift
    # apt must have the pipe of its status to itself, since it makes it a non-blocking one; and sudo passes none on.
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive bash -o pipefail -c \
        'apt-get -qq -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 -o APT::Status-Fd=3 "$@" 3>&1 >&2 | cat' \
        apt "$@" 2>"$log" |
        sed -unE 's/^dlstatus:[^:]*:([0-9]+)[^:]*:/\tdownloading packages\t\1\t/p
                  s/^pmstatus:[^:]*:([0-9]+)[^:]*:/\tinstalling packages\t\1\t/p' | progress
}

# ensure_packages GROUP...: installs what is missing; says nothing when nothing is.
ensure_packages() {
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
        fail "this is not a Debian system; install by hand what packaging/packages.txt names"
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "missing packages, and neither root nor sudo to install them: ${missing[*]}"
        as_root=(sudo)
    fi
    say "installing ${missing[*]}"
    local log; log=$(mktemp)
    apt "$log" update 2>/dev/null || true  # a source of the machine's own may be out of reach; what counts is whether the packages come
    if ! apt "$log" install -y --no-install-recommends "${missing[@]}"; then
        local reason; reason=$(grep -m1 '^dpkg: error' "$log" || grep -m1 '^E:' "$log" || tail -n1 "$log"); rm -f "$log"
        fail "could not install ${missing[*]} (${reason:-apt-get failed})"
    fi
    rm -f "$log"
}

# groups_of PRESET: the groups of packages without which the preset cannot be configured.
groups_of() {
    case $1 in
        release) echo build ;;
        bench) echo build engine bench ;;
        package) echo build engine ;;
        tidy) echo build engine test bench ;;
        fuzz) echo build engine fuzz ;;
        coverage) echo build engine fuzz coverage ;;
        arm64) echo build arm64 ;;
        arm64-debug) echo build test assistance arm64 emulator ;;
        *) echo build engine test assistance ;;
    esac
}

# configure PRESET: installs what the preset needs.
configure() {
    local preset=$1
    # shellcheck disable=SC2046
    ensure_packages $(groups_of "$preset")
    mkdir -p build 2>/dev/null && [ -w build ] || fail "cannot write to $PWD/build"
    [[ $preset != arm64* ]] || ensure_sysroot arm64
    [[ $preset != @(debug|asan|tsan|bench) ]] || ensure_daemon
    local log; log=$(mktemp)
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; rm -f "$log"; fail "configuring $preset failed"; }
    rm -f "$log"
}

# build PRESET [TARGET...]: configures and builds; everything when no target is named.
build() {
    local preset=$1 targets=(); shift
    [ $# -eq 0 ] || targets=(--target "$@")
    configure "$preset"
    say "building $preset"
    NINJA_STATUS=$'\t'"building $preset"$'\t%p\t%f of %t: ' cmake --build --preset "$preset" "${targets[@]}" | progress ||
        fail "building $preset failed"
}

# refuse_skips PRESET: fails, naming them, when the preset's last tests left some out.
refuse_skips() {
    local skipped
    skipped=$(sed -nE 's/^\[  SKIPPED \] (.*) \([0-9]+ ms\)$/\1/p' "build/$1/Testing/Temporary/LastTest.log" | paste -sd' ')
    [ -z "$skipped" ] || fail "skipped under $1: $skipped"
}

# Shared by the scripts of this folder; sourced, not run.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# The comment at the head of the script is its usage text.
usage() {
    sed -n '2,/^[^#]/ { s/^# \{0,1\}//p }' "$0"
}

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# build_preset PRESET [TARGET...]: configures once, then builds what has changed.
build_preset() {
    local preset=$1
    shift
    if [[ ! -f "$root/build/$preset/build.ninja" ]]; then
        (cd "$root" && cmake --preset "$preset") || return 1
    fi
    cmake --build "$root/build/$preset" ${1:+--target "$@"}
}

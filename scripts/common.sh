# Sourced by the other scripts. Leaves them in the project's root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }

# install PART...: the packages of those parts of packages.txt that are not there yet.
install() {
    local wanted missing=() part package
    for part in "$@"; do
        wanted=$(awk -v head="# $part:" 'index($0, head) == 1 {on = 1; next} /^$/ {on = 0} on && !/^#/' scripts/packages.txt)
        [ -n "$wanted" ] || { echo "packages.txt has no part $part" >&2; exit 1; }
        for package in $wanted; do
            dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
        done
    done
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get -qq update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install --yes --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [TARGET...]
build() {
    local preset=$1
    shift
    say "Building ($preset)"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" ${1:+--target "$@"}
}

# run_tests PRESET [CTEST ARGUMENT...]
run_tests() {
    local preset=$1
    shift
    build "$preset"
    say "Testing ($preset)"
    ctest --preset "$preset" "$@"
}

# Sourced by the other scripts. Leaves them in the project's root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }

as_root() {
    local sudo=sudo
    [ "$(id -u)" -ne 0 ] || sudo=
    $sudo "$@"
}

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
    as_root apt-get -qq update
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq install --yes --no-install-recommends "${missing[@]}" >/dev/null
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

# start_repository PRESET: runs its build's local repository on a fresh database until the script ends; sets $url.
start_repository() {
    say "Starting a local repository"
    repository_work=$(mktemp -d)
    repository=
    trap stop_repository EXIT
    start_program "build/$1/tools/repository/varnel-forms-repository" --database "$repository_work/repository.db"
    echo "$url"
}

# start_program PROGRAM ARGUMENT...: runs one that writes the URL of a repository, as the one that stop_repository ends.
start_program() {
    rm -f "$repository_work/url" # of one that ran before
    "$@" >"$repository_work/url" &
    repository=$!
    for _ in $(seq 100); do
        grep -qs 'http://' "$repository_work/url" && break
        kill -0 "$repository" 2>/dev/null || { echo "the repository did not start" >&2; exit 1; }
        sleep 0.1
    done
    url=$(grep -o 'http://[^ ]*' "$repository_work/url")
}

stop_repository_process() {
    [ -z "$repository" ] || { kill "$repository" 2>/dev/null && wait "$repository"; } || true
    repository=
}

stop_repository() {
    stop_repository_process
    rm -rf "$repository_work"
}

# browse FOLDER ARGUMENT...: a headless browser, which keeps what it needs in that folder.
browse() {
    local folder=$1
    shift
    chromium --headless --no-sandbox --disable-gpu --hide-scrollbars --virtual-time-budget=1500 \
        --user-data-dir="$folder" "$@" 2>/dev/null
}

# take_pictures FOLDER NAME URL: what a desktop and a phone show there, light and dark, in NAME-SIZE-light.png and so on.
take_pictures() {
    local size
    for size in 1280x900 390x844; do
        browse "$1" --window-size="${size/x/,}" --screenshot="$2-$size-light.png" "$3"
        browse "$1" --window-size="${size/x/,}" --force-dark-mode --blink-settings=preferredColorScheme=0 \
            --screenshot="$2-$size-dark.png" "$3"
    done
}

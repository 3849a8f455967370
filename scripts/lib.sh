# shellcheck shell=bash
# What the scripts share: where the tree is, which packages it needs and how they get onto the machine, the build.
# Sourced, not run:  . "$(dirname "$0")/lib.sh"

ZOR_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Everything that configuring and building any part of the tree takes, tests and tools included.
ZOR_PACKAGES=(
    g++ cmake ninja-build pkg-config
    libsqlcipher-dev libcjson-dev libcli11-dev libncurses-dev libutfcpp-dev nlohmann-json3-dev
    libgtest-dev libgmock-dev python3-cram tmux
)

# One line about what the script does next.
zor_say() {
    printf '== %s\n' "$*"
}

# One line on standard error, then the end with status 1.
zor_fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Prints the name of every given package that is not installed.
zor_missing_packages() {
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
    done
}

# zor_ensure_packages [MORE...]: makes sure that ZOR_PACKAGES and the given ones are installed; needs no rights when they
# are. Where some are missing it takes root or sudo to install them. Without apt it lists what is needed and ends the
# script.
zor_ensure_packages() {
    local missing=() as_root=()
    set -- "${ZOR_PACKAGES[@]}" "$@"
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        zor_fail "no apt here: install what these Debian packages hold and build with CMake: $*"
    fi
    mapfile -t missing < <(zor_missing_packages "$@")
    [ ${#missing[@]} -eq 0 ] && return
    zor_say "installing ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || zor_fail "root or sudo is needed to install: ${missing[*]}"
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get -qq -o Acquire::Retries=3 update || zor_fail "apt-get update failed"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Acquire::Retries=3 install -y --no-install-recommends \
        "${missing[@]}" || zor_fail "apt-get could not install: ${missing[*]}"
}

# zor_configure PRESET [CMAKE_ARGUMENT...]
zor_configure() {
    zor_say "configuring preset $1"
    local output
    output=$(cd "$ZOR_ROOT" && cmake --preset "$@" 2>&1) || {
        printf '%s\n' "$output" >&2
        zor_fail "configuring preset $1 failed"
    }
}

# zor_build PRESET [TARGET...]: all targets when none is named.
zor_build() {
    local preset=$1
    shift
    zor_say "building preset $preset${*:+: $*}"
    (cd "$ZOR_ROOT" && cmake --build --preset "$preset" --parallel "$(nproc)" ${1:+--target "$@"}) ||
        zor_fail "building preset $preset failed"
}

# zor_test PRESET [CTEST_ARGUMENT...]
zor_test() {
    zor_say "running the tests of preset $1"
    (cd "$ZOR_ROOT" && ctest --preset "$1" --parallel "$(nproc)" "${@:2}")
}

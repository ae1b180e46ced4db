# Shared by the scripts of this folder; sourced, not run.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '%s\n' "$*" >&2; }

die() {
    say "$(basename "$0"): $*"
    exit 1
}

# Debian packages to build the programs; to demonstrate them, also without a screen; to test them.
build_packages=(g++ cmake ninja-build ccache pkg-config flex bison gettext libwxgtk3.2-dev libcli11-dev)
demo_packages=("${build_packages[@]}" srecord xvfb xauth openbox fonts-liberation fonts-dejavu-core
    adwaita-icon-theme)
test_packages=("${demo_packages[@]}" libgtest-dev libgmock-dev libbenchmark-dev binutils xdotool x11-utils
    imagemagick locales)

missing_packages() {
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            printf '%s ' "$package"
    done
}

# Installs what is missing of the named packages, or says what the user has to install.
need_packages() {
    command -v dpkg-query >/dev/null ||
        die "this script installs Debian packages; on another system install these by hand: $*"
    local missing
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    local -a as_root=()
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null && sudo -n true 2>/dev/null ||
            die "packages are missing, and installing them needs the administrator. Please run:
    sudo apt-get install --no-install-recommends $missing"
        as_root=(sudo)
    fi
    say "Installing $missing"
    local -a install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
        apt-get install -y -qq --no-install-recommends)
    # shellcheck disable=SC2086 # the list is meant to be split
    "${install[@]}" $missing >/dev/null 2>&1 ||
        { "${as_root[@]}" apt-get update -qq && "${install[@]}" $missing >/dev/null; } ||
        die "apt-get could not install: $missing"
}

# Settings that build passes to CMake beside those of the preset.
configure_options=()

# build PRESET [TARGET...]
build() {
    local preset=$1 log
    shift
    log=$(mktemp)
    cmake --preset "$preset" "${configure_options[@]}" >"$log" 2>&1 || {
        cat "$log" >&2
        rm -f "$log"
        die "configuring failed"
    }
    rm -f "$log"
    cmake --build "build/$preset" ${1:+--target "$@"}
}

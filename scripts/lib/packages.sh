# shellcheck shell=bash disable=SC2034
# Sourced by the scripts: the Debian and Ubuntu packages that the project needs, and how missing ones are installed.

readonly build_packages=(g++ cmake ninja-build qtbase5-dev qttools5-dev-tools zlib1g-dev)
readonly boat_packages=(python3 python3-pyftpdlib iproute2)
# To show the window where there is no display, and to look at it.
readonly off_screen_packages=(xvfb xdotool imagemagick)
# To use the program as a user would, on a display of its own.
readonly end_to_end_packages=(xvfb at-spi2-core gir1.2-atspi-2.0 dbus python3-gi python3-xlib util-linux
    vde-wirefilter vdeplug)
# A library of vsftpd's.
readonly server_packages=(libwrap0)
# To check what a desktop reads.
readonly desktop_packages=(desktop-file-utils appstream)
readonly icon_packages=(librsvg2-bin icoutils icnsutils)
readonly benchmark_packages=(xvfb curl)
readonly fuzz_packages=(clang)
readonly analysis_packages=(clang clang-tidy clazy cppcheck)
readonly coverage_packages=(gcovr)
readonly style_packages=(clang-format shellcheck flake8)
readonly package_packages=(dpkg-dev fakeroot lintian)
# The cross compiler, what the toolkit's own build wants, and what makes an installer.
readonly windows_packages=(g++-mingw-w64-x86-64-posix libz-mingw-w64-dev dpkg-dev make perl python3 nsis)
# To run the result. Without fonts Wine would show none.
readonly wine_packages=(wine wine64 fonts-dejavu-core xvfb xdotool imagemagick)
# The latter for users who are not root.
readonly bare_system_packages=(mmdebstrap uidmap)

is_installed() {
    [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

# Installs what is missing of the packages named; asks for more rights only then.
ensure_packages() {
    local package missing=() as_root=()
    if ! command -v apt-get >/dev/null; then
        echo "No apt-get here. Needed, as named by Debian: $*" >&2
        return
    fi
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [[ ${#missing[@]} -gt 0 ]] || return 0
    echo "==> Installing ${missing[*]}"
    if [[ $EUID -ne 0 ]]; then
        if ! command -v sudo >/dev/null; then
            echo "Please have these packages installed first: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    # On a machine just started, unattended upgrades may hold the lock for a while.
    as_root+=(env DEBIAN_FRONTEND=noninteractive NEEDRESTART_MODE=a apt-get -q -o DPkg::Lock::Timeout=300)
    "${as_root[@]}" update </dev/null
    "${as_root[@]}" install --yes --no-install-recommends "${missing[@]}" </dev/null
}

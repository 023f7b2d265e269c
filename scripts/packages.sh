# SPDX-License-Identifier: MIT
# Which packages each step needs, and how a missing one is installed. Sourced by the other scripts.

# To build the core and the programs without a window.
BUILD_PACKAGES="g++ cmake ninja-build pkg-config libfmt-dev libzip-dev libexpected-dev libcli11-dev nlohmann-json3-dev
    libavahi-client-dev libsqlite3-dev libzstd-dev libxlsxwriter-dev libssl-dev"
# To build the window program on top.
WINDOW_PACKAGES="qt6-base-dev qt6-svg-dev"
# To make the packages on top: cpack asks dpkg for the libraries that a program needs, and file for what a program is.
PACKAGE_PACKAGES="dpkg-dev file gzip"
# To build and run every test on top. strace injects faults; unzip, 7z and bsdtar read the archives that we write; e2fsprogs
# makes the volumes whose power is cut, and with xfsprogs and gddrescue those that are rescued; sqlite3 asks the questions of
# docs/many-jobs.md; parallel shares out the parts of a job.
TEST_PACKAGES="libgtest-dev libgmock-dev libbenchmark-dev python3 strace unzip p7zip-full libarchive-tools
    e2fsprogs xfsprogs gddrescue sqlite3 parallel"
# For the checks beside the tests; ccache makes what was built before cheap, where the cache outlives the check.
CHECK_PACKAGES="clang clang-format clang-tidy libclang-rt-dev gcovr ccache git"

# install_missing <package>...: asks dpkg first, so that a machine that has everything is not touched and needs no network.
install_missing() {
    if ! command -v dpkg-query >/dev/null; then
        echo "This is not a Debian system; taking for granted: $*" >&2
        return 0
    fi
    # shellcheck disable=SC2016  # ${...} is dpkg's own
    present=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^installed //p')
    missing=
    for package; do
        echo "$present" | grep -qxF "$package" || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0

    echo "Installing:$missing"
    as_root=
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || { echo "Run as root, or install first:$missing" >&2; exit 2; }
        as_root=sudo
    fi
    $as_root apt-get -q update
    # shellcheck disable=SC2086  # a list of words
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends $missing
    configure_again=yes
}

# configure <preset> [option]...: only when there is something to do. A build sees by itself that a CMakeLists.txt changed, but
# not that a package came which the last configuration had to do without.
configure_again=no
configure() {
    preset=$1
    shift
    if [ $# -gt 0 ] || [ $configure_again = yes ] || ! [ "build/$preset/build.ninja" -nt CMakePresets.json ]; then
        echo "Configuring build/$preset"
        cmake --preset "$preset" "$@" >"build/$preset.log" 2>&1 || { cat "build/$preset.log" >&2; exit 2; }
    fi
}

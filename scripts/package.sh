#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs what is missing, builds the release, and makes its packages: a .tar.gz to unpack anywhere and a .deb.
set -eu

usage() {
    cat <<'END'
Usage: scripts/package.sh [--without-window]

  --without-window   the commands alone, for servers: packages of another name, built without Qt

The packages stand in build/release, or in build/release-commands.
END
}

window=yes
for argument; do
    case $argument in
        --without-window) window=no ;;
        -h | --help) usage; exit 0 ;;
        *) usage >&2; exit 2 ;;
    esac
done

cd "$(dirname "$0")/.."
. scripts/packages.sh
mkdir -p build

# shellcheck disable=SC2086  # lists of words
if [ $window = yes ]; then
    install_missing $BUILD_PACKAGES $WINDOW_PACKAGES $PACKAGE_PACKAGES
    folder=build/release
    cmake --preset release -DQUILLON_GUI=ON
else
    install_missing $BUILD_PACKAGES $PACKAGE_PACKAGES
    folder=build/release-commands
    cmake --preset release -B $folder -DQUILLON_GUI=OFF
fi
# All targets: the documents of the package are one of their own.
cmake --build $folder
(cd $folder && cpack)
ls -l $folder/*.deb $folder/*.tar.gz

#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs what is missing, builds the release, and grades every file below a folder.
set -eu

usage() {
    cat <<'END'
Usage: scripts/run.sh [SOURCE] [--window]

  SOURCE     folder to grade; without it, a small sample tree is made and graded. It is only read.
  --window   build and open the window program instead (this installs Qt)

The application folder is build/release/Quillon; lists are below its Data folder.
END
}

source=
window=no
for argument; do
    case $argument in
        --window) window=yes ;;
        -h | --help) usage; exit 0 ;;
        -*) usage >&2; exit 2 ;;
        *) [ -z "$source" ] || { usage >&2; exit 2; }; source=$argument ;;
    esac
done
if [ -n "$source" ]; then
    source=$(cd -- "$source" && pwd) || exit 2
fi

cd "$(dirname "$0")/.."
. scripts/packages.sh
mkdir -p build

# shellcheck disable=SC2086  # lists of words
if [ $window = yes ]; then
    install_missing $BUILD_PACKAGES $WINDOW_PACKAGES
    grep -qs '^QUILLON_GUI:[A-Z]*=ON' build/release/CMakeCache.txt && configure release || configure release -DQUILLON_GUI=ON
    echo "Building the programs"
    cmake --build --preset release --target app_folder quillon
    scripts/install_desktop_entry.sh build/release/Quillon
    echo "Opening build/release/Quillon/quillon"
    exec build/release/Quillon/quillon
fi

# shellcheck disable=SC2086
install_missing $BUILD_PACKAGES
configure release
echo "Building build/release/Quillon"
cmake --build --preset release --target app_folder

if [ -z "$source" ]; then
    source=$PWD/build/sample
    scripts/make_sample_tree.sh "$source"
fi
# The folder's name names the list, without the characters that a job ID cannot hold.
job=$(basename -- "$source" | tr -d ':\\/@*?<>|"')
echo "Grading $source"
exec build/release/Quillon/quillon-job --app "$PWD/build/release/Quillon" --job "${job:-run}" --source "$source" --yes

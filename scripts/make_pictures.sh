#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes the pictures of the help and the README from the real window, on a display of its own (Xvfb), light and dark, at two
# sizes. They go to docs/help/images.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
# shellcheck disable=SC2086  # lists of words
install_missing $BUILD_PACKAGES $WINDOW_PACKAGES $TEST_PACKAGES xvfb xauth
configure dev
cmake --build --preset dev --target quillon_picture_maker starter_database
# A path that says nothing of the computer on which the pictures were made.
sample=${TMPDIR:-/tmp}/recovered
scripts/make_sample_tree.sh "$sample"

pictures=docs/help/images
mkdir -p "$pictures"
# picture LOOK WIDTH HEIGHT NAME [OPTION...]
picture() {
    look=$1 width=$2 height=$3 name=$4
    shift 4
    xvfb-run -a -s "-screen 0 ${width}x${height}x24" env LC_ALL=C QT_QPA_PLATFORM=xcb build/dev/tests/ui/quillon_picture_maker \
        build/dev/Quillon/db.zip "$sample" "$look" "$width" "$height" "$pictures/$name.png" "$@"
    echo "$pictures/$name.png"
}
for look in light dark; do
    picture $look 1280 800 main-$look
    picture $look 2560 1440 main-$look-large
done
picture light 1280 800 main-start --start
picture light 1280 800 database --screen Updatedb
picture light 1280 800 skip-list --screen SkipList
picture light 1280 800 list --screen ViewList
picture light 1280 800 setup --screen SetupWizard

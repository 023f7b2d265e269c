#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes pictures of all screens, light and dark, on a display of its own (Xvfb), in build/pictures. Those that the help and the
# README show are put into docs/help/images.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
# shellcheck disable=SC2086  # lists of words
install_missing $BUILD_PACKAGES $WINDOW_PACKAGES $TEST_PACKAGES xvfb xauth
configure dev
cmake --build --preset dev --target quillon_picture_maker starter_database help_file
# Paths that say nothing of the computer on which the pictures were made.
stage=/tmp/quillon-pictures
mkdir -p "$stage"
scripts/make_sample_tree.sh "$stage/recovered"

pictures=build/pictures
rm -rf "$pictures"
mkdir -p "$pictures"
for look in light dark; do
    rm -rf "$stage/Quillon"
    mkdir "$stage/Quillon"
    cp build/dev/Quillon/db.zip build/dev/Quillon/Quillon.chm "$stage/Quillon"
    xvfb-run -a -s "-screen 0 2560x1440x24" env LC_ALL=C QT_QPA_PLATFORM=xcb \
        build/dev/tests/ui/quillon_picture_maker "$stage/Quillon" "$stage/recovered" $look "$pictures"
done

# Those that a page shows: a name without a look is the light picture of its screen.
for shown in $(grep -oh 'images/[a-z0-9-]*\.png' README.md docs/help/*.html | sort -u); do
    name=$(basename "$shown" .png)
    [ -e "$pictures/$name.png" ] || name=$name-light
    cp "$pictures/$name.png" "docs/help/$shown"
done

#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs what the checks need at one go, so that each of them tells its own time.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
# shellcheck disable=SC2086  # lists of words
install_missing $BUILD_PACKAGES $WINDOW_PACKAGES $TEST_PACKAGES $CHECK_PACKAGES

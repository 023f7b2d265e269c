#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs clang-tidy. Every finding is an error.
# Usage: tidy.sh                     over every file
#        tidy.sh FILE...             over these
#        tidy.sh --quick             over every file, but only Clang's own warnings and the length of functions
#        tidy.sh --changed SECONDS   over what changed since the last release, newest first, as many files as the time allows
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

# One file of many, and silence about one without findings.
check_one() {
    if [ -n "$UNTIL" ] && [ "$(date +%s)" -ge "$UNTIL" ]; then
        echo "$1" >>"$LEFT"
    else
        found=$(clang-tidy -p build/clang --quiet --extra-arg=-Wno-unknown-warning-option ${CHECKS:+"--checks=$CHECKS"} "$1" 2>&1) ||
            { printf '%s\n' "$found"; return 1; }
    fi
}

every_source() {
    find src tests tools bench fuzz -name '*.cpp' | sort
}

# A checkout may belong to another user than the one who checks it.
git() {
    command git -c safe.directory="$PWD" "$@"
}

# The last release: its tag, or the commit that docs/releasing.md names where tags do not travel.
last_release() {
    git describe --tags --abbrev=0 --match 'v[0-9]*' 2>/dev/null ||
        sed -n 's/^| [0-9.]* | [0-9-]* | `\([0-9a-f]*\)` |.*/\1/p' docs/releasing.md | head -n 1
}

# Changed sources, newest change first; a header stands for the source beside it.
changed_sources() {
    base=$(last_release)
    git rev-parse --quiet --verify "$base^{commit}" >/dev/null || { echo "The history does not reach $base" >&2; return 0; }
    { git diff --name-only HEAD; git log --format= --name-only "$base..HEAD"; } | sed -n 's/\.\(h\|cpp\)$/.cpp/p' | awk '!seen[$0]++' |
        grep -E '^(src|tests|tools|bench|fuzz)/' | while read -r file; do [ ! -f "$file" ] || echo "$file"; done
}

if [ "${1:-}" = --one ]; then
    check_one "$2"
    exit
fi

# shellcheck disable=SC2086  # lists of words
install_missing $BUILD_PACKAGES $WINDOW_PACKAGES $TEST_PACKAGES $CHECK_PACKAGES
mkdir -p build
configure clang
# What Qt generates is included by the screens and their tests.
generated=$(cmake --build --preset clang --target help | sed -n 's/^\(quillon[A-Za-z_]*_autogen\):.*/\1/p')
# shellcheck disable=SC2086
[ -z "$generated" ] || cmake --build --preset clang --target $generated >/dev/null

list=build/tidy.txt
until=
checks=
case ${1:-} in
    --changed) until=$(($(date +%s) + $2)); changed_sources >$list ;;
    --quick) checks='-*,readability-function-size,clang-diagnostic-*'; every_source >$list ;;
    "") every_source >$list ;;
    *) printf '%s\n' "$@" >$list ;;
esac
: >$list.left
status=0
UNTIL=$until CHECKS=$checks LEFT=$list.left xargs -r -a $list -P "$(nproc)" -n 1 scripts/tidy.sh --one || status=1
left=$(wc -l <$list.left)
echo "clang-tidy: $(($(wc -l <$list) - left)) files checked, $left left to scripts/longer_checks.sh"
exit $status

#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes the packages of the release and holds them to what users of Debian may expect: lintian finds neither error nor
# warning, and every program is hardened. Usage: check_packages.sh [DEB...]      with packages, these and no others are checked
set -eu

if [ $# -eq 0 ]; then
    cd "$(dirname "$0")/.."
    . scripts/packages.sh
    install_missing lintian binutils
    rm -f build/release/*.deb build/release-commands/*.deb  # of other versions
    scripts/package.sh
    scripts/package.sh --without-window
    set -- build/release/*.deb build/release-commands/*.deb
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
fail() {
    echo "$*" >&2
    status=1
}

# A program has no fixed address, its tables are closed before it begins, and its stack holds no code.
check_program() {
    kind=$(readelf --wide --file-header "$1")
    echo "$kind" | grep -q 'Type:  *DYN' || fail "$1 is not position-independent"
    segments=$(readelf --wide --segments "$1")
    echo "$segments" | grep -q 'GNU_RELRO' || fail "$1 has no read-only relocations"
    echo "$segments" | grep 'GNU_STACK' | grep -q 'RWE' && fail "$1 has an executable stack"
    readelf --wide --dynamic "$1" | grep -Eq 'BIND_NOW|FLAGS_1.*NOW' || fail "$1 binds lazily"
    readelf --wide --dyn-syms "$1" | grep -q '__stack_chk_fail' || fail "$1 does not guard its stack"
}

for package; do
    echo "$package"
    lintian --fail-on error,warning "$package" || fail "lintian finds fault with $package"
    rm -rf "$work/root"
    dpkg-deb --extract "$package" "$work/root"
    programs=0
    for file in "$work"/root/opt/quillon/*; do
        [ -x "$file" ] || continue
        programs=$((programs + 1))
        check_program "$file"
    done
    [ $programs -ge 3 ] || fail "$package holds $programs programs"
done
[ $status -ne 0 ] || echo "$# packages hold what they should"
exit $status

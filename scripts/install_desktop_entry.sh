#!/bin/sh
# SPDX-License-Identifier: MIT
# Puts Quillon into the user's menu: the desktop entry of the package, for a program in another folder, and its icon.
# Usage: install_desktop_entry.sh APPLICATION_FOLDER
set -eu
[ $# = 1 ] && [ -x "$1/quillon" ] || { echo "Usage: $0 APPLICATION_FOLDER (with the program quillon in it)" >&2; exit 2; }
folder=$(cd -- "$1" && pwd)
data=${XDG_DATA_HOME:-$HOME/.local/share}
here=$(cd -- "$(dirname "$0")/.." && pwd)

mkdir -p "$data/applications" "$data/icons/hicolor/scalable/apps"
cp "$here/src/widgets/icons/quillon.svg" "$data/icons/hicolor/scalable/apps/quillon.svg"
# Within quotes a backslash goes ahead of four characters; and a value of an entry doubles every backslash.
quoted=$(printf '%s' "$folder/quillon" | sed 's/[\\"`$]/\\&/g; s/\\/\\\\/g; s/%/%%/g')
{
    grep -v '^Exec=' "$here/data/package/quillon.desktop"
    printf 'Exec="%s"\n' "$quoted"
} >"$data/applications/quillon.desktop"
echo "Quillon is in the menu: $data/applications/quillon.desktop"

#!/bin/sh
# SPDX-License-Identifier: MIT
# Puts Quillon into the user's menu: a desktop entry and its icon. Usage: install_desktop_entry.sh APPLICATION_FOLDER
set -eu
[ $# = 1 ] && [ -x "$1/quillon" ] || { echo "Usage: $0 APPLICATION_FOLDER (with the program quillon in it)" >&2; exit 2; }
folder=$(cd -- "$1" && pwd)
data=${XDG_DATA_HOME:-$HOME/.local/share}
here=$(cd -- "$(dirname "$0")/.." && pwd)

mkdir -p "$data/applications" "$data/icons/hicolor/scalable/apps"
cp "$here/src/ui/icons/quillon.svg" "$data/icons/hicolor/scalable/apps/quillon.svg"
# The path is quoted as the desktop entry's rules want it.
quoted=$(printf '%s' "$folder/quillon" | sed 's/[\\"`$]/\\\\&/g; s/%/%%/g')
cat >"$data/applications/quillon.desktop" <<END
[Desktop Entry]
Type=Application
Name=Quillon
Comment=Grades recovered files
Exec="$quoted"
Icon=quillon
Terminal=false
Categories=System;Utility;
END
echo "Quillon is in the menu: $data/applications/quillon.desktop"

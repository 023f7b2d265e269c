# SPDX-License-Identifier: MIT
# Completion of quillon-messenger for fish.
complete -c quillon-messenger -f
complete -c quillon-messenger -l port -x -d 'UDP port to listen on'
complete -c quillon-messenger -l address -x -d 'Address to listen on'
complete -c quillon-messenger -l log -r -F -d 'Store each alert in this file'
complete -c quillon-messenger -l log-size -x -d 'Begin a new log at so many MiB'
complete -c quillon-messenger -l notify -d 'Show each alert on the desktop'
complete -c quillon-messenger -l help -d 'Tell the options'
complete -c quillon-messenger -l version -d 'Tell the version'

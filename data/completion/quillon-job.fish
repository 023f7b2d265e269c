# SPDX-License-Identifier: MIT
# Completion of quillon-job for fish.
complete -c quillon-job -f
complete -c quillon-job -l job -x -d 'Job ID; names the list'
complete -c quillon-job -l source -x -a '(__fish_complete_directories)' -d 'Folder with the recovered files'
complete -c quillon-job -l target -x -a '(__fish_complete_directories)' -d 'Copy the files below this folder'
complete -c quillon-job -l no-test -d 'List only, without testing the headers'
complete -c quillon-job -l no-skip-list -d 'List the files of the skip list too'
complete -c quillon-job -l no-common-headers -d 'Do not look for common headers'
complete -c quillon-job -l alert -x -a '(__fish_print_hostnames)' -d 'Send the completion report to this computer'
complete -c quillon-job -l alert-optional -d 'A report that nobody acknowledges is no failure'
complete -c quillon-job -l app -x -a '(__fish_complete_directories)' -d 'Application folder'
complete -c quillon-job -l json -d 'Print the result as one JSON object'
complete -c quillon-job -l yes -d 'Answer Yes, but not to what needs an answer of its own'
complete -c quillon-job -l quiet -d 'Print no log rows and no progress'
complete -c quillon-job -l help -d 'Tell the options'
complete -c quillon-job -l version -d 'Tell the version'

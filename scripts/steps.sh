# SPDX-License-Identifier: MIT
# Steps of a long check. Each tells what it took; one that fails makes the whole red, and the others still run.
# Sourced by the other scripts.

steps_told=
steps_status=0

# step <title> <command> [argument]...
step() {
    step_title=$1
    shift
    echo
    echo "=== $step_title: $*"
    step_began=$(date +%s)
    step_result=passed
    "$@" || { step_result=FAILED steps_status=1; }
    step_took=$(($(date +%s) - step_began))
    steps_told="$steps_told$(printf '%-8s%3d min %02d s   %s' "$step_result" $((step_took / 60)) $((step_took % 60)) "$step_title")
"
    echo "=== $step_title: $step_result after $step_took s"
}

# finish_steps: prints the table and ends the script.
finish_steps() {
    printf '\n%s' "$steps_told"
    exit $steps_status
}

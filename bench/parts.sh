#!/bin/sh
# SPDX-License-Identifier: MIT
# Does a job over a made tree in parts, by GNU parallel and under a Slurm of its own, with two parts killed and tried again, and
# compares the merged list with that of one job.
# Usage: bench/parts.sh [COUNT] [PARTS]      200000 files and 16 parts by default
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
prepare "${1:-200000}" python3 parallel slurmctld slurmd slurm-client munge
time python3 tests/programs/cluster_test.py "$app/quillon-job" "$release/Quillon/quillon-list" "$app/db.zip" data/cluster \
    --tree "$tree" --parts "${2:-16}"

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures what evidence costs a job: the same warm tree is graded without evidence, without heads and with both, one
after the other, and medians of wall and processor time are shown. Then the job is graded anew from its heads.

Usage: bench/evidence_cost.py BUILD [COUNT] [ROUNDS]     build/release, 100000 files and 7 rounds by default
"""

import os
import random
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

WAYS = {"none": ["--no-evidence"], "no heads": ["--no-heads"], "evidence": []}


def spoil(tree):
    """Takes the heads of so many files away that with those of the tree's maker three in ten are bad."""
    chance = random.Random(5)
    for folder, folders, files in os.walk(tree):
        folders.sort()
        for name in sorted(files):
            path = os.path.join(folder, name)
            if chance.random() >= 0.25 or os.path.getsize(path) < 512:
                continue
            kind = chance.random()
            head = bytes(512) if kind < 0.3 else chance.randbytes(512) if kind < 0.8 else b"\xf6" * 512
            with open(path, "r+b") as file:
                file.write(head)


def read_through(tree):
    """What was not touched for a while is paged out, and costs several times the time."""
    for folder, _, files in os.walk(tree):
        for name in files:
            with open(os.path.join(folder, name), "rb") as file:
                file.read(512)


def timed(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    begun = time.monotonic()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wall = time.monotonic() - begun
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return wall, after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def main():
    build = sys.argv[1] if len(sys.argv) > 1 else "build/release"
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 100_000
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 7
    with tempfile.TemporaryDirectory(prefix="quillon-evidence-") as work:
        tree, app, nothing = (os.path.join(work, name) for name in ("tree", "app", "nothing"))
        subprocess.run([f"{build}/bench/quillon_bench_make_tree", tree, str(count)], check=True)
        spoil(tree)
        shutil.copytree(f"{build}/Quillon", app)
        os.mkdir(nothing)
        job = [f"{app}/quillon-job", "--app", app, "--yes", "--quiet"]
        timed(job + ["--job", "first", "--source", nothing])  # sets the folder up
        times = {way: [] for way in WAYS}
        for number in range(rounds):
            for way in list(WAYS)[:: 1 if number % 2 else -1]:
                read_through(tree)
                times[way].append(timed(job + ["--job", "bench", "--source", tree] + WAYS[way]))
                shutil.rmtree(f"{app}/Data/Kept", ignore_errors=True)
        wall, cpu = ({way: statistics.median(t[i] for t in times[way]) for way in WAYS} for i in (0, 1))
        for way in WAYS:
            print(f"{way:10} {wall[way]:7.3f} s wall x{wall[way] / wall['none']:.2f} {cpu[way]:7.3f} s CPU "
                  f"{(cpu[way] - cpu['none']) / count * 1e6:+6.1f} us a file")
        read_through(tree)
        timed(job + ["--job", "bench", "--source", tree])
        size = os.path.getsize(f"{app}/Data/bench.sqlite")
        again = statistics.median(timed(job + ["--regrade", "bench"])[1] for _ in range(3))
        print(f"evidence: {size / count:.0f} bytes a file; regrade: {again / count * 1e6:.1f} us CPU a file")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Cuts the power at random moments behind the word that all copies are made, and looks at what the disk holds then.

Usage: power_cut.py QUILLON_JOB DB_ZIP [POINTS] [FILE_SYSTEM...]

A job copies a tree to a volume whose writes are written down (tests/programs/write_log.py), and other files are written there
afterwards. Each of POINTS (200) cuts leaves what stood behind the last barrier before it, and of the later writes those that
chance lets through, as a disk with a memory of its own does. Every file of the list of check sums has to be whole then, and the list
has to name every file. The same with `--no-sync` has to show losses, or the cuts prove nothing. FILE_SYSTEM: ext4 and xfs where none
is named. Needs the right to mount loop devices over FUSE.
"""
import hashlib
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/programs"))
import write_log

FILES = 300


def make_source(folder):
    folder.mkdir()
    for number in range(FILES):
        below = folder / f"folder {number % 7}"
        below.mkdir(exist_ok=True)
        (below / f"{number:04}.bin").write_bytes(os.urandom(random.choice([0, 600, 4096, 20_000])))
    (folder / "large.bin").write_bytes(os.urandom(3_000_000))


def other_work(place):
    """What a disk is used for behind the copies."""
    for number in range(120):
        file = place / f"other {number % 9}"
        file.write_bytes(os.urandom(3_000))
        if number % 3 == 0:
            handle = os.open(file, os.O_RDONLY)
            os.fsync(handle)
            os.close(handle)
        if number % 5 == 0:
            file.unlink()


def images(base, log, lengths, image):
    """Makes `image` the disk of each cut, and gives the cut."""
    disk = image.with_suffix(".sure")
    disk.write_bytes(base)
    sure = 0  # entries of the log behind a barrier, which `disk` has
    with open(disk, "r+b", buffering=0) as stands:
        for length in lengths:
            barrier = max((number for number in range(sure, length) if log[number] is None), default=sure)
            for entry in log[sure:barrier]:
                if entry is not None:
                    os.pwrite(stands.fileno(), entry[1], entry[0])
            sure = barrier
            write_log.run("cp", "--sparse=always", disk, image)
            with open(image, "r+b", buffering=0) as cut:
                for entry in log[barrier:length]:
                    if entry is not None and random.random() < 0.5:
                        os.pwrite(cut.fileno(), entry[1], entry[0])
            yield length


def look(target, wanted):
    """What is lost below the target."""
    manifest = target / "J.sha256"
    if not manifest.exists():
        return ["the list of check sums"]
    told = dict(reversed(line.split("  ", 1)) for line in manifest.read_text().splitlines() if not line.startswith("#"))
    lost = sorted(wanted.keys() - told.keys())
    for name, digest in told.items():
        file = target / name
        if digest != wanted.get(name) or not file.exists() or hashlib.sha256(file.read_bytes()).hexdigest() != digest:
            lost.append(name)
    return lost


def cut(job, database, points, kind, options):
    """How many cuts lost something, and an example."""
    folder = Path(tempfile.mkdtemp(prefix="quillon-power-"))
    try:
        source = folder / "source"
        make_source(source)
        app = folder / "app"
        app.mkdir()
        shutil.copy(database, app / "db.zip")
        wanted = {str(file).lstrip("/"): hashlib.sha256(file.read_bytes()).hexdigest() for file in source.rglob("*.bin")}

        def work(place):
            subprocess.run([job, "--app", app, "--job", "J", "--source", source, "--yes", "--quiet", "--target", place / "target",
                            *options], check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)

        base, log, said = write_log.record(folder, lambda place: None, work, kind, other_work)
        lengths = sorted([said] + [random.randint(said, len(log)) for _ in range(points - 1)])
        lossy, example = 0, []
        for length in images(base, log, lengths, folder / "cut"):
            with write_log.Volume(folder / "cut", folder / "looked at", kind) as place:
                lost = look(place / "target", wanted)
            lossy += bool(lost)
            example = example or ([length - said] + lost[:3] if lost else [])
        return lossy, example, len(log) - said
    finally:
        shutil.rmtree(folder)


def main():
    job, database = (str(Path(name).resolve()) for name in sys.argv[1:3])
    points = int(sys.argv[3]) if len(sys.argv) > 3 else 200
    seed = int(os.environ.get("SEED", time.time()))
    random.seed(seed)
    print(f"seed {seed}", flush=True)
    failed = False
    for kind in sys.argv[4:] or ["ext4", "xfs"]:
        for options in (["--salvage"], ["--salvage", "--no-sync"]):
            lossy, example, writes = cut(job, database, points, kind, options)
            print(f"{kind} {' '.join(options)}: {lossy} of {points} cuts within {writes} later writes lost something {example}",
                  flush=True)
            failed |= (lossy == 0) == ("--no-sync" in options)
    return int(failed)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    sys.exit(main())

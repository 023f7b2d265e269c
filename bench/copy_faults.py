#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Copies from and to disks that fail, again and again, and completes each copy on disks that work.

Usage: copy_faults.py QUILLON_JOB QUILLON_LIST FAULTY_FILES DB_ZIP [RUNS]

Source and target are file systems of bench/faulty_files.cpp. In each of RUNS (100) runs one of them fails at a random
moment (a full disk, an I/O error in reading, writing, making, syncing, linking or closing a file, a bad sector, a disk
that is pulled out), or the program is killed. Every second run copies by a job, the others by `quillon-list copy`.
Behind each run nothing may be called copied that is not equal, no cut file may have a final name, and every failed file
has to be named with its side, and with the place where bytes could not be moved. A second run over disks that work has to
leave alone exactly what the first one has proven to be there, and all has to be equal then.
"""
import hashlib
import json
import os
import random
import re
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
from pathlib import Path

FILES = 24
ENOSPC = "28"
KINDS = ["full", "write", "read", "sector", "create", "fsync", "flush", "rename", "target gone", "source gone", "kill"]


def digest(data: bytes) -> str:
    return hashlib.sha256(data).hexdigest()


class Disk:
    """A folder, shown by the failing file system at the same place in each run."""

    def __init__(self, program: str, folder: Path, point: Path):
        self.program, self.folder, self.point = program, folder, point
        self.server: subprocess.Popen | None = None
        folder.mkdir(exist_ok=True)
        point.mkdir(exist_ok=True)

    def show(self, *options: str) -> None:
        self.server = subprocess.Popen([self.program, str(self.folder), str(self.point), *options])
        while not os.path.ismount(self.point):
            assert self.server.poll() is None, "the file system does not start; libfuse, or /dev/fuse, is missing"
            time.sleep(0.005)

    def hide(self) -> None:
        # One that was pulled out needs the lazy way.
        subprocess.run(["fusermount3", "-u", "-z", str(self.point)], check=False, capture_output=True)
        if self.server:
            self.server.wait()
        self.server = None


class Bench:
    def __init__(self, job: str, lists: str, faulty: str, database: str):
        self.job_program, self.list_program = job, lists
        self.base = Path(tempfile.mkdtemp(prefix="quillon-faults-"))
        self.source = Disk(faulty, self.base / "source-disk", self.base / "source")
        self.target = Disk(faulty, self.base / "target-disk", self.base / "target")
        self.app = self.base / "app"
        self.app.mkdir()
        shutil.copy(database, self.app / "db.zip")
        self.files = {}
        for number in range(FILES):
            below = self.source.folder / f"folder {number % 4}"
            below.mkdir(exist_ok=True)
            data = b"MZ" + random.randbytes(random.choice([600, 5_000, 40_000, 300_000, 1_500_000]))
            (below / f"file {number}.exe").write_bytes(data)
            # Below the target stands the whole path of the source.
            self.files[f"{self.source.point}/folder {number % 4}/file {number}.exe".lstrip("/")] = data
        self.show_both()
        self.run(self.job_command("--quiet"), 0)
        self.hide_both()
        self.data = self.app / "Data"
        self.kept = self.base / "data"
        shutil.copytree(self.data, self.kept)

    def show_both(self, source: tuple = (), target: tuple = ()) -> None:
        self.source.show(*source)
        self.target.show(*target)

    def hide_both(self) -> None:
        self.source.hide()
        self.target.hide()

    def job_command(self, *more: str) -> list[str]:
        return [self.job_program, "--app", str(self.app), "--job", "7", "--source", str(self.source.point), "--yes",
                "--json", *more]

    def copy_command(self, *more: str) -> list[str]:
        return [self.list_program, "copy", "7", "--app", str(self.app), "--to", str(self.target.point), "--yes",
                "--json", *more]

    def run(self, command: list[str], wanted: int | None = None) -> tuple[int, dict | None, str]:
        done = subprocess.run(command, capture_output=True, text=True, check=False, timeout=600)
        assert wanted is None or done.returncode == wanted, (command, done.returncode, done.stdout, done.stderr)
        try:
            result = json.loads(done.stdout)
        except json.JSONDecodeError:
            result = None
        return done.returncode, result, done.stderr

    def begin(self) -> None:
        for folder in (self.target.folder, self.data):
            shutil.rmtree(folder)
        shutil.copytree(self.kept, self.data)
        self.target.folder.mkdir()

    # What a run has left.

    def sums(self, name: str) -> dict[str, str]:
        path = self.target.folder / name
        sums = {}
        for line in path.read_text().splitlines() if path.exists() else []:
            match = re.fullmatch(r"([0-9a-f]{64})  (.+)", line)
            if match:
                sums[match[2]] = match[1]
        return sums

    def notes(self) -> tuple[dict[str, str], set[str]]:
        """Of a run that did not come to its end: the whole copies, and those that lack something. None is cut."""
        path = self.target.folder / "7.sha256-running"
        whole, hurt = {}, set()
        for note in path.read_bytes().decode(errors="replace").split("# end\n")[:-1] if path.exists() else []:
            lines = note.rsplit("\n\n", 1)[-1].splitlines()
            name = lines[-1][66:]
            if any(line.startswith("# source ") for line in lines):
                whole[name] = lines[-1][:64]
                hurt.discard(name)
            else:
                hurt.add(name)
                whole.pop(name, None)
        return whole, hurt

    def recorded(self) -> dict[str, str]:
        whole, hurt = self.notes()
        return {name: told for name, told in (self.sums("7.sha256") | whole).items() if name not in hurt}

    def evidence(self) -> dict[str, tuple]:
        file = self.data / "7.sqlite"
        if not file.exists():  # a job that was killed while its evidence took the place of the earlier one
            file = self.data / "7.sqlite-earlier"
        with sqlite3.connect(f"file:{file}?mode=ro", uri=True) as database:
            rows = database.execute("SELECT path, copied, copy_error FROM files").fetchall()
        root = str(self.source.point).lstrip("/")
        return {f"{root}/{path}": (copied, error) for path, copied, error in rows}

    def check(self, result: dict | None, by_list: bool, ended: bool) -> None:
        for path in self.target.folder.rglob("*"):
            name = str(path.relative_to(self.target.folder))
            if path.is_file() and name in self.files:
                hurt = self.sums("7-damaged.sha256").get(name) == digest(path.read_bytes())
                assert hurt or path.read_bytes() == self.files[name], f"{name} is cut"
            elif path.is_file():
                assert path.name.startswith((".quillon", "7.sha256", "7-damaged")), f"{name} is none of ours"
        for name, told in self.recorded().items():
            path = self.target.folder / name
            assert path.exists() and digest(path.read_bytes()) == told, f"{name} has a check sum that is not its own"
        failed = 0
        for name, (copied, error) in self.evidence().items():
            assert copied != 1 or (self.target.folder / name).exists(), f"{name} is called copied"
            failed += copied == 0
            if copied == 0:
                assert error.startswith(("source: ", "target: ")), f"{name}: {error}"
                moved = re.search(r"Input/output error|No space left", error) and "at byte" not in error
                assert not moved or "create" in self.kind or self.kind in self.NO_PLACE, f"{name}: {error}"
        if by_list and result and ended:
            assert result["failed"] == len(result["errors"]), result
            assert result["copied"] + result["failed"] == FILES, result

    # These fail in calls that move no bytes.
    NO_PLACE = ("fsync", "flush", "rename", "target gone", "source gone")
    kind = ""

    def fault(self) -> tuple[tuple, tuple]:
        """Options of source and target."""
        size = sum(len(data) for data in self.files.values())
        times = random.choice(["1", "0", "3"])
        if self.kind == "full":
            return (), ("--call", "write", "--after", str(random.randrange(size)), "--error", ENOSPC, "--times", "0")
        if self.kind == "write":
            return (), ("--call", "write", "--after", str(random.randrange(size)), "--times", times)
        if self.kind == "read":
            return ("--call", "read", "--after", str(random.randrange(size)), "--times", times), ()
        if self.kind == "sector":
            name, data = random.choice(sorted(self.files.items()))
            below = "/" + str(Path("/" + name).relative_to(self.source.point))
            return ("--broken", below, "--at", str(random.randrange(len(data)))), ()
        if self.kind == "target gone":
            return (), ("--gone", str(random.randrange(20, 600)))
        if self.kind == "source gone":
            return ("--gone", str(random.randrange(20, 150))), ()
        if self.kind == "kill":
            return (), ()
        return (), ("--call", self.kind, "--after", str(random.randrange(FILES)), "--times", times)

    def first_run(self, command: list[str]) -> tuple[int, dict | None, str]:
        if self.kind != "kill":
            return self.run(command)
        victim = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(random.uniform(0.01, 0.25))
        victim.send_signal(signal.SIGKILL)
        victim.wait()
        return victim.returncode, None, ""

    def disturbed(self, number: int) -> str:
        self.kind = KINDS[number % len(KINDS)]
        by_list = number % 2 == 0
        care = random.choice([[], ["--no-sync"], ["--verify"]] if by_list else [["--verify"], ["--salvage"]])
        self.begin()
        job_copies = ["--target", str(self.target.point), "--quiet", "--resume", *care]
        command = self.copy_command(*care) if by_list else self.job_command(*job_copies)
        fault = self.fault()
        self.show_both(*fault)
        status, result, told = self.first_run(command)
        self.hide_both()
        self.check(result, by_list, status in (0, 1))
        never_synced = self.kind == "fsync" and "0" in fault[1][-1:] and "--no-sync" not in care
        assert not never_synced or status != 0, "it says that all is on the disk"
        stands = {name: (self.target.folder / name).stat().st_ino for name in self.recorded()}
        copied_then = [name for name, (copied, _) in self.evidence().items() if copied == 1]
        self.complete(by_list, care, job_copies, stands)
        return (f"{number}: {self.kind}, by {'list' if by_list else 'job'} {' '.join(care)}: status {status}, "
                f"{len(copied_then)} copied, {len(stands)} with check sum")

    def complete(self, by_list: bool, care: list[str], job_copies: list[str], stands: dict[str, int]) -> None:
        self.show_both()
        if by_list:
            _, result, _ = self.run(self.copy_command("--failed", *care), 0)
            assert result["copied"] == FILES - len(stands), (result, len(stands))
        else:
            self.run(self.job_command(*job_copies), 0)
        self.hide_both()
        for name, inode in stands.items():
            assert (self.target.folder / name).stat().st_ino == inode, f"{name} was made again"
        for name, data in self.files.items():
            assert (self.target.folder / name).read_bytes() == data, name
        assert not (self.target.folder / "7.sha256-running").exists()
        assert not list(self.target.folder.glob(".quillon-save-*")), "the beginning of a list is left"
        subprocess.run(["sha256sum", "--quiet", "-c", "7.sha256"], cwd=self.target.folder, check=True)
        assert len(self.sums("7.sha256")) == FILES


def main() -> int:
    runs = int(sys.argv[5]) if len(sys.argv) > 5 else 100
    seed = int(os.environ.get("SEED", time.time()))
    random.seed(seed)
    print(f"seed {seed}", flush=True)
    bench = Bench(*sys.argv[1:5])
    try:
        for number in range(runs):
            print(bench.disturbed(number), flush=True)
    finally:
        bench.hide_both()
    shutil.rmtree(bench.base)
    print(f"{runs} runs: nothing was called copied that is not equal, and each was completed")
    return 0


if __name__ == "__main__":
    sys.exit(main())

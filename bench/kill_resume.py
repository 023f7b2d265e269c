#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Kills a slowed job again and again, and goes on with it.

Usage: kill_resume.py QUILLON_JOB DB_ZIP [KILLS] [SECONDS]

strace slows each opening of a file, so that a job of the made tree takes some SECONDS (60). KILLS (50) times the job is
killed at a random moment; every second time what goes on with it is killed as well. Behind each kill the evidence has to
be whole, by SQLite's own check, and to lack no more rows than two seconds make; `--resume` has to leave the very bytes of
the list of a job that was never killed, and what the evidence held may not be read again.
"""
import json
import os
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
from pathlib import Path

FOLDERS = 20
# A busy disk takes longer for one transaction than the second for which rows are gathered.
MOST_SECONDS_LOST = float(os.environ.get("LOST_SECONDS", "2"))


def make_source(folder: Path, files: int) -> None:
    for number in range(files):
        below = folder / f"f{number % FOLDERS}"
        below.mkdir(parents=True, exist_ok=True)
        head = (b"MZ" if number % 3 else b"no") + bytes([number % 251]) * 700
        (below / f"file {number}.exe").write_bytes(head)


class Bench:
    def __init__(self, program: str, database: str, seconds: float):
        self.folder = Path(tempfile.mkdtemp(prefix="quillon-kill-"))
        self.program = program
        # Each opening costs a millisecond, and what strace itself takes.
        self.files = max(200, int(seconds * 700))
        make_source(self.folder / "source", self.files)
        (self.folder / "app").mkdir()
        shutil.copy(database, self.folder / "app/db.zip")
        self.list = self.folder / "app/Data/7.csv"
        self.evidence = self.folder / "app/Data/7.sqlite"

    def command(self, *more: str) -> list[str]:
        return [self.program, "--app", str(self.folder / "app"), "--job", "7", "--source",
                str(self.folder / "source"), "--yes", "--json", "--quiet", *more]

    def run(self, *more: str) -> dict:
        done = subprocess.run(self.command(*more), capture_output=True, text=True, check=False)
        assert done.returncode == 0, done.stderr
        return json.loads(done.stdout)

    def slowed(self, *more: str) -> subprocess.Popen:
        # -D: the tracer is the child, so that the signal meets the job.
        return subprocess.Popen(["strace", "-D", "-f", "-qq", "-o", "/dev/null", "-e", "trace=openat", "-e",
                                 "inject=openat:delay_exit=1000", *self.command(*more)],
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def rows_in_list(self) -> int:
        return self.list.read_bytes().count("\n".encode("utf-16-le")) if self.list.exists() else 0

    def rows_in_evidence(self) -> int:
        with sqlite3.connect(self.evidence) as database:
            whole = database.execute("PRAGMA integrity_check").fetchone()[0]
            assert whole == "ok", whole
            return database.execute("SELECT count(*) FROM file").fetchone()[0]

    def measure(self) -> tuple[float, float]:
        """Seconds of the slowed job until its list comes, and until its end."""
        begun = time.monotonic()
        job = self.slowed()
        while not self.list.exists() and job.poll() is None:
            time.sleep(0.01)
        listed = time.monotonic() - begun
        assert job.wait() == 0
        return listed, time.monotonic() - begun

    def kill_somewhere(self, earliest: float, latest: float, *more: str) -> float | None:
        """Gives the rows a second of the job that was killed; None for one that came to its end before."""
        job = self.slowed(*more)
        end = time.monotonic() + random.uniform(earliest, latest)
        begun = end  # of the list
        while time.monotonic() < end and job.poll() is None:
            time.sleep(0.01)
            if self.list.exists():
                begun = min(begun, time.monotonic())
        job.send_signal(signal.SIGKILL)
        job.wait()
        if job.returncode != -signal.SIGKILL:
            return None
        return self.rows_in_list() / max(time.monotonic() - begun, 0.1)

    def check_evidence(self, rate: float) -> int:
        if not self.evidence.exists():
            return 0
        missing = self.rows_in_list() - self.rows_in_evidence()
        assert missing <= rate * MOST_SECONDS_LOST + 200, f"{missing} rows are missing at {rate:.0f} a second"
        return self.rows_in_evidence()

    def forget(self) -> None:
        for path in [self.list, self.evidence, *self.evidence.parent.glob("7.*")]:
            path.unlink(missing_ok=True)
        shutil.rmtree(self.evidence.parent / "Kept", ignore_errors=True)


def main() -> int:
    program, database = sys.argv[1], sys.argv[2]
    kills = int(sys.argv[3]) if len(sys.argv) > 3 else 50
    seconds = float(sys.argv[4]) if len(sys.argv) > 4 else 60.0
    seed = int(os.environ.get("SEED", time.time()))
    random.seed(seed)
    bench = Bench(program, database, seconds)
    bench.run()
    whole = bench.list.read_bytes()
    bench.forget()
    listed, longest = bench.measure()
    # Before the list comes there is nothing to lose: most kills come behind.
    earliest = listed * 0.9
    print(f"{bench.files} files, {longest:.1f} s slowed, seed {seed}", flush=True)
    done = 0
    while done < kills:
        bench.forget()
        rate = bench.kill_somewhere(earliest, longest)
        if rate is None:
            continue
        known = bench.check_evidence(rate)
        done += 1
        if done % 2 == 0:
            if bench.kill_somewhere(earliest, (listed + longest) / 2, "--resume") is None:
                continue
            done += 1
        result = bench.run("--resume")
        assert bench.list.read_bytes() == whole, "the list is another one"
        taken = result["resume"]["not_read_again"]
        assert taken >= known, f"{known} files were known, {taken} were not read again"
        print(f"{done}: {known} known, {taken} not read again, the list is the same", flush=True)
    shutil.rmtree(bench.folder)
    return 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A job in parts by GNU parallel and under Slurm, as docs/many-machines.md tells it: two parts are killed and tried again, and the
merged list is byte for byte that of one job. Slurm is started here, with a controller and a node of its own in a temporary folder.

Usage: cluster_test.py QUILLON_JOB QUILLON_LIST DB_ZIP CLUSTER_FOLDER [--tree FOLDER] [--parts N]
What is not installed is said to be skipped; the status is 77 when that is everything.
"""
import argparse
import contextlib
import os
import random
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SKIPPED = 77
KILLED_PARTS = (2, 3)
LONGEST = 240  # seconds for one road; far above what it takes

# Kills the first try of two parts as soon as it lists files, as a computer does that goes down.
WRAPPER = """#!/bin/sh
for part in {parts}; do
    case " $* " in *" --part $part/"*) ;; *) continue ;; esac
    mkdir "{state}/killed-$part" 2>/dev/null || continue
    "{job}" "$@" >/dev/null 2>&1 &
    pid=$!
    while kill -0 $pid 2>/dev/null && ! [ -s "{work}/part-$part/tFile.csv" ]; do :; done
    kill -KILL $pid
    wait $pid
    exit 137
done
exec "{job}" "$@"
"""

SLURM = """ClusterName=test
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={controller}
SlurmdPort={node}
SlurmUser={user}
SlurmdUser={user}
AuthType=auth/munge
AuthInfo=socket={folder}/munge.socket
CredType=cred/munge
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/controller.pid
SlurmdPidFile={folder}/node.pid
SlurmctldLogFile={folder}/controller.log
SlurmdLogFile={folder}/node.log
ProctrackType=proctrack/pgid
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SlurmdParameters=config_overrides
ReturnToService=2
MailProg=/bin/true
MpiDefault=none
NodeName={host} NodeAddr=127.0.0.1 CPUs=4 State=UNKNOWN
PartitionName=all Nodes=ALL Default=YES State=UP
"""


def fail(text):
    sys.exit("cluster_test: " + text)


def run(command, **more):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=LONGEST, **more)
    if done.returncode != 0:
        fail(f"{command[0]} has ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


def make_tree(tree):
    chance = random.Random(195)
    for number in range(40):
        folder = tree / f"d{chance.randrange(9)}" / f"folder {number}"
        folder.mkdir(parents=True)
        for file in range(chance.choice((0, 1, 3, 30))):
            head = chance.choice((b"\xff\xd8\xff\xe0", b"%PDF-1.4\n", b"", b"\0" * 64, b"text "))
            name = f"f{file}, x.{chance.choice(('jpg', 'pdf', 'zzz', 'DOC'))}"
            (folder / name).write_bytes(head * chance.choice((0, 1, 200)))


class Bench:
    """What both roads have in common: the tree, the list of one job, and the programs with a killer before them."""

    def __init__(self, given, folder):
        self.parts = given.parts
        self.cluster = given.cluster
        self.folder = folder
        self.tree = Path(given.tree) if given.tree else folder / "source"
        if not given.tree:
            make_tree(self.tree)
        app = folder / "app"
        app.mkdir()
        shutil.copy(given.database, app / "db.zip")
        run([given.job, "--job", "whole", "--source", self.tree, "--app", app, "--quiet", "--yes"])
        self.whole = app / "Data" / "whole.csv"
        self.given = given

    def prepare(self, road):
        """The working folder of a road, and its environment."""
        work = self.folder / road
        programs = work / "programs"
        programs.mkdir(parents=True)
        killer = programs / "quillon-job"
        killer.write_text(WRAPPER.format(parts=" ".join(map(str, KILLED_PARTS)), state=work, work=work, job=self.given.job))
        killer.chmod(0o755)
        (programs / "quillon-list").symlink_to(self.given.list)
        shutil.copy(self.given.database, programs / "db.zip")
        return work, {**os.environ, "QUILLON_PROGRAMS": str(programs), "QUILLON_PAUSE": "0"}

    def check(self, road, work):
        for part in KILLED_PARTS:
            if not (work / f"killed-{part}").is_dir():
                fail(f"{road}: part {part} was not killed")
        if (work / "1234.csv").read_bytes() != self.whole.read_bytes():
            fail(f"{road}: the merged list is not that of one job")
        print(f"{road}: {self.parts} parts, two of them killed and tried again, merged to the list of one job", flush=True)

    def by_parallel(self):
        work, environment = self.prepare("parallel")
        run([self.cluster / "quillon-parallel", "1234", self.tree, self.parts, work, "--quiet"],
            env={**environment, "QUILLON_PARALLEL": "--jobs 4", "HOME": str(work)})
        self.check("parallel", work)

    def by_slurm(self):
        work, environment = self.prepare("slurm")
        with slurm(self.folder / "daemons", environment) as environment:
            run([self.cluster / "quillon-slurm", "1234", self.tree, self.parts, work, "--quiet"], env=environment)
            latest = time.monotonic() + LONGEST
            while run(["squeue", "--noheader"], env=environment).strip():
                if time.monotonic() > latest:
                    fail("slurm: the jobs do not end:\n" + run(["squeue"], env=environment))
                time.sleep(0.2)
        for log in sorted(work.glob("*.log")):
            print(log.read_text(), end="", file=sys.stderr)
        self.check("slurm", work)


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


@contextlib.contextmanager
def slurm(folder, environment):
    """A cluster of this one computer, gone behind the block."""
    for name in ("state", "spool"):
        (folder / name).mkdir(parents=True)
    key = folder / "munge.key"
    key.write_bytes(os.urandom(1024))
    key.chmod(0o400)
    host = socket.gethostname().split(".")[0]
    config = folder / "slurm.conf"
    config.write_text(SLURM.format(folder=folder, host=host, controller=free_port(), node=free_port(),
                                   user=subprocess.check_output(["id", "-un"], text=True).strip()))
    environment = {**environment, "SLURM_CONF": str(config)}
    daemons = [["munged", "--foreground", "--force", f"--key-file={key}", f"--socket={folder}/munge.socket",
                f"--pid-file={folder}/munge.pid", f"--log-file={folder}/munge.log", f"--seed-file={folder}/munge.seed"],
               ["slurmctld", "-D", "-i"], ["slurmd", "-D", "-N", host]]
    running = []
    try:
        for daemon in daemons:
            running.append(subprocess.Popen(daemon, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
            if daemon[0] == "munged":
                wait_for(lambda: (folder / "munge.socket").exists(), "munge")
        wait_for(lambda: "idle" in subprocess.run(["sinfo", "--noheader"], env=environment, capture_output=True, text=True).stdout,
                 "the node of Slurm")
        yield environment
    finally:
        for daemon in reversed(running):
            daemon.send_signal(signal.SIGTERM)
            with contextlib.suppress(subprocess.TimeoutExpired):
                daemon.wait(10)
            daemon.kill()


def wait_for(ready, what):
    latest = time.monotonic() + 60
    while not ready():
        if time.monotonic() > latest:
            fail(what + " does not start")
        time.sleep(0.1)


def main():
    words = argparse.ArgumentParser()
    for name in ("job", "list", "database", "cluster"):
        words.add_argument(name, type=lambda path: Path(path).resolve())
    words.add_argument("--tree")
    words.add_argument("--parts", type=int, default=4)
    given = words.parse_args()
    roads = {"parallel": (("parallel",), Bench.by_parallel),
             "slurm": (("slurmctld", "slurmd", "sbatch", "munged"), Bench.by_slurm)}
    os.environ["PATH"] += ":/usr/sbin:/sbin"
    there = {road: walk for road, (programs, walk) in roads.items() if all(map(shutil.which, programs))}
    for road in roads.keys() - there.keys():
        print(f"{road}: skipped, as it is not installed")
    if not there:
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory(prefix="quillon-cluster-") as folder:
        os.chmod(folder, 0o755)  # munge wants nobody else to write in its folders, and others to see its socket
        bench = Bench(given, Path(folder))
        for walk in there.values():
            walk(bench)


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Copies files with names of any bytes, and lets `sha256sum -c`, a reader of its own and `quillon-list verify` check the list.

Usage: bench/manifest_names.py QUILLON_JOB QUILLON_LIST DB_ZIP [COUNT]      50000 files by default
"""
import hashlib
import os
import random
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

IN_FOLDER = 500
PIECES = [b"\n", b"\r", b"\r\n", b"\\", b"\\n", b"\\\\", b" ", b"  ", b"*", b"-", b"#", b"# end", b"\xff", b"\x80", b"\x7f", b"\x01", b".",
          "é".encode(), "日本".encode(), "\u202e".encode(), b"\xed\xa0\x80", b"a" * 64 + b"  x"]


def name_of(chance):
    name = b"".join(chance.choice(PIECES) if chance.random() < 0.5 else bytes([chance.randrange(1, 256)])
                    for _ in range(chance.randrange(1, 12))).replace(b"/", b"")
    return name[:200] if name.strip(b".") else b"x" + name


def make_tree(tree, count):
    """Check sums by path below the tree."""
    chance = random.Random(23)
    sums = {}
    while len(sums) < count:
        folder = name_of(chance)
        os.makedirs(os.path.join(tree, folder), exist_ok=True)
        for _ in range(IN_FOLDER):
            path = folder + b"/" + name_of(chance)
            if len(sums) == count or path in sums:
                continue
            data = b"%d of %d" % (len(sums), count)
            with open(os.path.join(tree, path), "wb") as file:
                file.write(data)
            sums[path] = hashlib.sha256(data).hexdigest().encode()
    return sums


def read_list(data):
    """Check sums by name, by the rule of the form alone: a line that begins with a backslash has an escaped name."""
    sums = {}
    for line in data.split(b"\n"):
        if not line or line.startswith(b"#"):
            continue
        escaped = line.startswith(b"\\")
        digest, blanks, name = line[escaped:][:64], line[escaped:][64:66], line[escaped:][66:]
        assert blanks == b"  ", line
        if escaped:
            parts = name.split(b"\\\\")
            name = b"\\".join(part.replace(b"\\n", b"\n").replace(b"\\r", b"\r") for part in parts)
        assert name not in sums, name
        sums[name] = digest
    return sums


def main():
    job, lists, database = map(os.path.abspath, sys.argv[1:4])
    count = int(sys.argv[4]) if len(sys.argv) > 4 else 50_000
    base = Path(tempfile.mkdtemp(prefix="quillon-names-"))
    try:
        app, tree, target = base / "app", base / "tree", base / "target"
        app.mkdir()
        shutil.copy(database, app / "db.zip")
        wanted = make_tree(os.fsencode(tree), count)
        subprocess.run([job, "--app", app, "--job", "J", "--source", tree, "--target", target, "--salvage", "--no-skip-list",
                        "--yes", "--quiet"], check=True, stdout=subprocess.DEVNULL)
        data = (target / "J.sha256").read_bytes()
        root = os.fsencode(tree).lstrip(b"/") + b"/"
        assert read_list(data) == {root + name: digest for name, digest in wanted.items()}, "Python reads something else"
        assert (app / "Data/J.sha256").read_bytes() == data, "the list beside the job's is another one"
        subprocess.run(["sha256sum", "--quiet", "--strict", "-c", "J.sha256"], cwd=target, check=True)
        subprocess.run([lists, "verify", "J", "--against", target, "--app", app, "--json"], check=True)
        print(f"{count} names: sha256sum, Python and quillon-list agree")
    finally:
        shutil.rmtree(base)
    return 0


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    sys.exit(main())

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs quillon-job over whole trees and compares every row of its list with grade_rules.py.

Usage: grades_test.py QUILLON-JOB DB.ZIP MAKE_SAMPLE_TREE.SH

The trees: the sample tree, a tree of random files under the starter database, and many small ones under rule files that hold
every kind of defective record. When the environment variable QUILLON_SAMPLES names a folder, its files are graded as well, as
they are and filled up to the size from which a file is tested.
"""
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

sys.dont_write_bytecode = True
from grade_rules import (COMMON, CORRUPT, ENCRYPTED, GOOD, NO_EXTENSION, TOO_SMALL, UNKNOWN, ZERO_BYTES, Rules, grade_tree,
                         hex_bytes, leading_number, lines_of)

COUNTERS = {GOOD: "good", CORRUPT: "corrupt", NO_EXTENSION: "no_extension", UNKNOWN: "unknown", ENCRYPTED: "encrypted",
            TOO_SMALL: "small", ZERO_BYTES: "zero_bytes", COMMON: "common"}
NOVEMBER_15_2026 = 1794744000


def rules_of_archive(**switches):
    with zipfile.ZipFile(DATABASE) as archive:
        files = {name: archive.read(name) for name in archive.namelist() if not name.endswith("/")}
    terms = {name.split("/", 1)[1]: raw for name, raw in files.items() if name.startswith("Database/")}
    settings = {name.split("/", 1)[1]: raw for name, raw in files.items() if name.startswith("Settings/")}
    return Rules(terms, settings["Errors.dat"], settings["CommonHeaders.dat"], settings["SkipList.dat"], **switches)


class Application:
    """An application folder as a first run leaves it."""

    def __init__(self, folder):
        self.folder = folder / "app"
        self.data = self.folder / "Data"
        self.folder.mkdir()
        shutil.copy(DATABASE, self.folder / "db.zip")
        (folder / "nothing").mkdir()
        self.run(folder / "nothing")

    def run(self, source, *options):
        """The job's result and the rows of its list."""
        command = [JOB, "--app", self.folder, "--job", "grades", "--source", source, "--json", "--yes", "--quiet", *options]
        done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        assert done.returncode == 0, done.stderr.decode(errors="replace")
        text = (self.data / "grades.csv").read_bytes().decode("utf-16-le", "surrogatepass")
        assert text == "" or text.endswith("\r\n")
        return json.loads(done.stdout), text.split("\r\n")[:-1]

    def put_aside_rules(self, folder):
        """Empties the rule folders; the answer puts the old ones back."""
        names = ("Database", "Settings")
        for name in names:
            (self.data / name).rename(folder / name)

        def put_back():
            for name in names:
                shutil.rmtree(self.data / name)
                (folder / name).rename(self.data / name)
        return put_back

    def replace_rules(self, terms, messages, common, skip):
        for name in ("Database", "Settings"):
            shutil.rmtree(self.data / name, ignore_errors=True)
            (self.data / name).mkdir()
        for name, raw in terms.items():
            (self.data / "Database" / name).write_bytes(raw)
        for name, raw in {"Errors.dat": messages, "CommonHeaders.dat": common, "SkipList.dat": skip}.items():
            (self.data / "Settings" / name).write_bytes(raw)


class Generator:
    """Random files and rules; a number gives the same ones for ever."""

    def __init__(self, seed):
        self.random = random.Random(seed)

    def some(self, *choices):
        return self.random.choice(choices)

    def noise(self, length):
        return self.random.randbytes(length)

    def header_of(self, line):
        """A header for which the record holds, or just misses."""
        fields = line.split(b",")
        if len(fields) < 3:
            return self.noise(600)
        term = hex_bytes(fields[1]) if fields[2] == b"H" else fields[1]
        position = int(leading_number(fields[0])) or self.random.randint(1, 513 - len(term))
        header = bytearray(self.some(self.noise(600), b" " * 600, bytes(600)))
        if self.random.random() < 0.5:
            term = self.some(term.upper(), term.lower(), term[:-1] + self.noise(1))
        start = max(0, position - 1 + self.some(0, 0, 0, 0, 0, 1, -1))
        header[start:start + len(term)] = term
        return bytes(header)

    def size(self):
        return self.some(0, 1, 511, 512, 513, 600, 600, 600, 700, 4096)

    def file_name(self, number, extension):
        stem = self.some("f", "a,b", "x.tar", ".hidden", "\u00fcber", "tab\t", "gr>eater", "back\\slash") + str(number)
        ending = self.some("", ".", "." + extension, "." + extension, "." + extension, "." + extension.upper())
        return os.fsencode(stem + ending) + self.some(b"", b"", b"", b"\xff") * (ending == "")

    def record(self, described):
        position = self.some("0", "0", "1", "1", "2", "3", "-1", "0.4", "1.5", "2.5", "512", "513", "514", "x", "", "2x", " 3")
        term = self.some("MZ", "mz", "4D5A", "4d5", "00", "G4", "Z", " ", "", "C4", "\u00c4", "never", "4D5A00FF")
        kind = self.some("H", "H", "T", "T", "h", "")
        line = ",".join([position, term, kind] + (["  Kind %d " % self.random.randint(0, 99)] if described else []))
        cut = line.split(",")[:self.some(1, 2, 3)] if self.random.random() < 0.15 else [line]
        return self.some("", "nocomma", *[",".join(cut)] * 30)

    def rule_file(self, described, longest):
        lines = [self.record(described) for _ in range(self.random.randint(0, longest))]
        return "".join(line + "\r\n" for line in lines).encode("cp1252")


class GradesTest(unittest.TestCase):
    maxDiff = 4000

    @classmethod
    def setUpClass(cls):
        # One for all: unpacking the starter database takes its time.
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.app = Application(Path(folder.name))

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def judge(self, source, rules, *options):
        """Compares every row and every counter; the counts of the messages come back."""
        wanted, counts, skipped = grade_tree(source, rules)
        result, rows = self.app.run(source, *options)
        for row, (path, date, size, attributes, grade) in zip(rows, wanted):
            front, token, verdict = row.partition(";")[0], *row.partition(";")[2].split(",", 1)
            self.assertEqual((front, verdict), (f"{path},{date},{size},{attributes}", grade))
            self.assertEqual(len(token), 4)
        self.assertEqual(len(rows), len(wanted))
        counters = result["counters"]
        for message, name in COUNTERS.items():
            self.assertEqual(counters[name], counts[message], name)
        self.assertEqual((counters["files"], counters["skipped"]), (len(wanted), skipped))
        self.assertEqual(counters["tested"], rules.opened)
        recovered = counts[GOOD] + counts[COMMON]
        quality = f"{100 * recovered / (recovered + counts[CORRUPT]):.2f}%" if counts[GOOD] else "0"
        self.assertEqual(result["quality"], quality)
        return counts

    def write(self, path, raw):
        path = os.path.join(os.fsencode(self.folder / "source"), path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(raw)
        os.utime(path, (NOVEMBER_15_2026, NOVEMBER_15_2026))

    def random_tree(self, generator, extensions, records, count):
        for number in range(count):
            extension = generator.some(*extensions)
            lines = records.get(extension, [b""]) if generator.random.random() < 0.8 else records[""]
            name = generator.file_name(number, extension)
            folder = generator.some(b"", b"sub", b"sub/deep.er", b"other,one", b"thumbs")
            header = generator.header_of(generator.some(*lines))
            self.write(os.path.join(folder, name), header.ljust(4096, b".")[:generator.size()])

    def test_sample_tree(self):
        source = self.folder / "sample"
        subprocess.run(["sh", SAMPLE_TREE, source], check=True, stdout=subprocess.DEVNULL)
        counts = self.judge(source, rules_of_archive())
        for message in (GOOD, CORRUPT, NO_EXTENSION, UNKNOWN, TOO_SMALL, ZERO_BYTES, COMMON):
            self.assertGreater(counts[message], 0, f"the sample tree has no file of message {message + 1}")
        self.judge(source, rules_of_archive(use_common=False, use_skip=False), "--no-common-headers", "--no-skip-list")

    def test_random_files_under_the_starter_database(self):
        generator = Generator(1)
        rules = rules_of_archive()
        records = {name[:-len(".dat")]: lines_of(raw) or [b""] for name, raw in rules.term_files.items()}
        records[""] = rules.common
        self.random_tree(generator, sorted(records.keys() - {""}) + ["qqq", "zzz9"] * 40, records, 1500)
        counts = self.judge(self.folder / "source", rules)
        for message in (GOOD, CORRUPT, UNKNOWN, COMMON):
            self.assertGreater(counts[message], 50, "the tree is not varied enough to prove anything")
        self.judge(self.folder / "source", rules_of_archive(use_common=False), "--no-common-headers")

    def test_defective_records_and_own_messages(self):
        endings = ["abc", "def", "ghi", "jkl", "none"]
        heads = [b"1,MZ,T", b"3,4D5A,H", b"0,MZ,T", b"512,Z,T", b"2,mz,T", b"1,C45A,H", b"9,never,T", b"1,0400,H"]
        self.addCleanup(self.app.put_aside_rules(self.folder))
        seen = [0] * 10
        for seed in range(25):
            with self.subTest(seed=seed):
                generator = Generator(seed)
                terms = {f"{ending}.dat": generator.rule_file(False, 3) for ending in endings[:-1]}
                messages = b"".join(b"Message %d \r\n" % number for number in range(generator.some(9, 10, 10, 10, 11)))
                common = generator.rule_file(True, 3)
                skip = generator.some(b"", b"[fx]3[0-4]\r\n", b"thumbs\r\n[x\r\nf\r\n", b"#[!5]\r\n")
                self.app.replace_rules(terms, messages, common, skip)
                shutil.rmtree(self.folder / "source", ignore_errors=True)
                self.random_tree(generator, endings, dict.fromkeys(endings + [""], heads), 40)
                counts = self.judge(self.folder / "source", Rules(terms, messages, common, skip))
                seen = [old + new for old, new in zip(seen, counts)]
        for message in (GOOD, CORRUPT, UNKNOWN, COMMON):
            self.assertGreater(seen[message], 50, "the rules are not varied enough to prove anything")

    def test_samples(self):
        if not os.environ.get("QUILLON_SAMPLES"):
            self.skipTest("QUILLON_SAMPLES names no folder of sample files")
        samples = Path(os.environ["QUILLON_SAMPLES"])
        counts = self.judge(samples, rules_of_archive())
        print(f"{samples}: {sum(counts)} rows, counts of the ten messages {counts}", file=sys.stderr)
        source = self.folder / "source"
        for path in samples.rglob("*"):
            if path.is_file() and not path.is_symlink():
                target = source / path.relative_to(samples)
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_bytes(path.read_bytes().ljust(512, b"\0"))
        counts = self.judge(source, rules_of_archive())
        print(f"the same filled up: {sum(counts)} rows, {counts}", file=sys.stderr)


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    JOB, DATABASE, SAMPLE_TREE = (os.path.abspath(argument) for argument in sys.argv[1:4])
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])

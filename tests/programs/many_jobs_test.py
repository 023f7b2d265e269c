# SPDX-License-Identifier: MIT
"""docs/many-jobs.md tells the truth: a hundred jobs are collected, and each of its questions has the answer of an independent count.

Usage: many_jobs_test.py QUILLON_JOB QUILLON_LIST DB_ZIP PROJECT_FOLDER"""

import collections
import json
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

JOB, LIST, DATABASE, PROJECT = sys.argv[1:5]
KINDS = 4  # jobs that are really done; the others are copies of their evidence
JOBS = 100
SKIPPED = 77


def questions():
    return re.findall(r"```sql\n(.*?)```", Path(PROJECT, "docs/many-jobs.md").read_text(), re.DOTALL)


def asked(database, sql, *ahead):
    """Rows as the shell of SQLite gives them."""
    shell = subprocess.run(["sqlite3", "-readonly", "-json", str(database), *ahead, sql], capture_output=True, text=True, check=True)
    return [tuple(row.values()) for row in json.loads(shell.stdout or "[]")]


class ManyJobs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.room = tempfile.TemporaryDirectory(prefix="quillon-many-")
        cls.folder = Path(cls.room.name)
        app = cls.folder / "app"
        app.mkdir()
        shutil.copy(DATABASE, app / "db.zip")
        cls.rows = []
        for kind in range(KINDS):
            source = cls.folder / "source"
            for number in range(6 + kind):
                path = source / f"d{number % 3}" / f"a{number}.jpg"
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(b"\xff\xd8\xff\xe0\0\x10JFIF" + bytes(600) if number % (kind + 2) else bytes(600 + number))
            (source / f"new{kind}.zzq").write_bytes(b"text of no kind " * 50)
            subprocess.run([JOB, "--job", f"kind{kind}", "--source", source, "--app", app, "--quiet", "--yes"], check=True,
                           stdout=subprocess.DEVNULL)
            told = subprocess.run([LIST, "export", f"kind{kind}", "--format", "jsonl", "--app", app], check=True, capture_output=True)
            cls.rows.append([json.loads(line) for line in told.stdout.splitlines()])
        cls.evidence = []
        for number in range(JOBS):
            path = cls.folder / f"job {number:02}'s.sqlite"
            shutil.copy(app / "Data" / f"kind{number % KINDS}.sqlite", path)
            cls.evidence.append(path)
        cls.all = cls.folder / "all.sqlite"
        subprocess.run([Path(PROJECT, "data/many-jobs/quillon-collect"), cls.all, *cls.evidence], check=True)

    @classmethod
    def tearDownClass(cls):
        cls.room.cleanup()

    def files(self):
        """Each file of each job, with the number of its job."""
        for number in range(JOBS):
            for row in self.rows[number % KINDS]:
                yield number, row

    def test_every_job_is_collected(self):
        expected = [(number + 1, str(path), f"kind{number % KINDS}", "complete", len(self.rows[number % KINDS]))
                    for number, path in enumerate(self.evidence)]
        self.assertEqual(asked(self.all, "SELECT number, evidence, id, end, files FROM job ORDER BY number"), expected)

    def test_the_worst_jobs_come_first(self):
        qualities = []
        for rows in self.rows:
            grades = collections.Counter(row["grade"] for row in rows)
            good = grades["good"] + grades["common-header"]
            qualities.append(round(100 * good / (good + grades["corrupt"]), 2))
        worst = sorted((qualities[number % KINDS], f"kind{number % KINDS}") for number in range(JOBS))[:20]
        self.assertEqual([(row[3], row[0]) for row in asked(self.all, questions()[0])], worst)

    def test_unknown_extensions_are_counted_by_job_and_file(self):
        jobs, files = collections.defaultdict(set), collections.Counter()
        for number, row in self.files():
            if row["grade"] == "unknown":
                jobs[row["extension"]].add(number)
                files[row["extension"]] += 1
        expected = sorted(((name, len(jobs[name]), files[name]) for name in files), key=lambda row: (-row[1], -row[2], row[0]))
        self.assertEqual(asked(self.all, questions()[1]), expected[:30])
        self.assertTrue(expected)

    def test_corrupt_extensions_are_told_by_their_share(self):
        files, corrupt = collections.Counter(), collections.Counter()
        for _, row in self.files():
            files[row["extension"]] += 1
            corrupt[row["extension"]] += row["grade"] == "corrupt"
        found = {row[0]: row for row in asked(self.all, questions()[2])}
        self.assertEqual(found["jpg"], ("jpg", files["jpg"], JOBS, round(100 * corrupt["jpg"] / files["jpg"], 1)))

    def test_reasons_are_added_up(self):
        files = collections.Counter(row["reason"] for _, row in self.files() if row["reason"])
        self.assertEqual({row[0]: row[1] for row in asked(self.all, questions()[3])}, dict(files))
        self.assertTrue(files)

    def test_whole_jobs_are_not_told_as_broken(self):
        self.assertEqual(asked(self.all, questions()[4]), [])

    def test_two_jobs_are_compared_by_attach(self):
        attach = f"ATTACH '{self.folder / 'app' / 'Data' / 'kind3.sqlite'}' AS second"
        first = self.folder / "app" / "Data" / "kind0.sqlite"
        before = {row["path"]: row for row in self.rows[0]}
        gained = [(row["path"], before[row["path"]]["grade"], "good") for row in self.rows[3]
                  if row["grade"] == "good" and row["path"] in before and before[row["path"]]["grade"] != "good"]
        self.assertEqual(asked(first, questions()[5], attach), sorted(gained)[:100])
        self.assertTrue(gained)
        places = collections.defaultdict(list)
        for row in self.rows[3]:
            places[row["name"], row["size"]].append(row["path"])
        same = [row["path"] for row in self.rows[0] for _ in places[row["name"], row["size"]]]
        self.assertEqual(len(asked(first, questions()[6], attach)), len(same))


if __name__ == "__main__":
    if not shutil.which("sqlite3"):
        print("skipped: sqlite3 is not installed")
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1])

# SPDX-License-Identifier: MIT
"""Every figure of quillon-list and of its report, against a count of the lists and the files themselves, on random trees.

Usage: figures_test.py QUILLON_JOB QUILLON_LIST DATABASE"""

import collections
import html.parser
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

JOB, LIST, DATABASE = sys.argv[1:4]
PARTS = ["77-Part 1", "77-Part 2", "77"]
OTHERS = ["770", "77x-Part 1"]  # no jobs of the case 77
GRADES = ["good", "corrupt", "no-extension", "unknown", "encrypted", "access-error", "too-small", "zero-bytes", "invalid-name",
          "common-header"]  # in the order of the lines of Errors.dat
FOLDERS = ["photos", "a b", "a-b", "<b>&amp;\"'", "caf\u00e9", "x,y", "\u65e5\u672c"]
HEADS = [b"\xff\xd8\xff\xe0\0\x10JFIF", b"\x89PNG\r\n\x1a\n", b"%PDF-1.4\n", b"PK\3\4", b"GIF89a", b"RIFF\0\0\0\0WAVE"]
ENDINGS = ["jpg", "JPG", "png", "pdf", "gif", "txt", "zzq", "", "tar.gz"]


def make_tree(folder, chance):
    for number in range(chance.randint(80, 160)):
        below = folder.joinpath(*(chance.choice(FOLDERS) for _ in range(chance.randint(0, 4))))
        below.mkdir(parents=True, exist_ok=True)
        ending = chance.choice(ENDINGS)
        head = chance.choice([chance.choice(HEADS), bytes(64), chance.randbytes(64)])
        size = chance.choice([0, 1, 511, 512, 600, 5000, 70_000])
        (below / (f"f {number}" + ("." + ending if ending else ""))).write_bytes((head + chance.randbytes(64) + bytes(size))[:size])


def native(text):
    """The bytes of a path in list text."""
    return b"".join(bytes([ord(c) - 0xDC00]) if 0xDC00 <= ord(c) <= 0xDCFF else c.encode()
                    for c in text.replace(">", ","))


class Count:
    def __init__(self):
        self.files = self.bytes = 0
        self.grades = collections.Counter()

    def add(self, row):
        self.files += 1
        self.bytes += row["size"]
        self.grades[row["grade"]] += 1

    @property
    def recovered(self):
        return self.grades["good"] + self.grades["common-header"]

    @property
    def lost(self):
        return self.grades["corrupt"]

    @property
    def quality(self):
        judged = self.recovered + self.lost
        return self.recovered / judged if judged else None


def counted(rows, keys):
    """A count for each of the names that a row stands for."""
    counts = collections.defaultdict(Count)
    for row in rows:
        for key in keys(row):
            counts[key].add(row)
    return counts


def branches(depth):
    def of(row):
        parts = row["folder"].split("/") if row["folder"] else []
        return ["/".join(parts[:end]) for end in range(min(depth, len(parts)) + 1)]
    return of


class Tables(html.parser.HTMLParser):
    """The cells of each table of a page, under the heading ahead of it, and the text of what has a class."""

    def __init__(self, text):
        super().__init__()
        self.tables = collections.defaultdict(list)
        self.classes = collections.defaultdict(str)
        self.heading = ""
        self.open = []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        self.open.append((tag, dict(attributes).get("class", "")))
        if tag == "h2":
            self.heading = ""
        elif tag == "tr":
            self.tables[self.heading].append([])
        elif tag in ("td", "th"):
            self.tables[self.heading][-1].append("")

    def handle_endtag(self, tag):
        while self.open and self.open.pop()[0] != tag:
            pass

    def handle_data(self, data):
        tags = [tag for tag, _ in self.open]
        if "h2" in tags:
            self.heading += data
        elif "svg" not in tags and ("td" in tags or "th" in tags):
            self.tables[self.heading][-1][-1] += data
        for tag, name in self.open:
            if name and tag in ("div", "p"):
                self.classes[name] += data

    def rows(self, heading):
        return self.tables[heading][1:]


class Figures(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.room = tempfile.TemporaryDirectory(prefix="quillon-figures-")
        cls.folder = Path(cls.room.name)
        cls.app = cls.folder / "app"
        cls.app.mkdir()
        shutil.copy(DATABASE, cls.app / "db.zip")
        chance = random.Random(77)
        cls.jobs = {}
        for number, job in enumerate(PARTS + OTHERS):
            source = cls.folder / f"source {number}"
            make_tree(source, chance)
            done = subprocess.run([JOB, "--job", job, "--source", source, "--app", cls.app, "--quiet", "--yes"], check=False,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
            assert done.returncode == 0, done.stderr
            cls.jobs[job] = cls.rows_of(job, source)

    @classmethod
    def tearDownClass(cls):
        cls.room.cleanup()

    @classmethod
    def rows_of(cls, job, source):
        """The rows of the list; sizes are those of the files."""
        messages = (cls.app / "Data/Settings/Errors.dat").read_text(encoding="cp1252").split("\n")
        grades = [(message.strip(), name) for message, name in zip(messages, GRADES)]
        listed = (cls.app / f"Data/{job}.csv").read_bytes().decode("utf-16-le", "surrogatepass").split("\r\n")[:-1]
        rows = []
        for line in listed:
            fields = line.split(",", 4)
            path = native(fields[0])
            below, name = os.path.split(os.path.relpath(path, os.fsencode(source)))
            fitting = [grade for message, grade in grades if fields[4].startswith(message)]
            assert len(fitting) == 1, line
            rows.append({"folder": os.fsdecode(below), "size": os.stat(path).st_size, "grade": fitting[0],
                         "extension": name.rpartition(b".")[2].decode().lower() if b"." in name else ""})
        assert len(rows) == sum(len(files) for _, _, files in os.walk(source))
        return rows

    def ask(self, *arguments):
        done = subprocess.run([LIST, *arguments, "--app", self.app], check=False, capture_output=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout.decode()

    def case(self):
        return [row for job in PARTS for row in self.jobs[job]]

    def questions(self):
        """What names jobs, and the rows of these."""
        for job, rows in self.jobs.items():
            yield [job], rows
        yield ["--case", "77"], self.case()

    def expect(self, told, own, what):
        self.assertEqual((told["files"], told["bytes"]), (own.files, own.bytes), what)
        self.assertEqual({grade: told[grade] for grade in GRADES}, {grade: own.grades[grade] for grade in GRADES}, what)
        self.assertEqual(told["not-tested"], 0, what)
        if own.quality is None:
            self.assertIsNone(told["quality"], what)
        else:
            self.assertAlmostEqual(told["quality"], 100 * own.quality, delta=0.0051, msg=what)

    def expect_table(self, told, column, own):
        self.assertEqual({row[column] for row in told}, set(own))
        self.assertEqual(len(told), len(own))
        for row in told:
            self.expect(row, own[row[column]], row[column])

    def test_the_trees_have_every_grade_that_a_whole_disk_gives(self):
        found = {row["grade"] for row in self.case()}
        self.assertLessEqual({"good", "corrupt", "no-extension", "unknown", "too-small", "zero-bytes"}, found)

    def test_a_summary_is_the_count_of_the_rows(self):
        for names, rows in self.questions():
            self.expect(json.loads(self.ask("summary", *names, "--json")), counted(rows, lambda _: ["all"])["all"], names)

    def test_extensions_are_counted(self):
        for names, rows in self.questions():
            told = json.loads(self.ask("extensions", *names, "--json"))
            self.expect_table(told, "extension", counted(rows, lambda row: [row["extension"]]))

    def test_folders_are_counted_with_all_below_them(self):
        for names, rows in self.questions():
            for depth in (1, 3, 9):
                told = json.loads(self.ask("folders", *names, "--depth", str(depth), "--json"))
                self.expect_table(told, "folder", counted(rows, branches(depth)))

    def test_reasons_are_those_of_the_files(self):
        for names, rows in self.questions():
            files = [json.loads(line) for line in self.ask("export", *names, "--format", "jsonl").splitlines()]
            self.assertEqual(collections.Counter(file["grade"] for file in files), collections.Counter(row["grade"] for row in rows))
            own = collections.Counter(file["reason"] for file in files if file.get("reason"))
            self.assertGreater(len(own), 1)
            told = json.loads(self.ask("reasons", *names, "--json"))
            self.assertEqual({row["reason"]: row["files"] for row in told}, own)
            summary = json.loads(self.ask("summary", *names, "--json"))
            self.assertEqual({name: summary[name] for name in own}, own)

    def test_files_are_those_of_the_lists(self):
        for names, rows in self.questions():
            for grade in ("good", "corrupt"):
                paths = self.ask("files", *names, "--grade", grade, "-0").split("\0")[:-1]
                own = collections.Counter(row["folder"] for row in rows if row["grade"] == grade)
                self.assertEqual(collections.Counter(os.path.dirname(path) for path in paths), own)

    def test_the_report_tells_the_same(self):
        for number, (names, rows) in enumerate(self.questions()):
            page = self.folder / f"report {number}.html"
            self.ask("report", *names, "-o", str(page), "--depth", "2")
            tables = Tables(page.read_text(encoding="utf-8"))
            own = counted(rows, lambda _: ["all"])["all"]
            self.assertEqual(tables.classes["value"], f"{100 * own.quality:.2f}%")
            self.assertIn(f"of the {own.recovered + own.lost} files that could be judged; "
                          f"{own.files - own.recovered - own.lost} could not", tables.classes["base"])
            grades = {row[1].lower(): int(row[2].replace(",", "")) for row in tables.rows("What the grades mean")}
            self.assertEqual(sorted(grades.values()), sorted(own.grades.values()))
            self.assertEqual((grades["good"], grades["corrupt"]), (own.grades["good"], own.grades["corrupt"]))
            self.expect_page(tables.rows("Folders"), counted(rows, branches(2)), "(all of the source)")
            self.expect_page(tables.rows("Kinds of files"), counted(rows, lambda row: [row["extension"]]), "(none)")
            reasons = json.loads(self.ask("reasons", *names, "--json"))
            self.assertEqual(sorted(int(row[1].replace(",", "")) for row in tables.rows("Why files are not good")),
                             sorted(row["files"] for row in reasons))

    def expect_page(self, rows, own, unnamed):
        told = {"" if row[0] == unnamed else row[0]: row for row in rows}
        self.assertEqual(set(told), set(own))
        for name, row in told.items():
            count = own[name]
            self.assertEqual([int(cell.replace(",", "")) for cell in (row[1], *row[3:6])],
                             [count.files, count.recovered, count.lost, count.files - count.recovered - count.lost], name)
            self.assertEqual(row[6], "\u2013" if count.quality is None else f"{100 * count.quality:.2f}%", name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

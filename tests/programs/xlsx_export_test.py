# SPDX-License-Identifier: MIT
"""A workbook of quillon-list, read by another reader: every cell is what the JSON lines of the same job have.

Usage: xlsx_export_test.py QUILLON_JOB QUILLON_LIST DATABASE"""

import json
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET
import zipfile
from pathlib import Path

JOB, LIST, DATABASE = sys.argv[1:4]
MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
NAMES = [b"=1+1.jpg", b"+1", b"-1.doc", b"@x.pdf", b"_x0041_.jpg", b"__x005F_x0041__.jpg", b" blank.jpg", b"new\nline.jpg",
         b"bad\xff.jpg", b"tab\tname", b"<c>&amp;\"'.xml", b"back\\x41slash", "שלום.pdf".encode(), "日本語😀.doc".encode(),
         "inv\u202efdp.exe".encode(), b"{=1}.xls"]


def text_of(cell):
    """The text of a cell as spreadsheets read it."""
    text = "".join(part.text or "" for part in cell.iter(MAIN + "t"))
    return re.sub("_x([0-9A-Fa-f]{4})_", lambda found: chr(int(found.group(1), 16)), text)


def column_of(reference):
    number = 0
    for letter in re.match("[A-Z]+", reference).group():
        number = number * 26 + ord(letter) - 64
    return number - 1


def sheets_of(path):
    """Rows of each sheet as lists of objects by the names in the first row."""
    sheets = {}
    with zipfile.ZipFile(path) as book:
        assert book.testzip() is None
        names = [sheet.get("name") for sheet in ET.fromstring(book.read("xl/workbook.xml")).iter(MAIN + "sheet")]
        for place, name in enumerate(names, 1):
            root = ET.fromstring(book.read(f"xl/worksheets/sheet{place}.xml"))
            assert not list(root.iter(MAIN + "f")), "a formula"
            rows = []
            for row in root.iter(MAIN + "row"):
                cells = {}
                for cell in row.iter(MAIN + "c"):
                    value = text_of(cell) if cell.get("t") == "inlineStr" else float(cell.find(MAIN + "v").text)
                    cells[column_of(cell.get("r"))] = value
                rows.append(cells)
            head = rows[0]
            sheets[name] = [{head[place]: row.get(place) for place in head} for row in rows[1:]]
    return sheets


class Workbook(unittest.TestCase):
    def run_program(self, *command):
        done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def test_every_cell_is_what_the_job_knows(self):
        with tempfile.TemporaryDirectory() as name:
            app = Path(name) / "app"
            source = Path(name) / "source"
            app.mkdir()
            (source / "sub").mkdir(parents=True)
            shutil.copy(DATABASE, app / "db.zip")
            chance = random.Random(1)
            for file in NAMES:
                for folder in (source, source / "sub"):
                    Path(os.fsdecode(os.fsencode(folder) + b"/" + file)).write_bytes(chance.randbytes(700))
            for job in ("setup", "7"):
                self.run_program(JOB, "--app", app, "--job", job, "--source", source, "--yes", "--quiet")
            self.run_program(LIST, "export", "7", "--format", "xlsx", "-o", Path(name) / "7.xlsx", "--app", app)
            sheets = sheets_of(Path(name) / "7.xlsx")
            self.assertEqual(list(sheets), ["Files", "Extensions", "Folders"])
            self.check_files(sheets["Files"], self.run_program(LIST, "export", "7", "--format", "jsonl", "--app", app))
            for sheet, question, key in (("Extensions", "extensions", "extension"), ("Folders", "folders", "folder")):
                told = json.loads(self.run_program(LIST, question, "7", "--json", "--app", app))
                self.check_figures(sheets[sheet], told, key)

    def check_files(self, rows, lines):
        expected = [json.loads(line) for line in lines.splitlines()]
        self.assertEqual(len(rows), 2 * len(NAMES))
        self.assertEqual(len(rows), len(expected))
        for row, file in zip(rows, expected):
            # A cell holds no whole number above 2^53, and an empty text is an empty cell.
            file = {key: str(value) if isinstance(value, int) and abs(value) > 2 ** 53 else value for key, value in file.items()}
            self.assertEqual(row, {key: None if value == "" else value for key, value in file.items()})

    def check_figures(self, rows, told, key):
        expected = {row[key]: row for row in told}
        self.assertEqual(len(rows), len(expected))
        for row in rows:
            row[key] = row[key] or ""
            self.assertEqual(row, expected[row[key]])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

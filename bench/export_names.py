#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Exports files of random names as CSV, JSON lines and a workbook, reads them by Python, and compares every name and size.

Usage: bench/export_names.py QUILLON_JOB QUILLON_LIST DB_ZIP [COUNT]      200000 files by default"""
import csv
import json
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile
import xml.etree.ElementTree as ET
from pathlib import Path

JOB, LIST, DATABASE = map(os.path.abspath, sys.argv[1:4])
COUNT = int(sys.argv[4]) if len(sys.argv) > 4 else 200_000
IN_FOLDER = 1000
MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
PIECES = [b"=1+1", b"+", b"-", b"@", b"\t", b"\r", b"\n", b"\r\n", b",", b'"', b"'", b"\\", b"\\x41", b"_x0041_", b" ", b">", b"<&>", b"\xff",
          b"\x80", b"\xc3", "é".encode(), "日本".encode(), "😀".encode(), "\u202e".encode(), b"\x01", b"\x7f", b".jpg", b".", b"{}", b"#"]


def name_of(chance):
    name = b"".join(chance.choice(PIECES) if chance.random() < 0.5 else bytes([chance.randrange(1, 256)])
                    for _ in range(chance.randrange(1, 12))).replace(b"/", b"")
    return name[:200] if name.strip(b".") else b"x" + name


def make_tree(tree):
    """Sizes by path below the tree."""
    chance = random.Random(17)
    sizes, folders = {}, set()
    while len(sizes) < COUNT:
        folder = name_of(chance)
        if folder in folders:
            continue
        folders.add(folder)
        os.makedirs(os.path.join(tree, folder))
        for _ in range(min(IN_FOLDER, COUNT - len(sizes))):
            path = folder + b"/" + name_of(chance)
            size = chance.randrange(3)
            with open(os.path.join(tree, path), "wb") as file:
                file.truncate(size)
            sizes[path] = size
    return sizes


def bytes_of(text):
    """A name out of its text: \\xHH is a byte, a doubled backslash one."""
    return re.sub(rb"\\(\\|x[0-9A-F]{2})", lambda found: b"\\" if found[1] == b"\\" else bytes([int(found[1][1:], 16)]), text.encode())


def csv_rows(path):
    with open(path, newline="", encoding="utf-8") as file:
        yield from csv.DictReader(file)


def json_rows(path):
    with open(path, encoding="utf-8") as file:
        yield from map(json.loads, file)


def xlsx_rows(path):
    def text_of(cell):
        text = "".join(part.text or "" for part in cell.iter(MAIN + "t"))
        return re.sub("_x([0-9A-Fa-f]{4})_", lambda found: chr(int(found[1], 16)), text)

    with zipfile.ZipFile(path) as book, book.open("xl/worksheets/sheet1.xml") as sheet:
        head = None
        for _, row in ET.iterparse(sheet):
            if row.tag != MAIN + "row":
                continue
            cells = {re.match("[A-Z]+", cell.get("r"))[0]: text_of(cell) if cell.get("t") == "inlineStr" else cell.findtext(MAIN + "v")
                     for cell in row.iter(MAIN + "c")}
            if head is None:
                head = cells
            else:
                yield {head[column]: value for column, value in cells.items()}
            row.clear()


def main():
    with tempfile.TemporaryDirectory(prefix="quillon-names-") as folder:
        tree, app = os.path.join(folder, "source"), os.path.join(folder, "app")
        os.makedirs(app)
        shutil.copy(DATABASE, os.path.join(app, "db.zip"))
        sizes = make_tree(os.fsencode(tree))
        subprocess.run([JOB, "--job", "names", "--source", tree, "--app", app, "--quiet", "--yes", "--no-skip-list"], check=True,
                       stdout=subprocess.DEVNULL)
        for form, rows in (("csv", csv_rows), ("jsonl", json_rows), ("xlsx", xlsx_rows)):
            path = Path(folder, "files." + form)
            subprocess.run([LIST, "export", "names", "--app", app, "--format", form, "-o", path], check=True)
            read = {bytes_of(row["path"]): int(float(row["size"])) for row in rows(path)}
            assert read == sizes, f"{form}: {len(read)} names, {len(read.keys() - sizes.keys())} of them wrong"
            print(f"{form}: {len(read)} names and sizes came back", flush=True)


if __name__ == "__main__":
    main()

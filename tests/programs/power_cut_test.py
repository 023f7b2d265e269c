#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Cuts the power at each barrier while lists, archives and files are saved, and looks at what the disk holds then.

Usage: power_cut_test.py QUILLON-JOB QUILLON-LIST FAULT_PROBE ZIP_FAULT_PROBE TEACHING_FAULT_PROBE DB.ZIP

Needs a machine where loop devices and FUSE may be mounted; elsewhere it says so and counts as skipped (exit status 77).
"""
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

sys.dont_write_bytecode = True
import write_log

SKIPPED = 77
MARK = b"a bit of this text flips on the disk"


class FlippingDisk(write_log.LoggedFile):
    """Flips a bit of MARK once it was told to keep it; what the system has in memory stays as it was."""

    def _answer(self, code, body):
        if code == write_log.OPEN:
            return 0, struct.pack("<QII", 1, 1, 0)  # of a disk's own bytes nothing is kept in memory
        answer = super()._answer(code, body)
        if code == write_log.FSYNC:
            place = self.bytes.find(MARK)
            if place >= 0:
                self.bytes[place] ^= 1
                self.log.append((place, bytes(self.bytes[place:place + 1])))
        return answer


class PowerCut(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def check(self, prepare, work, stands, done):
        """`stands(place)` holds behind every cut, and `done(place)` behind one at the end."""
        base, log, said = write_log.record(self.folder, prepare, work)
        lengths = write_log.cuts(log, said)
        self.assertGreater(len(lengths), 1, "nothing was brought to the disk")
        for length in lengths:
            with self.subTest(cut=length, of=said):
                write_log.after_cut(self.folder, base, log, length, stands)
        write_log.after_cut(self.folder, base, log, said, done)

    # Lists of jobs.

    def run_program(self, *words):
        done = subprocess.run(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        self.assertEqual(done.returncode, 0, done.stdout.decode(errors="replace"))

    def run_job(self, place, source, *options, name="J"):
        self.run_program(JOB, "--app", place / "app", "--job", name, "--source", source, "--yes", "--quiet", *options)

    def make_source(self, name, count):
        source = self.folder / name
        source.mkdir()
        for number in range(count):
            (source / f"{number:04}.txt").write_bytes(b"x" * 600)
        return source

    def check_job(self, *options):
        older, newer = self.make_source("older", 30), self.make_source("newer", 400)
        lists = {}

        def prepare(place):
            (place / "app").mkdir()
            shutil.copy(DATABASE, place / "app/db.zip")
            self.run_job(place, older, *options)
            lists["old"] = (place / "app/Data/J.csv").read_bytes()

        def work(place):
            self.run_job(place, newer, *options)
            lists["new"] = (place / "app/Data/J.csv").read_bytes()

        def stands(place):
            data = place / "app/Data"
            kept = [file.read_bytes() for file in data.glob("Kept/*/J.csv")]
            current = (data / "J.csv").read_bytes() if (data / "J.csv").exists() else None
            self.assertTrue(lists["old"] in kept or current == lists["old"], "the older list is lost")
            if current is not None and not (data / "J.csv.unfinished").exists():
                self.assertIn(current, lists.values(), "a cut list looks whole")

        def done(place):
            self.assertEqual((place / "app/Data/J.csv").read_bytes(), lists["new"])
            self.assertFalse((place / "app/Data/J.csv.unfinished").exists())

        self.check(prepare, work, stands, done)

    def test_a_tested_list_is_whole_or_marked(self):
        self.check_job()

    def test_a_copied_list_is_whole_or_marked(self):
        self.check_job("--no-test")

    def test_a_merged_list_is_whole_or_marked(self):
        sources = {name: self.make_source(name, 200) for name in "AB"}
        lists = {}

        def rows(place, name):
            file = place / f"app/Data/{name}.csv"
            return file.read_bytes() if file.exists() else None

        def prepare(place):
            (place / "app").mkdir()
            shutil.copy(DATABASE, place / "app/db.zip")
            for name, source in sources.items():
                self.run_job(place, source, name=name)
                lists[name] = rows(place, name)

        def work(place):
            self.run_program(LIST, "merge", "M", "A", "B", "--app", place / "app")
            lists["M"] = rows(place, "M")

        def stands(place):
            for name in sources:
                self.assertEqual(rows(place, name), lists[name], f"the list of {name} is lost")
            merged = rows(place, "M")
            if merged is not None and not (place / "app/Data/M.csv.unfinished").exists():
                self.assertEqual(merged, lists["M"], "a cut list looks whole")

        def done(place):
            self.assertEqual(rows(place, "M"), lists["M"])
            self.assertFalse((place / "app/Data/M.csv.unfinished").exists())

        self.check(prepare, work, stands, done)

    def test_an_export_is_old_or_new(self):
        source = self.make_source("source", 300)
        bytes_of = {"old": b"an export of yesterday\r\n" * 1000}

        def prepare(place):
            (place / "app").mkdir()
            shutil.copy(DATABASE, place / "app/db.zip")
            self.run_job(place, source)
            (place / "out.csv").write_bytes(bytes_of["old"])

        def work(place):
            self.run_program(LIST, "export", "J", "--app", place / "app", "--output", place / "out.csv")
            bytes_of["new"] = (place / "out.csv").read_bytes()

        self.check(prepare, work, lambda place: self.assertIn((place / "out.csv").read_bytes(), bytes_of.values()),
                   lambda place: self.assertEqual((place / "out.csv").read_bytes(), bytes_of["new"]))

    def test_a_list_that_is_tested_again_is_old_or_new(self):
        lists = {}

        def prepare(place):
            for folder in ("app", "source", "local/Settings", "local/Database", "share/Settings", "share/Database"):
                (place / folder).mkdir(parents=True)
            for root in ("local", "share"):
                (place / root / "Database/qlx.dat").write_bytes(b"1,QLX!,T\r\n")
            (place / "local/Settings/Errors.dat").write_bytes(b"Header OK\r\nHeader Corrupt\r\n" + b"Other\r\n" * 8)
            rows = []
            for number in range(200):
                file = place / f"source/{number:03}.qlx"
                file.write_bytes(b"QLX!" + b"x" * 596)
                rows.append(f"{file},15/11/2026, 600, 32;Ab9x,Header Corrupt\r\n")
            lists["old"] = "".join(rows).encode("utf-16-le")
            (place / "local/J1.csv").write_bytes(lists["old"])

        def work(place):
            subprocess.run([TEACHING_PROBE, "retest", place], check=True)
            lists["new"] = (place / "local/J1.csv").read_bytes()
            self.assertNotEqual(lists["new"], lists["old"])

        self.check(prepare, work, lambda place: self.assertIn((place / "local/J1.csv").read_bytes(), lists.values()),
                   lambda place: self.assertEqual((place / "local/J1.csv").read_bytes(), lists["new"]))

    # Copies.

    def test_a_regraded_list_is_old_or_new(self):
        source = self.make_source("source", 400)
        lists = {}

        def rows(place):
            return (place / "app/Data/J.csv").read_bytes()

        def prepare(place):
            (place / "app").mkdir()
            shutil.copy(DATABASE, place / "app/db.zip")
            self.run_job(place, source)
            (place / "app/Data/Database/txt.dat").write_bytes(b"1,never,T\r\n")
            lists["old"] = rows(place)

        def work(place):
            subprocess.run([JOB, "--app", place / "app", "--regrade", "J", "--yes", "--quiet"],
                           stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=True)
            lists["new"] = rows(place)
            self.assertNotEqual(lists["new"], lists["old"])

        self.check(prepare, work, lambda place: self.assertIn(rows(place), lists.values()),
                   lambda place: self.assertEqual(rows(place), lists["new"]))

    def check_copies(self, check, *options):
        """`check(base, log, said, copies_of)`: what stands on a disk is copies_of(place), by name."""
        source = self.make_source("source", 300)
        (source / "large.bin").write_bytes(os.urandom(3_000_000))

        def prepare(place):
            (place / "app").mkdir()
            shutil.copy(DATABASE, place / "app/db.zip")
            self.run_job(place, source)

        def copies_of(place):
            return {file.name: file.read_bytes() for file in (place / "target").rglob("*") if file.is_file()}

        wanted = {file.name: file.read_bytes() for file in source.iterdir()}
        work = lambda place: self.run_job(place, source, "--target", place / "target", *options)
        check(*write_log.record(self.folder, prepare, work), copies_of, wanted)

    def test_no_copy_has_its_name_before_its_bytes(self):
        def check(base, log, said, copies_of, wanted):
            def stands(place):
                for name, content in copies_of(place).items():
                    self.assertEqual(content, wanted[name], f"{name} is cut")

            lengths = write_log.cuts(log, said)
            self.assertGreater(len(lengths), 1, "nothing was brought to the disk")
            for length in lengths:
                with self.subTest(cut=length, of=said):
                    write_log.after_cut(self.folder, base, log, length, stands)
            write_log.after_cut(self.folder, base, log, said, lambda place: self.assertEqual(copies_of(place), wanted))

        self.check_copies(check)

    def test_without_the_sync_copies_are_lost(self):
        def check(base, log, said, copies_of, wanted):
            write_log.after_cut(self.folder, base, log, said,
                                lambda place: self.assertNotEqual(copies_of(place), wanted, "this proves nothing"))

        self.check_copies(check, "--no-sync")

    # Copies that the disk does not keep as they were written.

    def check_flipped(self, status, check, *options):
        """`check(output, target)`: what the job said, and the files of the target as the disk has them."""
        source = self.make_source("source", 100)
        (source / "hurt.bin").write_bytes(b"x" * 40_000 + MARK + b"x" * 40_000)
        said = []

        def prepare(place):
            (place / "app").mkdir()
            shutil.copy(DATABASE, place / "app/db.zip")

        def work(place):
            done = subprocess.run([JOB, "--app", place / "app", "--job", "J", "--source", source, "--target", place / "target",
                                   "--yes", *options],
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
            said.append(done.stdout.decode(errors="replace"))
            self.assertEqual(done.returncode, status, said[0])

        base, log, length = write_log.record(self.folder, prepare, work, medium=FlippingDisk)
        write_log.after_cut(self.folder, base, log, length,
                            lambda place: check(said[0], {file.name: file.read_bytes() for file in (place / "target").rglob("*.*")
                                                          if file.is_file()}, source))

    def test_a_bit_that_flips_behind_a_copy_is_found(self):
        def check(said, target, source):
            self.assertRegex(said, r"hurt\.bin: what was read back is not what was written at byte 40,000")
            self.assertNotIn("hurt.bin", target)
            for file in source.glob("*.txt"):
                self.assertEqual(target[file.name], file.read_bytes())

        self.check_flipped(3, check, "--verify")

    def test_without_a_look_at_the_disk_it_is_not(self):
        self.check_flipped(0, lambda said, target, source: self.assertNotEqual(
            target["hurt.bin"], (source / "hurt.bin").read_bytes(), "this proves nothing"))

    # Files that are saved as a whole.

    def check_probe(self, name, old, new, *arguments):
        def prepare(place):
            (place / name).parent.mkdir(parents=True, exist_ok=True)
            (place / name).write_bytes(old)

        def work(place):
            subprocess.run([PROBE, *(word.format(place) for word in arguments)], check=True)

        def stands(place):
            self.assertIn((place / name).read_bytes(), (old, new))

        def done(place):
            self.assertEqual((place / name).read_bytes(), new)

        self.check(prepare, work, stands, done)

    def test_a_term_file_is_old_or_new(self):
        self.check_probe("root/Database/jpg.dat", b"1,4A464946,H\r\n", b"1,FFD8FF,H\r\n0,JFIF,T\r\n", "term",
                         "{}/root/Database/jpg.dat")

    def test_a_line_that_is_added_is_there_or_not(self):
        old = b"0,a,T,x\r\n"
        self.check_probe("root/CommonHeaders.dat", old, old + b"5,NEW,T,y\r\n", "rule", "{}/root")

    # A note that has no name in the history yet stands in the folder of the turn, whose next owner names or drops it.
    def test_no_change_comes_without_its_note(self):
        old, new = b"1,4A464946,H\r\n", b"1,FFD8FF,H\r\n"

        def prepare(place):
            for folder in ("root/Settings", "root/Database"):
                (place / folder).mkdir(parents=True)
            (place / "root/Database/jpg.dat").write_bytes(old)

        def notes(place):
            return [file.read_bytes() for file in (place / "root/Settings").rglob("*") if file.is_file()]

        def of_the_change(note):
            return b"file: Database/jpg.dat\nbefore: 14\n" + old + b"\nafter: 12\n" + new + b"\n" in note

        def stands(place):
            now = (place / "root/Database/jpg.dat").read_bytes()
            self.assertIn(now, (old, new))
            self.assertTrue(now == old or any(map(of_the_change, notes(place))), "a change without its note")
            for file in (place / "root/Settings").rglob("*.txt"):
                self.assertTrue(of_the_change(file.read_bytes()), f"{file.name} is cut")

        def done(place):
            self.assertEqual((place / "root/Database/jpg.dat").read_bytes(), new)
            self.assertTrue(any(map(of_the_change, notes(place))))

        self.check(prepare, lambda place: subprocess.run([PROBE, "note", place / "root"], check=True), stands, done)

    def test_unpacked_files_are_old_or_new(self):
        names = [f"{number}.dat" for number in range(20)]
        new = b"1,FFD8FF,H\r\n" * 200

        def prepare(place):
            (place / "local").mkdir()
            for name in names[::2]:
                (place / "local" / name).write_bytes(b"old")
            with zipfile.ZipFile(place / "a.zip", "w") as archive:
                for name in names:
                    archive.writestr(name, new)

        def found(place, name):
            file = place / "local" / name
            return file.read_bytes() if file.exists() else None

        def stands(place):
            for at, name in enumerate(names):
                self.assertIn(found(place, name), (b"old" if at % 2 == 0 else None, new))

        def done(place):
            for name in names:
                self.assertEqual(found(place, name), new)

        self.check(prepare, lambda place: subprocess.run([PROBE, "unpack", place / "a.zip", place / "local"], check=True),
                   stands, done)

    def test_a_saved_file_is_old_or_new(self):
        self.check_probe("7.csv", b"old bytes, and more of them" * 1000, b"new bytes", "save", "{}/7.csv")

    def test_bytes_that_are_kept_are_somewhere(self):
        rows = b"the only rows" * 1000

        def prepare(place):
            (place / "7.csv").write_bytes(rows)

        def stands(place):
            self.assertIn(rows, [file.read_bytes() for file in (*place.glob("7.csv"), *place.glob("Kept/*/7.csv"))])

        self.check(prepare, lambda place: subprocess.run([PROBE, "keep", place, place / "7.csv"], check=True), stands, stands)

    # Archives.

    def test_a_list_is_in_its_folder_or_in_a_whole_archive(self):
        rows = {f"1234-{letter}.csv": letter.encode() * 30_000 for letter in "AB"}

        def prepare(place):
            for name in ("local", "zips"):
                (place / name).mkdir()
            for name, content in rows.items():
                (place / "local" / name).write_bytes(content)

        def packed(place):
            if not (place / "zips/1234.zip").exists():
                return {}
            with zipfile.ZipFile(place / "zips/1234.zip") as archive:
                self.assertIsNone(archive.testzip())
                return {name: archive.read(name) for name in archive.namelist()}

        def stands(place):
            content = packed(place)
            for name, expected in rows.items():
                file = place / "local" / name
                self.assertIn(expected, (content.get(name), file.read_bytes() if file.exists() else None))

        def done(place):
            self.assertEqual(packed(place), rows)

        self.check(prepare, lambda place: subprocess.run([ZIP_PROBE, place], check=True), stands, done)


def can_mount():
    """Why this machine does not allow it; empty when it does."""
    if not all(shutil.which(name, path="/usr/sbin:/sbin:/usr/bin:/bin") for name in ("losetup", "mkfs.ext4", "mount")):
        return "losetup, mount or mkfs.ext4 is missing"
    folder = Path(tempfile.mkdtemp())
    try:
        write_log.record(folder, lambda place: None, lambda place: None)
    except OSError as error:
        return str(error)
    finally:
        shutil.rmtree(folder, ignore_errors=True)
    return ""


if __name__ == "__main__":
    if len(sys.argv) < 7:
        sys.exit(__doc__)
    JOB, LIST, PROBE, ZIP_PROBE, TEACHING_PROBE, DATABASE = sys.argv[1:7]
    reason = can_mount()
    if reason:
        print(f"Skipped: loop devices over FUSE cannot be mounted here: {reason}")
        sys.exit(SKIPPED)
    unittest.main(argv=[sys.argv[0], *sys.argv[7:]])

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Rescues damaged disks with ddrescue, and holds what quillon-list tells of their files against the undamaged tree.

Usage: sectors_test.py QUILLON-JOB QUILLON-LIST DB.ZIP

Needs a machine where loop devices may be mounted, and ddrescue (package gddrescue); elsewhere it says so and counts as
skipped (exit status 77).
"""
import fcntl
import json
import random
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SKIPPED = 77

SECTOR = 512
FILES = 2000
ENDINGS = ("docx", "xlsx", "jpg", "dat")
DISK_BYTES = 336 << 20  # xfs takes nothing smaller than 300 MiB
FS_IOC_FIEMAP = 0xC020660B


def run(*command, status=0):
    done = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, check=False)
    if status is not None and done.returncode != status:
        raise RuntimeError(f"{command}: {done.returncode}\n{done.stdout.decode()}{done.stderr.decode()}")
    return done.stdout.decode()


def extents(path):
    """Where the bytes of a file lie in its file system: (place in the file, place there, length)."""
    found = []
    with open(path, "rb") as file:
        room = bytearray(struct.pack("QQIIII", 0, 1 << 62, 0, 0, 64, 0) + bytes(64 * 56))
        fcntl.ioctl(file, FS_IOC_FIEMAP, room)
        for i in range(struct.unpack_from("I", room, 20)[0]):
            found.append(struct.unpack_from("QQQ", room, 32 + i * 56))
    return found


class Disk:
    """An image with a file system at an offset, mounted while it is used."""

    def __init__(self, image, offset, folder):
        self.image, self.offset, self.folder = image, offset, folder

    def mount(self, *options):
        self.loop = run("losetup", "--find", "--show", "--offset", self.offset, self.image).strip()
        self.folder.mkdir(exist_ok=True)
        try:
            run("mount", *options, self.loop, self.folder)
        except RuntimeError:
            run("losetup", "--detach", self.loop)
            raise

    def unmount(self):
        run("umount", self.folder)
        run("losetup", "--detach", self.loop)


def make_tree(top, noise):
    """Files of noise without zero bytes, written in turns so that each is in pieces."""
    names = []
    for number in range(FILES):
        folder = top / f"folder {number % 20}"
        folder.mkdir(exist_ok=True)
        names.append(folder / f"file {number}.{ENDINGS[number % len(ENDINGS)]}")
    for _ in range(3):
        for name in names:
            with open(name, "ab") as file:
                file.write(noise.randbytes(noise.randrange(500, 6000)).replace(b"\0", b"\1"))
        run("sync", "--file-system", top)


def damage(top, offset, noise):
    """Areas of whole sectors in files and in the slack behind their ends: (begin, end) on the disk."""
    areas = []
    for path in sorted(top.rglob("*.*")):
        if noise.random() > 0.1:
            continue
        for _, physical, length in extents(path):
            first = noise.randrange(length // SECTOR)
            count = noise.randrange(1, length // SECTOR - first + 1)
            areas.append((offset + physical + first * SECTOR, offset + physical + (first + count) * SECTOR))
    return sorted(areas)


def map_text(areas, end):
    lines, at = ["0x0 + 1"], 0
    for begin, behind in areas:
        lines += [f"{at} {begin - at} +"] if begin > at else []
        lines.append(f"{begin} {behind - begin} -")
        at = behind
    return "\n".join(lines + [f"{at} {end - at} +", ""])


def differing_sectors(one, other):
    """The numbers of the sectors in which two files of one size differ."""
    a, b = one.read_bytes(), other.read_bytes()
    assert len(a) == len(b), one
    return {at // SECTOR for at in range(0, len(a), SECTOR) if a[at:at + SECTOR] != b[at:at + SECTOR]}


class Sectors(unittest.TestCase):
    def setUp(self):
        self.place = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.place)

    def mounted(self, disk, *options):
        disk.mount(*options)
        self.addCleanup(disk.unmount)
        return disk.folder

    def job(self, source, name="J"):
        app = self.place / "app"
        app.mkdir(exist_ok=True)
        shutil.copy(DATABASE, app / "db.zip")
        run(JOB, "--app", app, "--job", name, "--source", source, "--yes", "--quiet")

    def list(self, *arguments, status=0):
        return run(LIST, *arguments, "--app", self.place / "app", status=status)

    def differing(self, tree, original):
        found = {}
        for path in sorted(original.rglob("*.*")):
            below = path.relative_to(original)
            sectors = differing_sectors(path, tree / below)
            if sectors:
                found[str(below)] = sectors
        return found

    def told(self, *arguments):
        answer = json.loads(self.list("sectors", "J", "--json", "--map", self.place / "map", *arguments))
        sectors = {}
        for file in answer["files"]:
            ranges = [(part["offset"], part["offset"] + part["bytes"]) for part in file["ranges"]]
            self.assertEqual(sum(end - begin for begin, end in ranges), file["bytes"], file)
            sectors[file["path"]] = {at // SECTOR for begin, end in ranges for at in range(begin, end, SECTOR)}
        return sectors

    def rescue(self, kind, offset, *options):
        """Makes a disk, rescues it with errors, and gives the trees of the undamaged and the rescued one."""
        noise = random.Random(kind)
        good, rescued = self.place / "good", self.place / "rescued"
        for image in (good, rescued):
            with open(image, "wb") as file:
                file.truncate(DISK_BYTES)
        disk = Disk(good, offset, self.place / "original")
        loop = run("losetup", "--find", "--show", "--offset", offset, good).strip()
        try:
            run(f"mkfs.{kind}", "-q", *options, loop)
        finally:
            run("losetup", "--detach", loop)
        disk.mount()
        try:
            make_tree(disk.folder, noise)
            areas = damage(disk.folder, offset, noise)
        finally:
            disk.unmount()
        (self.place / "errors").write_text(map_text(areas, DISK_BYTES))
        run("ddrescue", "--sparse", f"--test-mode={self.place / 'errors'}", good, rescued, self.place / "map")
        return self.mounted(disk, "-o", "ro"), Disk(rescued, offset, self.place / "tree")

    def check_markers(self, disk, hurt, options):
        """Sectors that ddrescue fills with their places are found by reading the files."""
        filled = Disk(self.place / "filled", disk.offset, self.place / "filled tree")
        shutil.copy(disk.image, filled.image)
        shutil.copy(self.place / "map", self.place / "filled map")
        run("ddrescue", "--fill-mode=l-", "/dev/zero", filled.image, self.place / "filled map")
        filled.mount("-o", options)
        try:
            self.job(filled.folder, "M")
            run(JOB, "--app", self.place / "app", "--job", "M", "--scan-sectors", "--quiet")
            self.assertEqual(sorted(self.list("files", "M", "--unread").splitlines()), sorted(hurt))
        finally:
            filled.unmount()

    def check_files_and_domain(self, original, disk, options):
        disk.mount("-o", options)
        try:
            self.job(disk.folder)
            hurt = self.differing(disk.folder, original)
            self.assertGreater(len(hurt), 100)
            self.assertEqual(self.told(), hurt)
            unread = self.list("files", "J", "--unread").splitlines()
            self.assertEqual(sorted(unread), sorted(hurt))
            wanted = {path for path in hurt if path.endswith(("docx", "xlsx"))}
            chosen = self.told("--ext", "docx,xlsx", "--domain-out", self.place / "domain")
            self.assertEqual(set(chosen), wanted)
        finally:
            disk.unmount()
        self.check_markers(disk, hurt, options)
        run("ddrescue", f"--domain-mapfile={self.place / 'domain'}", "--retry-passes=1", self.place / "good", disk.image,
            self.place / "map")
        self.mounted(disk, "-o", options)
        self.assertEqual(set(self.differing(disk.folder, original)), set(hurt) - wanted)
        self.assertEqual(set(self.told()), set(hurt) - wanted)

    def test_files_of_a_partition_with_ext4_are_told_and_made_whole(self):
        original, disk = self.rescue("ext4", 1 << 20)
        self.check_files_and_domain(original, disk, "ro,noload")

    def test_files_of_a_whole_disk_with_xfs_are_told_and_made_whole(self):
        original, disk = self.rescue("xfs", 0)
        self.check_files_and_domain(original, disk, "ro,norecovery,nouuid")

    def test_inline_files_are_told_and_a_tree_elsewhere_is_refused(self):
        image = self.place / "small"
        with open(image, "wb") as file:
            file.truncate(16 << 20)
        run("mkfs.ext4", "-q", "-F", "-O", "inline_data", image)
        tree = self.mounted(Disk(image, 0, self.place / "tree"))
        (tree / "inline.dat").write_bytes(b"x" * 60)
        run("sync", "--file-system", tree)
        self.job(tree)
        (self.place / "map").write_text(map_text([(0, 16 << 20)], 16 << 20).replace("16777216 0 +\n", ""))
        answer = json.loads(self.list("sectors", "J", "--json", "--map", self.place / "map"))
        self.assertEqual(answer["inline"], 1)
        self.assertEqual(answer["files"], [])
        shutil.copytree(tree, self.place / "carved", ignore=shutil.ignore_patterns("lost+found"))
        self.job(self.place / "carved")
        self.list("sectors", "J", "--map", self.place / "map", status=2)


def why_not():
    """Why the tests cannot run here; empty when they can."""
    for program in ("ddrescue", "losetup", "mkfs.ext4", "mkfs.xfs", "mount"):
        if shutil.which(program, path="/usr/sbin:/usr/bin:/sbin:/bin") is None:
            return f"there is no {program}"
    with tempfile.TemporaryDirectory() as name:
        for kind in ("ext4", "xfs"):
            image = Path(name) / kind
            with open(image, "wb") as file:
                file.truncate(DISK_BYTES)
            try:
                run(f"mkfs.{kind}", "-q", image)
                disk = Disk(image, 0, Path(name) / "tree")
                disk.mount()
                disk.unmount()
            except RuntimeError as error:
                return f"{kind} cannot be mounted: {str(error).splitlines()[-1]}"
    return ""


if __name__ == "__main__":
    JOB, LIST, DATABASE = (Path(argument).resolve(strict=True) for argument in sys.argv[1:4])
    reason = why_not()
    if reason:
        print("skipped:", reason)
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])

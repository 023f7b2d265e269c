# SPDX-License-Identifier: MIT
"""A disk whose writes are written down: a file that this process serves to the kernel, below a loop device.

Nothing but the kernel is asked for: the one file of the file system is the root of a FUSE mount, and the requests are answered
here. What a power cut at a barrier would leave is the disk as it was at first and the writes up to that barrier.
"""
import ctypes
import os
import stat
import struct
import subprocess
import threading

LIBC = ctypes.CDLL(None, use_errno=True)
MS_NOSUID, MS_NODEV, MNT_DETACH = 2, 4, 2
FORGET, GETATTR, SETATTR, OPEN, READ, WRITE, RELEASE, FSYNC, FLUSH, INIT, INTERRUPT, DESTROY = 2, 3, 4, 14, 15, 16, 18, 20, 25, 26, 36, 38
ENOSYS = 38
LARGEST_WRITE = 128 * 1024


def run(*command):
    """The output of a command that must succeed."""
    done = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        raise OSError(f"{command}: {done.stdout}")
    return done.stdout.strip()


class LoggedFile:
    """Serves the bytes of `image` as the file `place`. `log` holds (offset, bytes) for a write and None for a barrier."""

    def __init__(self, image, place):
        self.bytes = bytearray(image)
        self.log = []
        self.place = place
        place.touch()
        self.device = os.open("/dev/fuse", os.O_RDWR | os.O_CLOEXEC)
        options = f"fd={self.device},rootmode=100600,user_id=0,group_id=0".encode()
        if LIBC.mount(b"quillon-write-log", os.fsencode(place), b"fuse", MS_NOSUID | MS_NODEV, options) != 0:
            os.close(self.device)
            raise OSError(ctypes.get_errno(), "no FUSE mount")
        self.thread = threading.Thread(target=self._serve, daemon=True)
        self.thread.start()

    def close(self):
        LIBC.umount2(os.fsencode(self.place), MNT_DETACH)
        self.thread.join(20)
        os.close(self.device)

    def _serve(self):
        while True:
            try:
                request = os.read(self.device, LARGEST_WRITE + 65536)
            except OSError:
                return  # unmounted
            _, code, unique = struct.unpack_from("<IIQ", request)
            if code in (FORGET, INTERRUPT):
                continue
            error, answer = self._answer(code, request[40:])
            try:
                os.write(self.device, struct.pack("<IiQ", 16 + len(answer), -error, unique) + answer)
            except OSError:
                return
            if code == DESTROY:
                return

    def _answer(self, code, body):
        if code == INIT:
            flags = 1 << 5  # writes of more than one page
            return 0, struct.pack("<IIIIHHIIHHI28x", 7, 31, 65536, flags, 16, 12, LARGEST_WRITE, 1, 32, 0, 0)
        if code in (GETATTR, SETATTR):
            size = len(self.bytes)
            return 0, struct.pack("<QII6Q10I", 3600, 0, 0, 1, size, size // 512, 0, 0, 0, 0, 0, 0, stat.S_IFREG | 0o600, 1, 0, 0,
                                  0, 4096, 0)
        if code == OPEN:
            return 0, struct.pack("<QII", 1, 0, 0)
        if code == READ:
            _, offset, size = struct.unpack_from("<QQI", body)
            return 0, bytes(self.bytes[offset:offset + size])
        if code == WRITE:
            _, offset, size = struct.unpack_from("<QQI", body)
            data = body[40:40 + size]
            self.bytes[offset:offset + size] = data
            self.log.append((offset, data))
            return 0, struct.pack("<II", size, 0)
        if code == FSYNC:
            self.log.append(None)
            return 0, b""
        return (0 if code in (FLUSH, RELEASE, DESTROY) else ENOSYS), b""


# Bytes of an image, and how the file system is made.
KINDS = {"ext4": (16 * 1024 * 1024, ["mkfs.ext4", "-q", "-b", "1024"]), "xfs": (300 * 1024 * 1024, ["mkfs.xfs", "-q"])}


class Volume:
    """A mounted file system on a file."""

    def __init__(self, image, place, kind="ext4"):
        self.device = run("losetup", "-f", "--show", image)
        self.place = place
        place.mkdir(exist_ok=True)
        try:
            run("mount", "-t", kind, self.device, place)
        except OSError:
            run("losetup", "-d", self.device)
            raise

    def __enter__(self):
        return self.place

    def __exit__(self, *_):
        run("umount", self.place)
        run("losetup", "-d", self.device)


def record(folder, prepare, work, kind="ext4", afterwards=lambda place: None, medium=LoggedFile):
    """Runs `work(place)` over a new volume on a `medium` that `prepare(place)` has filled. Gives the volume as it was at first, the
    log of its writes, and how long the log was when `work` had come back; it goes on with those of `afterwards(place)` and of the
    end."""
    image = folder / "base"
    size, make = KINDS[kind]
    with open(image, "wb") as file:
        file.truncate(size)
    run(*make, image)
    place = folder / "volume"
    with Volume(image, place, kind):
        prepare(place)
    base = image.read_bytes()
    logged = medium(base, folder / "disk")
    try:
        with Volume(folder / "disk", place, kind):
            work(place)
            said = len(logged.log)
            afterwards(place)
    finally:
        logged.close()
    return base, logged.log, said


def cuts(log, said):
    """The lengths of the log at its barriers, each once, up to the moment when the work had come back."""
    barriers = [number + 1 for number, entry in enumerate(log[:said]) if entry is None]
    return sorted(set(barriers + [said]))


def after_cut(folder, base, log, length, look):
    """Calls `look(place)` on the volume that a power cut behind so many entries of the log leaves."""
    disk = bytearray(base)
    for entry in log[:length]:
        if entry is not None:
            disk[entry[0]:entry[0] + len(entry[1])] = entry[1]
    image = folder / "cut"
    image.write_bytes(disk)
    with Volume(image, folder / "looked at"):
        look(folder / "looked at")

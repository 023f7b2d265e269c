#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the layout rules of docs/architecture.md over a source tree; prints the order of the folders of src as their
includes give it, and one line for each violation. How long a function is, clang-tidy tells.

Usage: check_layout.py [ROOT]      exit status 0: every rule holds, 1: violations were printed
"""
import os
import re
import sys
from collections import namedtuple
from pathlib import Path

# The table of folders there, from the lowest floor to the highest: a file includes only from its own folder or a lower one.
ARCHITECTURE = "docs/architecture.md"

MAX_FILE_LINES = 400

SOURCE_FOLDERS = ("src", "tests", "tools", "bench", "fuzz")
SKIPPED_FOLDERS = {".git", ".cache", "build", "__pycache__"}

# Headers with the ending .h that are libraries and not doors to the system.
LIBRARY_HEADERS = re.compile(r"^(fmt/|gtest/|gmock/|benchmark/|zip\.h$|sqlite3\.h$|zstd\.h$|xlsxwriter\.h$|openssl/|avahi-client/|avahi-common/)")
# Files in which Qt may stand. The programs without a window share the programs folder with the one that has one.
QT_FILES = re.compile(r"(^|/)frm[^/]*$|^src/(ui|widgets)/(?!hex_layout)|^src/programs/quillon(?!_job|_messenger)[^/]*$")
QT_HEADER = re.compile(r"^(Q[A-Z][A-Za-z]*|Qt[A-Za-z]*/.*)$")

# What asks the system for something stands behind a door: in a folder that is one. Prefixes of file names are the doors.
Door = namedtuple("Door", "what pattern folders")
DOORS = {
    "files": Door("the file system", re.compile(
        r"<filesystem>|\bstd::filesystem::|<fstream>|\bstd::[iow]*fstream\b|<cstdio>|\bfopen\b|\bQ(Save)?File\b"
        r"|\bQ(Dir|DirIterator|FileInfo|Settings|StandardPaths|LockFile|FileSystemWatcher)\b"), ("src/platform/",)),
    "clock": Door("a clock", re.compile(
        r"\b(system|steady|high_resolution|utc|file)_clock\b|<ctime>|\b(std::|::)time\(|\b(localtime|gmtime|mktime)(_r)?\b"
        r"|\bclock_gettime\b|\bgettimeofday\b|\bQ(DateTime|Time|Date|ElapsedTimer)\b"), ("src/platform/",)),
    "locale": Door("the locale", re.compile(
        r"<c?locale>|\bstd::locale\b|\b(set|new|use)locale\b|\bstrftime|\bstd::put_time\b|\bQLocale\b|<cw?ctype>"),
        ("src/platform/",)),
    "environment": Door("the environment", re.compile(r"\b(secure_)?getenv\b|\b(set|put|unset)env\b|\bqgetenv\b|\bqEnvironment"),
                        ("src/platform/",)),
    "programs": Door("other programs and signals", re.compile(
        r"<csignal>|\bstd::(signal|system|raise)\b|\bpopen\b|\bQProcess\b"), ("src/platform/",)),
    "errno": Door("the system's error numbers", re.compile(r"<cerrno>|\berrno\b"), ("src/platform/",)),
    "chance": Door("chance", re.compile(r"<random>|\bstd::(random_device|rand)\b|\bQRandomGenerator\b"), ("src/platform/",)),
    "streams": Door("the standard streams", re.compile(r"<iostream>|\bstd::c(in|out|err|log)\b|\bq(Debug|Warning|Info|Critical)\b"),
                    ("src/platform/", "src/programs/")),
    "threads": Door("threads", re.compile(r"<(thread|future)>|\bstd::(j?thread|async|packaged_task)\b|\bQ(Thread|tConcurrent)\b"),
                    ("src/platform/", "src/ahead/")),
}
# Files that have a door of their own, each with its reason. A line that nothing needs any more is a violation.
EXEMPT = {
    ("src/text/unicode.cpp", "locale"): "asks for the fixed C.UTF-8 table, never for the user's locale, and lies below platform",
    ("src/archive/zip_handle.cpp", "errno"): "libzip tells system errors by their numbers",
    ("src/widgets/qt_text.h", "files"): "takes from QFile how Qt writes names, and opens nothing",
    ("src/widgets/icon.cpp", "files"): "reads the icons that are part of the program; Qt alone knows their paths",
}

# A comment tells the rule itself, not where somebody once wrote it; and nothing may depend on one machine or mirror.
# (The brackets keep these lines from finding themselves.)
FORBIDDEN = [
    (re.compile(r"\bParts? [0-9]+\.[0-9]"), "tells where a rule is written instead of the rule"),
    (re.compile(r"\bspecificatio[n]\b|\bspe[c]\.md", re.I), "tells where a rule is written instead of the rule"),
    (re.compile(r"/wor[k]/|/hom[e]/[a-z]"), "names a path of one machine"),
    (re.compile(r"deb\.debia[n]\.org|registry\.npmj[s]"), "names a package host"),
    (re.compile(r"\bFIXM[E]\b|\bTOD[O]\b|\bXX[X]\b"), "leaves work behind in a comment"),
]

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:<([^>]+)>|"([^"]+)")', re.M)


def project_files(root):
    for folder, folders, files in os.walk(root):
        folders[:] = sorted(name for name in folders if name not in SKIPPED_FOLDERS)
        for file in sorted(files):
            path = Path(folder, file)
            if file not in SKIPPED_FOLDERS and path.is_file():
                yield path, path.relative_to(root).as_posix()


def is_cpp(name):
    return name.startswith(SOURCE_FOLDERS) and name.endswith((".cpp", ".h"))


def is_script(name):
    return name.endswith((".cmake", ".py", ".sh", "CMakeLists.txt")) or name == ".ci/run"


def screen_of(name):
    """The screen that a file belongs to: frmMain for src/ui/frmMain_job.cpp; None for a file of no screen."""
    match = re.match(r"(frm[A-Za-z0-9]*)", name.rsplit("/", 1)[-1])
    return match.group(1) if match else None


def floors_told(root):
    """The folders of src in the order of the table in the architecture page."""
    page = root / ARCHITECTURE
    return re.findall(r"^\| `src/(\w+)` \|", page.read_text(), re.M) if page.is_file() else []


def folder_includes(root):
    """Each folder of src with the other folders that its files include from."""
    src = root / "src"
    folders = {path.name: set() for path in src.iterdir() if path.is_dir()} if src.is_dir() else {}
    for own, others in folders.items():
        for path in sorted((src / own).rglob("*")):
            if is_cpp(path.relative_to(root).as_posix()):
                quoted = (include.split("/")[0] for _, include in INCLUDE.findall(path.read_text(errors="replace")) if "/" in include)
                others.update(other for other in quoted if other in folders and other != own)
    return folders


def floors_of(includes, told):
    """The folders in the order that their includes give, those on one height side by side; and those that form a circle."""
    heights, left = [], dict(includes)
    placed = set()
    while left:
        free = sorted((name for name, others in left.items() if others <= placed),
                      key=lambda name: (told.index(name) if name in told else len(told), name))
        if not free:
            break
        heights.append(free)
        placed.update(free)
        left = {name: others for name, others in left.items() if name not in placed}
    # What only stands above a circle is not part of it.
    while True:
        used = set().union(*left.values()) if left else set()
        inner = {name: others for name, others in left.items() if name in used}
        if len(inner) == len(left):
            return heights, sorted(left)
        left = inner


def check_floors(root, told):
    includes = folder_includes(root)
    for name in sorted(set(includes) - set(told)):
        yield f"src/{name}: no line of the table in {ARCHITECTURE}"
    for name in told:
        if name not in includes:
            yield f"{ARCHITECTURE}: src/{name} is no folder"
    circle = floors_of(includes, told)[1]
    if circle:
        yield f"src: the folders {', '.join(circle)} include one another in a circle"


def check_floor(name, include, told):
    own, other = name.split("/")[1], include.split("/")[0]
    if other not in told or "/" not in include:
        yield f'"{include}" does not start with a folder of src'
    elif other == "widgets" and own != "widgets" and not QT_FILES.search(name):
        yield f'"{include}" is of the widgets, which only files with Qt use'
    elif own in told and told.index(other) > told.index(own):
        yield f'"{include}" is on a higher floor than {own}'


def check_includes(name, text, told):
    qt_allowed = bool(QT_FILES.search(name))
    for system, quoted in INCLUDE.findall(text):
        include = system or quoted
        if QT_HEADER.match(include):
            if not qt_allowed:
                yield f"Qt ({include}) outside of screens"
        elif quoted and not quoted.endswith(".moc"):
            yield from check_floor(name, quoted, told)
            if screen_of(quoted) and not qt_allowed:
                yield f'the core includes a screen ("{quoted}")'
            if screen_of(quoted) and screen_of(name) and screen_of(quoted) != screen_of(name):
                yield f'a screen includes another one ("{quoted}")'
        elif system and system.endswith(".h") and not LIBRARY_HEADERS.match(system):
            if not name.startswith("src/platform/"):
                yield f"system header <{system}> outside of src/platform"


def without_comments_and_texts(text):
    """The code with comments and literals blanked; line numbers stay."""
    token = re.compile(
        r'R"(?P<mark>[^\s()\\]{0,16})\(.*?\)(?P=mark)"'
        r'|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\'|//[^\n]*|/\*.*?\*/', re.S)
    return token.sub(lambda match: " " + "\n" * match.group().count("\n"), text)


def check_doors(name, text):
    code = without_comments_and_texts(text)
    for key, door in DOORS.items():
        if name.startswith(door.folders):
            continue
        found = door.pattern.search(code)
        if found and (name, key) not in EXEMPT:
            line = code.count("\n", 0, found.start()) + 1
            yield f"line {line} asks {door.what} by itself ({found.group()}): its door stands in {' or '.join(door.folders)}"
        elif not found and (name, key) in EXEMPT:
            yield f"needs no exemption from the door \"{key}\" any more"


def check_sizes(text):
    lines = text.count("\n") + (not text.endswith("\n"))
    if lines > MAX_FILE_LINES:
        yield f"{lines} lines, at most {MAX_FILE_LINES}"


def check_head(name, text):
    lines = text.split("\n")
    first = lines[1] if lines[0].startswith("#!") and len(lines) > 1 else lines[0]
    if "SPDX-License-Identifier: MIT" not in first:
        yield "no SPDX line at its head"
    if name.endswith(".h") and "\n#pragma once\n" not in text:
        yield "no #pragma once"


def check_name(name):
    folders, stem = name.split("/")[:-1], name.rsplit("/", 1)[-1].split(".")[0]
    if "utils" in folders or "util" in folders:
        yield "there is no utils folder: shared code sinks to the lowest folder that all its users see"
    if not stem.startswith("frm") and not re.fullmatch(r"[a-z][a-z0-9]*(_[a-z0-9]+)*", stem):
        yield "file names are snake_case"
    if folders[:1] == ["src"] and stem.endswith("_test"):
        yield "ends as the name of a test, and stands among what is shipped"


def check_listed(root, name):
    """Every source file is named in the CMakeLists.txt of its folder or of a folder above."""
    path = root / name
    for folder in path.parents:
        lists = folder / "CMakeLists.txt"
        if lists.is_file():
            wanted = re.escape(path.relative_to(folder).as_posix())
            if re.search(rf"(?<![\w./]){wanted}(?![\w.])", re.sub(r"#.*", "", lists.read_text())):
                return
        if folder == root:
            break
    yield "not named in a CMakeLists.txt: it is never built"


def check_words(text):
    for number, line in enumerate(text.split("\n"), 1):
        for pattern, reason in FORBIDDEN:
            if pattern.search(line):
                yield f"line {number} {reason}"


def check_file(root, path, name, told):
    try:
        text = path.read_bytes().decode("utf-8")
    except UnicodeDecodeError:
        if is_cpp(name) or is_script(name):
            yield "not UTF-8"
        return
    yield from check_words(text)
    if is_cpp(name) or is_script(name):
        yield from check_head(name, text)
    if is_cpp(name):
        yield from check_name(name)
        yield from check_sizes(text)
        if name.startswith("src/"):
            yield from check_includes(name, text, told)
            yield from check_doors(name, text)
        if name.endswith(".cpp"):
            yield from check_listed(root, name)


def violations(root):
    told = floors_told(root)
    yield from check_floors(root, told)
    for path, name in project_files(root):
        for problem in check_file(root, path, name, told):
            yield f"{name}: {problem}"
    for name, key in EXEMPT:
        if (root / name).parent.is_dir() and not (root / name).is_file():
            yield f"{name}: is not there and needs no exemption from the door \"{key}\""


def main(arguments):
    root = Path(arguments[0] if arguments else Path(__file__).parent.parent).resolve()
    heights, _ = floors_of(folder_includes(root), floors_told(root))
    print("floors, by the includes: " + " < ".join(", ".join(side) for side in heights))
    found = list(violations(root))
    print("\n".join(found) if found else "layout: every rule holds")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the layout rules of docs/architecture.md over a source tree; prints one line for each violation.

Usage: check_layout.py [ROOT]      exit status 0: every rule holds, 1: violations were printed
"""
import os
import re
import sys
from pathlib import Path

# From the lowest floor to the highest. A file includes only from its own folder or a lower one.
FLOORS = ["text", "platform", "ahead", "app", "widgets", "testing", "messaging", "archive", "setup", "job", "viewer", "editors",
          "ui", "programs"]

MAX_FILE_LINES = 400
MAX_FUNCTION_LINES = 40

SOURCE_FOLDERS = ("src", "tests", "tools", "bench", "fuzz")
SKIPPED_FOLDERS = {".git", ".cache", "build", "__pycache__"}

# Headers with the ending .h that are libraries and not doors to the system.
LIBRARY_HEADERS = re.compile(r"^(fmt/|gtest/|gmock/|benchmark/|zip\.h$|avahi-client/|avahi-common/)")
# Files in which Qt may stand. The programs without a window share the programs folder with the one that has one.
QT_FILES = re.compile(r"(^|/)frm[^/]*$|^src/(ui|widgets)/(?!hex_layout)|^src/programs/quillon(?!_job|_messenger)[^/]*$")
QT_HEADER = re.compile(r"^(Q[A-Z][A-Za-z]*|Qt[A-Za-z]*/.*)$")

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


def check_floor(name, include):
    own, other = name.split("/")[1], include.split("/")[0]
    if other not in FLOORS or "/" not in include:
        yield f'"{include}" does not start with a folder of src'
    elif other == "widgets" and own != "widgets" and not QT_FILES.search(name):
        yield f'"{include}" is of the widgets, which only files with Qt use'
    elif FLOORS.index(other) > FLOORS.index(own):
        yield f'"{include}" is on a higher floor than {own}'


def check_includes(name, text):
    qt_allowed = bool(QT_FILES.search(name))
    for system, quoted in INCLUDE.findall(text):
        include = system or quoted
        if QT_HEADER.match(include):
            if not qt_allowed:
                yield f"Qt ({include}) outside of screens"
        elif quoted and not quoted.endswith(".moc"):
            yield from check_floor(name, quoted)
            if screen_of(quoted) and not qt_allowed:
                yield f'the core includes a screen ("{quoted}")'
            if screen_of(quoted) and screen_of(name) and screen_of(quoted) != screen_of(name):
                yield f'a screen includes another one ("{quoted}")'
        elif system and system.endswith(".h") and not LIBRARY_HEADERS.match(system):
            if not name.startswith("src/platform/"):
                yield f"system header <{system}> outside of src/platform"


def without_comments_and_texts(text):
    """The code with comments, literals and preprocessor lines blanked; line numbers stay."""
    token = re.compile(
        r'R"(?P<mark>[^\s()\\]{0,16})\(.*?\)(?P=mark)"'
        r'|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\'|//[^\n]*|/\*.*?\*/|^[ \t]*#(?:\\\n|[^\n])*',
        re.S | re.M)
    return token.sub(lambda match: " " + "\n" * match.group().count("\n"), text)


def opens_scope(head):
    """Whether a brace after this text opens a namespace or a class: what functions stand in."""
    return bool(re.search(r"\b(class|struct|union|namespace|extern)\b[^()=]*$", head))


def opens_function(head):
    """Whether a brace after this text, in a namespace or class, opens the body of a function, not a list of values."""
    flat = re.sub(r"template\s*<[^()]*?>(?=\s*[\w:\[])", " ", head)
    flat = re.sub(r"operator\s*(\(\)|[^\s\w(]+)", "operator", flat)
    if "(" not in flat:
        return False
    while "(" in flat:
        flat, count = re.subn(r"\([^()]*\)", " ", flat)
        if count == 0:
            return False  # inside an open parenthesis: an argument
    return "=" not in flat


def opens_member_value(head):
    """Whether the brace belongs to the initialiser of a member, as in `Grid::Grid() : rows_{` or `, columns_{`."""
    return bool(re.search(r"\)[^;{}]*(?<!:):(?!:)\s*(.*,\s*)?[\w:<>]+\s*$", head, re.S))


def kind_of_brace(head, enclosing):
    if any(kind != "scope" for kind in enclosing):
        return "inner"
    if opens_member_value(head):
        return "value"
    if opens_scope(head):
        return "scope"
    return "function" if opens_function(head) else "inner"


def function_sizes(text):
    """Line of the opening brace and number of lines, to the closing one, of every function."""
    head, line, open_braces = "", 1, []
    for char in without_comments_and_texts(text):
        if char == "{":
            kind = kind_of_brace(head, [brace[0] for brace in open_braces])
            open_braces.append((kind, line, head))
            head = ""
        elif char == "}" and open_braces:
            kind, start, head = open_braces.pop()
            head = head + "()" if kind == "value" else ""
            if kind == "function":
                yield start, line - start + 1
        elif char == ";":
            head = ""
        else:
            head += char
        line += char == "\n"


def check_sizes(text):
    lines = text.count("\n") + (not text.endswith("\n"))
    if lines > MAX_FILE_LINES:
        yield f"{lines} lines, at most {MAX_FILE_LINES}"
    for start, size in function_sizes(text):
        if size > MAX_FUNCTION_LINES:
            yield f"function at line {start} has {size} lines, at most {MAX_FUNCTION_LINES}"


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


def check_file(root, path, name):
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
            yield from check_includes(name, text)
        if name.endswith(".cpp"):
            yield from check_listed(root, name)


def violations(root):
    for path, name in project_files(root):
        for problem in check_file(root, path, name):
            yield f"{name}: {problem}"


def main(arguments):
    root = Path(arguments[0] if arguments else Path(__file__).parent.parent).resolve()
    found = list(violations(root))
    print("\n".join(found) if found else "layout: every rule holds")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

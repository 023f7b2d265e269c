#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that every control of the running screens has its line in the table of its screen's header and a test.

Usage: check_controls.py LISTER [ROOT]      exit status 1: a line for each control that has none

LISTER is the program quillon_control_lister of a build with tests; it tells the controls of the real screens. A test
counts for a control when its own text, or that of a helper that it calls, holds the control's name.
"""
import os
import re
import subprocess
import sys
from collections import namedtuple
from pathlib import Path

# Tests that go over all controls of a screen: its table of names, captions and states, and the way of the Tab key. What a
# person can do something with needs a test beside them.
OVERVIEW = re.compile(r"^every[A-Z]|^(theT|t)ab(Key)?Goes")

Control = namedtuple("Control", "name used")


def read_screens(lines):
    """The lister's lines as controls by screen."""
    screens = {}
    for line in lines:
        screen, name, how = line.rstrip("\n").split("\t")
        screens.setdefault(screen, []).append(Control(name, how == "used"))
    return screens


def header_of(root, screen):
    name = "help_window.h" if screen == "helpWindow" else screen + ".h"
    return next((root / "src").glob("*/" + name))


def test_files(root, screen):
    if screen == "helpWindow":
        return [root / "tests/ui/frmABout_test.cpp"]
    return sorted((root / "tests").glob(f"*/{screen}*_test.cpp"))


def table_of(header):
    """Words of a header's table: the comments ahead of the first #include."""
    return set(re.findall(r"\w+", re.match(r"(?:(?://|#pragma).*\n|\n)*", header.read_text())[0]))


def is_told(words, name):
    """Whether the table tells a control. One member of an array tells them all."""
    array = re.fullmatch(r"(\w+_)\d+", name)
    return name in words or (array is not None and any(re.fullmatch(re.escape(array[1]) + r"\d+", word) for word in words))


TOP = re.compile(r"^(?:template <.*>\n)?(?=\S)(?:[\w:<>&*,\[\] ]+[ &*])(?:\w+::)?(\w+)\([^;{}]*\)(?: const)?(?: override)? \{\n(.*?)^\}", re.M | re.S)
INNER = re.compile(r"^    (?:[\w:<>&*,\[\] ]+[ &*])(\w+)\([^;{}]*\)(?: const)?(?: override)? \{(.*?)(?:\}$|^    \})", re.M | re.S)
DATA = re.compile(r"^\s*(?:static )?(?:constexpr|const)\b[^=;()]*?\b(k\w+)(?:\[\])? = (.*?);$", re.M | re.S)


def bodies(root, path, seen):
    """Functions and tables of a test file and of the fixtures that it includes: name to text."""
    if path in seen:
        return {}
    seen.add(path)
    text = path.read_text()
    found = {}
    for name in re.findall(r'^#include "(.*)"', text, re.M):
        for folder in (root / "tests", path.parent):
            if (folder / name).is_file():
                found.update(bodies(root, folder / name, seen))
                break
    for pattern in (INNER, DATA, TOP):
        for name, body in pattern.findall(text):
            found[name] = found.get(name, "") + body
    return found


def texts_of(name, functions, seen):
    """The strings in a function and in those that it calls."""
    if name in seen:
        return set()
    seen.add(name)
    body = functions[name]
    texts = set(re.findall(r'"((?:[^"\\]|\\.)*)"', body))
    for word in set(re.findall(r"\b\w+\b", body)) & functions.keys():
        texts |= texts_of(word, functions, seen)
    return texts


def tests_of(root, path):
    """Test function to the strings that it holds."""
    slots = re.findall(r"private slots:\n(.*?)(?=\n\n|\n\w|\n};)", path.read_text(), re.S)
    names = re.findall(r"void (\w+)\(\);", "\n".join(slots))
    functions = bodies(root, path, set())
    tests = {}
    for name in names:
        if name in functions and not name.endswith("_data") and not name.startswith(("init", "cleanup")):
            tests[name] = texts_of(name, functions, set())
            if name + "_data" in functions:
                tests[name] |= texts_of(name + "_data", functions, set())
    return tests


def touches(texts, name):
    array = re.fullmatch(r"(\w+_)\d+", name)
    return name in texts or (array is not None and not texts.isdisjoint({array[1], array[1] + "%1"}))


def problems_of(screen, controls, words, tests):
    for control in controls:
        if not is_told(words, control.name):
            yield f"{screen}: {control.name} stands in no line of the header's table"
        names = [test for test, texts in tests.items() if touches(texts, control.name)]
        if not any(not (control.used and OVERVIEW.match(test)) for test in names):
            yield f"{screen}: {control.name} has no test" + (" of its own" if control.used else "")


def problems(root, lines):
    for screen, controls in read_screens(lines).items():
        tests = {}
        for file in test_files(root, screen):
            tests.update(tests_of(root, file))
        yield from problems_of(screen, controls, table_of(header_of(root, screen)), tests)


def main(arguments):
    root = Path(arguments[1] if len(arguments) > 1 else ".").resolve()
    lister = subprocess.run([arguments[0]], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=True,
                            env={**os.environ, "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8"})
    lines = lister.stdout.splitlines()
    found = list(problems(root, lines))
    print("\n".join(found) or f"screens: each of {len(lines)} controls has its test")
    return 1 if found or not lines else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

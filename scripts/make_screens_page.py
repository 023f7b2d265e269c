#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes docs/screens.md: every screen, its controls, and the tests that touch each control by its name.

Usage: make_screens_page.py LISTER [--check] [ROOT]

LISTER is the program quillon_control_lister of a build with tests; it tells the controls of the real screens. A test
counts for a control when its own text, or that of a helper that it calls, holds the control's name. Exit status 1: a
control has no test or no line in the table of its screen's header; with --check also when the page is not up to date.
"""
import os
import re
import subprocess
import sys
from collections import namedtuple
from pathlib import Path

PAGE = "docs/screens.md"
HEAD = """# Screens and their tests

Every control by its object name, and the tests that touch it. Written by `scripts/make_screens_page.py`; the test run checks that it
is up to date and that no control is without a test. What each control means stands in the table of its screen's header.
"""
# Tests that go over all controls of a screen: its table of names, captions and states, and the way of the Tab key.
OVERVIEW = re.compile(r"^every[A-Z]|^(theT|t)ab(Key)?Goes")
# What a person can do something with needs a test beside the overview.
USED = {"button", "text box", "choice", "check box", "option", "menu entry", "grid", "hex view", "tabs", "list"}
SHOWN_TESTS = 3

Control = namedtuple("Control", "name kind caption")
Screen = namedtuple("Screen", "name title controls")


def read_screens(lines):
    """The lister's lines as screens."""
    screens = []
    for line in lines:
        fields = line.rstrip("\n").split("\t")
        if len(fields) == 2:
            screens.append(Screen(fields[0], fields[1], []))
        else:
            screens[-1].controls.append(Control(*fields[1:]))
    return screens


def header_of(root, screen):
    name = "help_window.h" if screen.name == "helpWindow" else screen.name + ".h"
    return next((root / "src").glob("*/" + name))


def test_files(root, screen):
    if screen.name == "helpWindow":
        return [root / "tests/ui/frmABout_test.cpp"]
    return sorted((root / "tests").glob(f"*/{screen.name}_*test.cpp")) + sorted((root / "tests").glob(f"*/{screen.name}*_test.cpp"))


def table_of(header):
    """Words of a header's table and their order: the comments ahead of the first #include."""
    comment = re.match(r"(?:(?://|#pragma).*\n|\n)*", header.read_text())[0]
    words = {}
    for word in re.findall(r"\w+", comment):
        words.setdefault(word, len(words))
    return words


def place(words, name):
    """Where the table tells a control; None when it does not. One member of an array tells them all."""
    if name in words:
        return words[name], 0
    array = re.fullmatch(r"(\w+_)(\d+)", name)
    members = [at for word, at in words.items() if array and re.fullmatch(re.escape(array[1]) + r"\d+", word)]
    return (min(members), int(array[2])) if members else None


TOP = re.compile(r"^(?:template <.*>\n)?(?=\S)(?:[\w:<>&*,\[\] ]+[ &*])(?:\w+::)?(\w+)\([^;{}]*\)(?: const)?(?: override)? \{\n(.*?)^\}", re.M | re.S)
INNER = re.compile(r"^    (?:[\w:<>&*,\[\] ]+[ &*])(\w+)\([^;{}]*\)(?: const)?(?: override)? \{(.*?)(?:\}$|^    \})", re.M | re.S)
DATA = re.compile(r"^\s*(?:static )?(?:constexpr|const)\b[^=;()]*?\b(k\w+)(?:\[\])? = (.*?);", re.M | re.S)


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


def problems_of(screen, words, tests):
    for control in screen.controls:
        if place(words, control.name) is None:
            yield f"{screen.name}: {control.name} stands in no line of the header's table"
        used = control.kind in USED
        if not any(not (used and OVERVIEW.match(test)) for test in tests[control.name]):
            yield f"{screen.name}: {control.name} ({control.kind}) has no test" + (" of its own" if used else "")


def cell(text):
    return text.replace("|", "\\|")


def tests_cell(names):
    more = len(names) - SHOWN_TESTS
    return ", ".join(names[:SHOWN_TESTS]) + (f" and {more} more" if more > 0 else "")


def section(root, screen, words, files, tests):
    lines = [f"## {screen.name}", "", f'"{screen.title}": ' + ", ".join(f"`{f.relative_to(root).as_posix()}`" for f in files), "",
             "| Control | Kind | Caption | Tests |", "| --- | --- | --- | --- |"]
    ordered = sorted(screen.controls, key=lambda control: place(words, control.name) or (len(words), 0))
    for control in ordered:
        lines.append(f"| `{control.name}` | {control.kind} | {cell(control.caption)} | {tests_cell(tests[control.name])} |")
    return "\n".join(lines) + "\n"


def tests_by_control(screen, tests):
    """Control to its tests; those that touch the fewest controls tell most about each and come first."""
    touched = {test: [c.name for c in screen.controls if touches(texts, c.name)] for test, texts in tests.items()}
    by_control = {}
    for control in screen.controls:
        names = [test for test, controls in touched.items() if control.name in controls]
        by_control[control.name] = sorted(names, key=lambda test: (bool(OVERVIEW.match(test)), len(touched[test])))
    return by_control


def make_page(root, lines):
    """The page, and what is wrong with the screens that it tells of."""
    parts, problems = [HEAD], []
    for screen in read_screens(lines):
        words = table_of(header_of(root, screen))
        files = list(dict.fromkeys(test_files(root, screen)))
        tests = {}
        for file in files:
            tests.update(tests_of(root, file))
        by_control = tests_by_control(screen, tests)
        problems += problems_of(screen, words, by_control)
        parts.append(section(root, screen, words, files, by_control))
    return "\n".join(parts), problems


def main(arguments):
    check = "--check" in arguments
    names = [argument for argument in arguments if not argument.startswith("--")]
    root = Path(names[1] if len(names) > 1 else ".").resolve()
    lister = subprocess.run([names[0]], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=True,
                            env={**os.environ, "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8"})
    page, problems = make_page(root, lister.stdout.splitlines())
    if not check:
        (root / PAGE).write_text(page)
    elif not (root / PAGE).is_file() or (root / PAGE).read_text() != page:
        problems.append(f"{PAGE} is not up to date; scripts/make_screens_page.py writes it")
    print("\n".join(problems) or "screens: every control has its test")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

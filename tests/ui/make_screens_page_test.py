#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Proves that the page of the screens finds the tests of a control, and a control without one."""
import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPT = Path(__file__).parents[2] / "scripts" / "make_screens_page.py"
module = importlib.util.spec_from_file_location("make_screens_page", SCRIPT)
page = importlib.util.module_from_spec(module)
module.loader.exec_module(page)

HEADER = """// SPDX-License-Identifier: MIT
#pragma once
// A screen.
//
//   Label1, Text1         "Name"    the name
//   Check1_0 .. Check1_1            what to copy
//   Command1              "Save"
#include <QWidget>
"""
TEST = """// SPDX-License-Identifier: MIT
#include "fixture.h"

private slots:
    void init();
    void everyControlHasItsName();
    void savingKeepsTheName();
    void theBoxesAreTicked();

private:
    void save() { click("Command1"); }
};

const std::vector<Case> kControls = {{"Label1"}, {"Text1"}, {"Command1"}};

void Test::init() {
    click("Text2");
}

void Test::everyControlHasItsName() {
    QCOMPARE(misfits(kControls), QStringList());
}

void Test::savingKeepsTheName() {
    type("x");
    save();
}

void Test::theBoxesAreTicked() {
    for (int i = 0; i < 2; ++i) tick("Check1_" + std::to_string(i));
}
"""
FIXTURE = """class Fixture {
public:
    void type(const char* text) const { control("Text1").setText(text); }
};
"""
CONTROLS = ["frmSample\tSample", "frmSample\tCommand1\tbutton\tSave", "frmSample\tText1\ttext box\t",
            "frmSample\tLabel1\tlabel\tName", "frmSample\tCheck1_1\tcheck box\ta|b"]


class ScreensPageCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        for name, text in {"src/ui/frmSample.h": HEADER, "tests/ui/frmSample_test.cpp": TEST, "tests/ui/fixture.h": FIXTURE}.items():
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            (self.root / name).write_text(text)

    def test_controls_stand_in_the_order_of_the_header_with_their_tests(self):
        text, problems = page.make_page(self.root, CONTROLS)
        self.assertEqual(problems, [])
        self.assertEqual(text.splitlines()[-4:], [
            "| `Label1` | label | Name | everyControlHasItsName |",
            "| `Text1` | text box |  | savingKeepsTheName, everyControlHasItsName |",
            "| `Check1_1` | check box | a\\|b | theBoxesAreTicked |",
            "| `Command1` | button | Save | savingKeepsTheName, everyControlHasItsName |"])

    def test_a_control_that_is_only_looked_at_needs_a_test_of_its_own(self):
        path = self.root / "tests/ui/frmSample_test.cpp"
        path.write_text(TEST.replace("    save();\n", ""))
        self.assertEqual(page.make_page(self.root, CONTROLS)[1], ["frmSample: Command1 (button) has no test of its own"])

    def test_a_control_that_the_header_does_not_tell_is_found(self):
        (self.root / "src/ui/frmSample.h").write_text(HEADER.replace("Label1, ", ""))
        self.assertEqual(page.make_page(self.root, CONTROLS)[1], ["frmSample: Label1 stands in no line of the header's table"])


if __name__ == "__main__":
    unittest.main()

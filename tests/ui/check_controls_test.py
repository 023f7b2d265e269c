#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Proves that the check of the controls finds the tests of a control, and a control without one."""
import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPT = Path(__file__).parents[2] / "scripts" / "check_controls.py"
module = importlib.util.spec_from_file_location("check_controls", SCRIPT)
check_controls = importlib.util.module_from_spec(module)
module.loader.exec_module(check_controls)

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
CONTROLS = ["frmSample\tCommand1\tused", "frmSample\tText1\tused", "frmSample\tLabel1\tshown", "frmSample\tCheck1_1\tused"]


class ControlsCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        for name, text in {"src/ui/frmSample.h": HEADER, "tests/ui/frmSample_test.cpp": TEST, "tests/ui/fixture.h": FIXTURE}.items():
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            (self.root / name).write_text(text)

    def problems(self, controls=None):
        return list(check_controls.problems(self.root, controls or CONTROLS))

    def test_a_test_counts_by_its_text_that_of_its_helpers_and_that_of_its_fixture(self):
        self.assertEqual(self.problems(), [])

    def test_a_control_that_is_only_looked_at_needs_a_test_of_its_own(self):
        path = self.root / "tests/ui/frmSample_test.cpp"
        path.write_text(TEST.replace("    save();\n", ""))
        self.assertEqual(self.problems(), ["frmSample: Command1 has no test of its own"])

    def test_a_control_that_no_test_names_is_found(self):
        (self.root / "src/ui/frmSample.h").write_text(HEADER.replace("Label1,", "Label1, Label2,"))
        self.assertEqual(self.problems(CONTROLS + ["frmSample\tLabel2\tshown"]), ["frmSample: Label2 has no test"])

    def test_a_control_that_the_header_does_not_tell_is_found(self):
        (self.root / "src/ui/frmSample.h").write_text(HEADER.replace("Label1, ", ""))
        self.assertEqual(self.problems(), ["frmSample: Label1 stands in no line of the header's table"])


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Proves that the layout check finds each kind of violation, and only that."""
import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPT = Path(__file__).parents[2] / "scripts" / "check_layout.py"
module = importlib.util.spec_from_file_location("check_layout", SCRIPT)
check_layout = importlib.util.module_from_spec(module)
module.loader.exec_module(check_layout)

SPDX = "// SPDX-License-Identifier: MIT\n"


class LayoutCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)

    def put(self, name, text, head=SPDX, listed=True):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(head + ("#pragma once\n" if name.endswith(".h") and head else "") + text)
        if name.endswith(".cpp") and listed:
            with open(path.parent / "CMakeLists.txt", "a") as lists:
                lists.write(f"# SPDX-License-Identifier: MIT\ntarget_sources(x PRIVATE {path.name})\n")

    def assertHolds(self):
        self.assertEqual(list(check_layout.violations(self.root)), [])

    def assertFinds(self, *parts):
        found = list(check_layout.violations(self.root))
        self.assertEqual(len(found), 1, found)
        for part in parts:
            self.assertIn(part, found[0])


class Includes(LayoutCase):
    def test_lower_floor_is_allowed(self):
        self.put("src/job/file_list.cpp", '#include "job/file_list.h"\n\n#include <vector>\n\n#include "text/page.h"\n')
        self.assertHolds()

    def test_platform_may_see_text(self):
        self.put("src/platform/file.cpp", '#include "text/page.h"\n')
        self.assertHolds()

    def test_higher_floor_is_found(self):
        self.put("src/testing/header_check.cpp", '#include "job/file_list.h"\n')
        self.assertFinds("src/testing/header_check.cpp", "higher floor")

    def test_text_must_not_see_platform(self):
        self.put("src/text/page.cpp", '#include "platform/file.h"\n')
        self.assertFinds("src/text/page.cpp", "higher floor")

    def test_include_without_folder_is_found(self):
        self.put("src/text/page.cpp", '#include "page.h"\n')
        self.assertFinds("does not start with a folder")

    def test_screen_may_use_shared_widgets(self):
        self.put("src/viewer/frmViewList.cpp", '#include <QTableView>\n#include "widgets/hex_view.h"\n')
        self.assertHolds()

    def test_screen_must_not_look_up_to_the_main_window(self):
        self.put("src/viewer/frmViewList.cpp", '#include "ui/grade_bar.h"\n')
        self.assertFinds("higher floor")

    def test_logic_must_not_use_shared_widgets(self):
        self.put("src/viewer/list_filter.cpp", '#include "widgets/hex_view.h"\n')
        self.assertFinds("only files with Qt use")

    def test_screen_including_another_is_found(self):
        self.put("src/editors/frmExtEditor.cpp", '#include "viewer/frmViewList.h"\n')
        self.assertFinds("a screen includes another one")

    def test_parts_of_one_screen_share_a_header(self):
        self.put("src/ui/frmMain_job.cpp", '#include "ui/frmMain.h"\n')
        self.assertHolds()

    def test_core_including_a_screen_is_found(self):
        self.put("src/viewer/retest.cpp", '#include "viewer/frmViewList.h"\n')
        self.assertFinds("the core includes a screen")

    def test_the_list_of_screens_knows_all(self):
        self.put("src/ui/screens.cpp", '#include "viewer/frmViewList.h"\n#include "ui/frmMain.h"\n')
        self.assertHolds()


class QtAndSystem(LayoutCase):
    def test_qt_in_core_is_found(self):
        for include in ("<QString>", "<QtCore/QString>"):
            with self.subTest(include):
                self.put("src/job/counts.h", f"#include {include}\n")
                self.assertFinds("src/job/counts.h", "Qt")

    def test_qt_in_programs(self):
        self.put("src/programs/quillon.cpp", "#include <QApplication>\n")
        self.assertHolds()
        self.put("src/programs/quillon_job.cpp", "#include <QApplication>\n")
        self.assertFinds("src/programs/quillon_job.cpp", "Qt")

    def test_qt_in_messenger_is_found(self):
        self.put("src/programs/quillon_messenger.cpp", "#include <QApplication>\n")
        self.assertFinds("Qt")

    def test_system_header_outside_platform_is_found(self):
        for header in ("unistd.h", "sys/stat.h", "dirent.h", "stdlib.h"):
            with self.subTest(header):
                self.put("src/job/folder_walk.h", f"#include <{header}>\n")
                self.assertFinds("system header", header)

    def test_system_header_in_platform(self):
        self.put("src/platform/file.cpp", "#include <fcntl.h>\n#include <sys/stat.h>\n")
        self.assertHolds()

    def test_library_headers_are_no_system_headers(self):
        self.put("src/archive/zip_writer.cpp", "#include <fmt/format.h>\n#include <zip.h>\n#include <tl/expected.hpp>\n")
        self.assertHolds()


class Sizes(LayoutCase):
    def function(self, lines, head="void run()"):
        return f"{head} {{\n" + "    step();\n" * (lines - 2) + "}\n"

    def test_file_of_400_lines(self):
        self.put("src/text/page.cpp", "int a;\n" * 399)
        self.assertHolds()

    def test_file_of_401_lines_is_found(self):
        self.put("src/text/page.cpp", "int a;\n" * 400)
        self.assertFinds("401 lines, at most 400")

    def test_function_of_40_lines(self):
        self.put("src/text/page.cpp", "namespace quillon {\n" + self.function(40) + "}\n")
        self.assertHolds()

    def test_function_of_41_lines_is_found(self):
        heads = ("void run()", "int Grid::size() const noexcept", "Grid::Grid(int n) : rows_{n}, columns_(n)",
                 "bool operator==(const Grid& a, const Grid& b)", "auto f(int a = 1) -> std::vector<int>",
                 "template <class T, int N = 3>\nT f(T a)", "TEST(Grid, HasRows)", "void f(const char* s = \"{\")")
        for head in heads:
            with self.subTest(head):
                self.put("src/text/page.cpp", "namespace quillon {\n" + self.function(41, head) + "}\n", listed=False)
                self.put("src/text/CMakeLists.txt", "add(page.cpp)\n", head="# SPDX-License-Identifier: MIT\n")
                self.assertFinds(f"function at line {3 + head.count(chr(10))} has 41 lines, at most 40")

    def test_function_in_class_is_measured(self):
        self.put("src/text/page.h", "class Page : public Base {\npublic:\n" + self.function(41) + "};\n")
        self.assertFinds("function at line 5 has 41 lines")

    def test_long_class_and_table_are_no_functions(self):
        table = "constexpr Row kRows[] = {\n" + '    {"a", f(1), {1, 2}},\n' * 60 + "};\n"
        self.put("src/text/page.h", "struct Page {\n" + "    int a(int b);\n" * 60 + "};\n" + table)
        self.assertHolds()

    def test_braces_in_texts_and_comments_do_not_count(self):
        odd = "// } {\n/* { */\nconst char* a = \"{\";\nchar b = '{';\nconst char* c = R\"({)\";\nint d = 1'000;\n"
        self.put("src/text/page.cpp", odd + self.function(41))
        self.assertFinds("function at line 8 has 41 lines")


class Heads(LayoutCase):
    def test_missing_licence_line_is_found(self):
        for name in ("src/text/page.h", "scripts/run.sh", "src/text/CMakeLists.txt", "cmake/Flags.cmake"):
            with self.subTest(name):
                self.put(name, "#pragma once\n", head="// Something\n" if name.endswith(".h") else "# x\n")
                self.assertFinds(name, "SPDX")
                (self.root / name).unlink()

    def test_script_has_it_under_the_interpreter(self):
        self.put("scripts/run.sh", "#!/bin/sh\n# SPDX-License-Identifier: MIT\n", head="")
        self.assertHolds()

    def test_header_without_pragma_once_is_found(self):
        self.put("src/text/page.h", SPDX + "int a;\n", head="")
        self.assertFinds("#pragma once")

    def test_names(self):
        self.put("src/text/PageText.h", "")
        self.assertFinds("snake_case")

    def test_utils_folder_is_found(self):
        self.put("tests/utils/page.h", "")
        self.assertFinds("no utils folder")


class Lists(LayoutCase):
    def test_unlisted_source_is_found(self):
        self.put("src/text/page.cpp", "", listed=False)
        self.put("src/text/CMakeLists.txt", "add(other_page.cpp page.cpp2 # page.cpp\n)\n", head="# SPDX-License-Identifier: MIT\n")
        self.assertFinds("src/text/page.cpp", "never built")

    def test_source_listed_above(self):
        self.put("tests/support/files/memory.cpp", "", listed=False)
        self.put("tests/support/CMakeLists.txt", "add(files/memory.cpp)\n", head="# SPDX-License-Identifier: MIT\n")
        self.assertHolds()


class Words(LayoutCase):
    def test_forbidden_words_are_found(self):
        words = ("as Par" "t 2.1 tells", "see the specificati" "on", "/wor" "k/tree", "FIX" "ME later", "http://deb.debia" "n.org")
        for word in words:
            with self.subTest(word):
                self.put("docs/page.md", f"first\n{word}\n", head="")
                self.assertFinds("docs/page.md", "line 2")

    def test_build_folder_is_not_looked_at(self):
        self.put("build/dev/note.md", "FIX" "ME", head="")
        self.assertHolds()

    def test_page_text_is_passed_over(self):
        (self.root / "data.dat").write_bytes(b"\xe4\xff")
        self.assertHolds()


class Command(LayoutCase):
    def test_exit_status_tells_whether_all_holds(self):
        self.put("src/text/page.h", "")
        self.assertEqual(check_layout.main([str(self.root)]), 0)
        self.put("src/text/page.h", "#include <unistd.h>\n")
        self.assertEqual(check_layout.main([str(self.root)]), 1)


if __name__ == "__main__":
    unittest.main(buffer=True)

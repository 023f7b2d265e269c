#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Proves that the layout check finds each kind of violation, and only that."""
import contextlib
import importlib.util
import io
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPT = Path(__file__).parents[2] / "scripts" / "check_layout.py"
module = importlib.util.spec_from_file_location("check_layout", SCRIPT)
check_layout = importlib.util.module_from_spec(module)
module.loader.exec_module(check_layout)
SHIPPED_EXEMPT = check_layout.EXEMPT

SPDX = "// SPDX-License-Identifier: MIT\n"
FLOORS = "text platform ahead app widgets testing messaging archive setup job viewer editors ui programs".split()


class LayoutCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.tell_floors(FLOORS)
        check_layout.EXEMPT = {}

    def tell_floors(self, floors):
        page = self.root / check_layout.ARCHITECTURE
        page.parent.mkdir(exist_ok=True)
        page.write_text("| Folder | What it holds |\n| --- | --- |\n" + "".join(f"| `src/{name}` | this |\n" for name in floors))
        for name in floors:
            (self.root / "src" / name).mkdir(parents=True, exist_ok=True)

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


class Floors(LayoutCase):
    def heights(self):
        return check_layout.floors_of(check_layout.folder_includes(self.root), check_layout.floors_told(self.root))

    def test_order_comes_from_the_includes(self):
        self.tell_floors(["text", "platform", "job"])
        for folder in FLOORS[3:]:
            if folder != "job":
                (self.root / "src" / folder).rmdir()
        (self.root / "src/ahead").rmdir()
        self.put("src/job/job.cpp", '#include "platform/file.h"\n#include "text/page.h"\n')
        self.put("src/platform/file.cpp", '#include "text/page.h"\n')
        self.assertEqual(self.heights(), ([["text"], ["platform"], ["job"]], []))
        self.assertHolds()

    def test_folders_that_know_nothing_of_each_other_are_on_one_height(self):
        self.put("src/job/job.cpp", '#include "setup/wizard.h"\n#include "archive/zip.h"\n')
        self.assertEqual(self.heights(), ([[name for name in FLOORS if name != "job"], ["job"]], []))

    def test_another_order_in_the_table_is_found(self):
        self.put("src/job/job.cpp", '#include "testing/check.h"\n')
        self.assertHolds()
        self.tell_floors([name for name in FLOORS if name != "testing"] + ["testing"])
        self.assertFinds("src/job/job.cpp", "higher floor")

    def test_circle_is_found_with_its_members_alone(self):
        self.put("src/archive/zip.cpp", '#include "setup/wizard.h"\n')
        self.put("src/setup/wizard.cpp", '#include "testing/check.h"\n')
        self.put("src/testing/check.cpp", '#include "archive/zip.h"\n#include "text/page.h"\n')
        self.put("src/job/job.cpp", '#include "testing/check.h"\n')
        found = [line for line in check_layout.violations(self.root) if "circle" in line]
        self.assertEqual(found, ["src: the folders archive, setup, testing include one another in a circle"])

    def test_folder_without_a_line_in_the_table_is_found(self):
        self.put("src/evidence/store.h", "")
        self.assertFinds("src/evidence", "no line of the table")

    def test_line_without_a_folder_is_found(self):
        (self.root / "src/viewer").rmdir()
        self.assertFinds("src/viewer is no folder")


class Doors(LayoutCase):
    ASKING = {
        "files": ("#include <filesystem>\n", "auto a = std::filesystem::exists(path);\n", "#include <fstream>\n", "QDir here;\n",
                  "QFile file(name);\n"),
        "clock": ("auto a = std::chrono::steady_clock::now();\n", "using Clock = std::chrono::system_clock;\n", "auto a = std::time(0);\n",
                  "localtime_r(&a, &b);\n", "QElapsedTimer timer;\n"),
        "locale": ('setlocale(LC_ALL, "");\n', "std::locale here;\n", "strftime(a, b, c, d);\n", "#include <clocale>\n", "QLocale here;\n"),
        "environment": ('auto a = std::getenv("HOME");\n',),
        "programs": ('std::system("ls");\n', "#include <csignal>\n"),
        "errno": ("if (errno == 2) return;\n",),
        "chance": ("std::random_device device;\n",),
        "streams": ("std::cout << 1;\n", "#include <iostream>\n"),
        "threads": ("std::thread other;\n", "#include <future>\n", "std::jthread other;\n"),
    }

    def test_every_door_has_its_cases(self):
        self.assertEqual(self.ASKING.keys(), check_layout.DOORS.keys())

    def test_asking_beside_the_door_is_found(self):
        for key, lines in self.ASKING.items():
            for line in lines:
                with self.subTest(line):
                    self.put("src/editors/frmErrors.h", "int a;\n" + line)
                    self.assertFinds("src/editors/frmErrors.h", "line 4", check_layout.DOORS[key].what)

    def test_asking_behind_the_door_is_not_found(self):
        for key, lines in self.ASKING.items():
            with self.subTest(key):
                for folder in check_layout.DOORS[key].folders:
                    plain = "".join(line for line in lines if not line.startswith("Q"))
                    self.put(folder + "door.h", plain)
                    self.assertHolds()
                    (self.root / folder / "door.h").unlink()

    def test_tests_and_tools_may_ask(self):
        self.put("tests/job/clock_test.cpp", "auto a = std::chrono::steady_clock::now();\nstd::thread b;\n")
        self.assertHolds()

    def test_comments_and_texts_do_not_ask(self):
        self.put("src/job/job.cpp", '// std::thread\n/* <fstream>\n errno */\nconst char* a = "std::cout " R"(getenv)";\n')
        self.assertHolds()

    def test_names_alike_do_not_ask(self):
        self.put("src/job/job.cpp", "auto a = dates.time(now);\nmyerrno = QFileName(wall_clock);\nthis_thread(a);\n")
        self.assertHolds()

    def test_a_line_with_its_reason_exempts_one_door_of_one_file(self):
        check_layout.EXEMPT = {("src/job/job.cpp", "threads"): "is tried here"}
        self.put("src/job/job.cpp", "std::thread other;\n")
        self.assertHolds()
        self.put("src/job/walk.cpp", "std::thread other;\n")
        self.assertFinds("src/job/walk.cpp", "threads")

    def test_an_exemption_that_nothing_needs_is_found(self):
        check_layout.EXEMPT = {("src/job/job.cpp", "threads"): "was needed once"}
        self.put("src/job/job.cpp", "int a;\n")
        self.assertFinds("src/job/job.cpp", "no exemption")
        (self.root / "src/job/job.cpp").unlink()
        self.assertFinds("src/job/job.cpp", "is not there")


class Exemptions(unittest.TestCase):
    def test_each_has_a_reason(self):
        for place, reason in SHIPPED_EXEMPT.items():
            with self.subTest(place):
                self.assertGreater(len(reason.split()), 3)


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
    def test_file_of_400_lines(self):
        self.put("src/text/page.cpp", "int a;\n" * 399)
        self.assertHolds()

    def test_file_of_401_lines_is_found(self):
        self.put("src/text/page.cpp", "int a;\n" * 400)
        self.assertFinds("401 lines, at most 400")


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

    def test_product_file_named_like_a_test_is_found(self):
        self.put("src/testing/header_test.h", "")
        self.assertFinds("name of a test")
        self.put("tests/testing/header_test.cpp", "")
        self.assertFinds("src/testing/header_test.h")

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

    def test_tells_the_order_of_the_floors(self):
        self.put("src/ui/main.cpp", '#include "job/job.h"\n')
        with contextlib.redirect_stdout(io.StringIO()) as told:
            check_layout.main([str(self.root)])
        order = ", ".join(name for name in FLOORS if name != "ui")
        self.assertEqual(told.getvalue(), f"floors, by the includes: {order} < ui\nlayout: every rule holds\n")


if __name__ == "__main__":
    unittest.main(buffer=True)

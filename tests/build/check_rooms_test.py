# SPDX-License-Identifier: BSD-3-Clause
"""Trees with one wrong include each, and what scripts/check-rooms answers."""
import os
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


def answer(files, *arguments):
    """Runs the check over a tree of these files: exit status and what it printed."""
    with tempfile.TemporaryDirectory() as folder:
        for path, text in files.items():
            os.makedirs(os.path.join(folder, os.path.dirname(path)), exist_ok=True)
            with open(os.path.join(folder, path), "w", encoding="utf-8") as file:
                file.write(text)
        done = subprocess.run([sys.executable, os.path.join(ROOT, "scripts", "check-rooms"), "--root", folder,
                               *arguments], capture_output=True, text=True, check=False)
        return done.returncode, done.stderr.strip()


GRID = {"model/nimbra/grid.h": "#pragma once\n"}


class CheckRooms(unittest.TestCase):
    def refuses(self, files, text):
        self.assertEqual(answer(files), (1, text))

    def test_downward_include_is_accepted(self):
        self.assertEqual(answer({**GRID, "arrays/nimbra/mem_array.h": '#include "model/nimbra/grid.h"\n'}), (0, ""))

    def test_public_header_in_angle_brackets_is_accepted(self):
        self.assertEqual(answer({"include/rdb2nimbra/rdb2nimbra.h": "", "loader/columns/column_buffer.h":
                                 "#include <rdb2nimbra/rdb2nimbra.h>\n#include <vector>\n"}), (0, ""))

    def test_header_made_from_a_template_is_of_the_templates_room(self):
        files = {"include/rdb2nimbra/version.h.in": ""}
        self.assertEqual(answer({**files, "apps/nimbra-host/main.cpp": "#include <rdb2nimbra/version.h>\n"}), (0, ""))
        self.refuses({**files, "names/names.h": "#include <rdb2nimbra/version.h>\n"},
                     "names/names.h: room names may not include include/rdb2nimbra/version.h.in, which is in room "
                     "include/rdb2nimbra")

    def test_upward_include_is_refused(self):
        self.refuses({"loader/columns/column_buffer.h": "", **GRID,
                      "model/nimbra/field.h": '#include "loader/columns/column_buffer.h"\n'},
                     "model/nimbra/field.h: room model/nimbra may not include loader/columns/column_buffer.h, "
                     "which is in room loader/columns")

    def test_upward_include_in_angle_brackets_is_refused(self):
        self.refuses({"loader/columns/column_buffer.h": "",
                      "names/names.h": "#include <loader/columns/column_buffer.h>\n"},
                     "names/names.h: room names may not include loader/columns/column_buffer.h, "
                     "which is in room loader/columns")

    def test_include_that_climbs_by_dots_is_refused(self):
        self.refuses({"loader/columns/column_buffer.h": "", "model/nimbra/field.h":
                      '#include "model/nimbra/../../loader/columns/column_buffer.h"\n'},
                     'model/nimbra/field.h: include "model/nimbra/../../loader/columns/column_buffer.h" means '
                     "loader/columns/column_buffer.h; write it with its path from the root\n"
                     "model/nimbra/field.h: room model/nimbra may not include loader/columns/column_buffer.h, "
                     "which is in room loader/columns")

    def test_include_without_its_path_is_refused(self):
        self.refuses({**GRID, "model/nimbra/field.h": '#include "grid.h"\n'},
                     'model/nimbra/field.h: include "grid.h" means model/nimbra/grid.h; '
                     "write it with its path from the root")

    def test_foreign_header_in_the_loader_is_refused(self):
        self.refuses({"loader/columns/column_buffer.h": "#include <sqlite3.h>\n"},
                     "loader/columns/column_buffer.h: room loader/columns may not include <sqlite3.h>, which is SQLite")

    def test_foreign_header_of_one_file_is_refused_in_its_room(self):
        self.assertEqual(answer({"apps/rdbtool/geocentric.cpp": "#include <proj.h>\n"}), (0, ""))
        self.refuses({"apps/rdbtool/survey.cpp": "#include <proj.h>\n"},
                     "apps/rdbtool/survey.cpp: room apps/rdbtool may not include <proj.h>, which is PROJ")

    def test_foreign_header_in_quotes_is_refused(self):
        self.refuses({"platform/client/error.h": '#include "proj.h"\n'},
                     "platform/client/error.h: room platform/client may not include <proj.h>, which is PROJ")

    def test_unknown_foreign_header_is_refused(self):
        self.refuses({"names/names.h": "#include <boost/any.hpp>\n"},
                     "names/names.h: <boost/any.hpp> is no header that the table of rooms knows")

    def test_unlisted_folder_is_refused(self):
        self.refuses({"loader/extras/more.h": ""},
                     "loader/extras/more.h: the folder loader/extras is in no row of the table of rooms")

    def test_include_of_a_template_of_a_header_is_refused(self):
        self.refuses({**GRID, "names/names.h.in": '#include "model/nimbra/grid.h"\n'},
                     "names/names.h.in: room names may not include model/nimbra/grid.h, which is in room model/nimbra")

    def test_include_of_a_rare_suffix_is_refused(self):
        self.refuses({**GRID, "names/table.inc": '#include "model/nimbra/grid.h"\n'},
                     "names/table.inc: room names may not include model/nimbra/grid.h, which is in room model/nimbra")

    def test_include_of_a_macro_is_refused_but_for_headers_of_replacements(self):
        text = '#define GRID "model/nimbra/grid.h"\n#include GRID\n'
        self.refuses({**GRID, "names/names.h": text},
                     "names/names.h: expected an include of a file, found the macro GRID")
        self.assertEqual(answer({"include/rdb2nimbra/client.h": "#include RDB2NIMBRA_CLIENT_HEADER\n"}), (0, ""))

    def test_edge_of_one_header_is_refused_elsewhere(self):
        self.refuses({"platform/calendar/calendar.h": "",
                      "loader/timebase/date.cpp": '#include "platform/calendar/calendar.h"\n'},
                     "loader/timebase/date.cpp: room loader/timebase may not include platform/calendar/calendar.h, "
                     "which is in room platform/calendar")

    def test_rooms_know_no_test(self):
        self.refuses({"tests/support/grid.h": "", "names/names.h": '#include "tests/support/grid.h"\n'},
                     "names/names.h: room names may not include tests/support/grid.h, which is in room tests")

    def test_foreign_platform_includes_from_its_own_folders(self):
        own = {"tests/foreign/include/model/nimbra/grid.h": "", "tests/foreign/src/contents.h": ""}
        text = '#include "contents.h"\n#include "model/nimbra/grid.h"\n'
        self.assertEqual(answer({**GRID, **own, "tests/foreign/src/grid.cpp": text}), (0, ""))
        self.refuses({**own, "tests/foreign/src/grid.cpp": '#include "absent.h"\n'},
                     'tests/foreign/src/grid.cpp: include "absent.h" is no file of the project')
        self.refuses({**own, "tests/loader/grid_test.cpp": '#include "model/nimbra/grid.h"\n'},
                     'tests/loader/grid_test.cpp: include "model/nimbra/grid.h" is no file of the project')

    def test_stale_drawing_is_refused(self):
        status, text = answer({"page.md": ""}, "--held", os.path.join(ROOT, "README.md"))
        self.assertEqual(status, 1)
        self.assertIn("its drawing of the rooms is not that of scripts/check-rooms --draw", text)


if __name__ == "__main__":
    unittest.main()

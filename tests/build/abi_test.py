# SPDX-License-Identifier: BSD-3-Clause
"""Two versions of a small library each, and whether scripts/write-abi and abidiff find a break between them.

    abi_test.py COMPILER ABIDIFF
"""
import os
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
COMPILER, ABIDIFF = sys.argv[1:3]
HEADER = """#include <string>
#include <vector>
#define SHOWN __attribute__((visibility("default")))
struct Record { int number; double value; };
class SHOWN Table {
 public:
  virtual ~Table();
  virtual int rows() const;
  std::vector<Record> records;
};
enum class Kind { scan, shots };
SHOWN double sum(const Table& table, Kind kind);
SHOWN std::string name(const Table& table);
"""
SOURCE = """#include "table.h"
#include <numeric>
struct Private { int first; };
Private hidden{1};
Table::~Table() = default;
int Table::rows() const { return hidden.first; }
double sum(const Table& table, Kind) { return double(table.records.size()); }
std::string name(const Table& table) { return table.records.empty() ? "" : "table"; }
"""


def described(folder, header, source, debug="-g"):
    """Builds the library and writes its ABI: exit status and the path of the description."""
    os.makedirs(os.path.join(folder, "include"))
    for path, text in (("include/table.h", header), ("table.cpp", source)):
        with open(os.path.join(folder, path), "w", encoding="utf-8") as file:
            file.write(text)
    subprocess.run([COMPILER, "-std=c++20", debug, "-shared", "-fPIC", "-fvisibility=hidden", "-Iinclude",
                    "-Wl,-soname,libtable.so.1", "-o", "libtable.so", "table.cpp"], cwd=folder, check=True)
    out = os.path.join(folder, "table.abi")
    done = subprocess.run([sys.executable, os.path.join(ROOT, "scripts", "write-abi"), "--headers",
                           os.path.join(folder, "include"), os.path.join(folder, "libtable.so"), out],
                          capture_output=True, text=True, check=False)
    return done, out


class Abi(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        _, cls.before = described(os.path.join(cls.folder.name, "before"), HEADER, SOURCE)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def compared(self, *changes):
        """What abidiff answers after these replacements in header and source."""
        header, source = HEADER, SOURCE
        for old, new in changes:
            self.assertIn(old, header + source)
            header, source = header.replace(old, new), source.replace(old, new)
        done, after = described(os.path.join(self.folder.name, self.id()), header, source)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return subprocess.run([ABIDIFF, "--no-added-syms", self.before, after], capture_output=True, text=True,
                              check=False)

    def passes(self, *changes):
        done = self.compared(*changes)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)

    def breaks(self, text, *changes):
        done = self.compared(*changes)
        self.assertNotEqual(done.returncode, 0)
        self.assertIn(text, done.stdout)

    def test_same_library_passes(self):
        self.passes()

    def test_added_function_passes(self):
        self.passes(("SHOWN double sum", "SHOWN int added();\nSHOWN double sum"),
                    ("Table::~Table() =", "int added() { return 1; }\nTable::~Table() ="))

    def test_added_value_at_the_end_of_an_enumeration_passes(self):
        self.passes(("shots }", "shots, path }"))

    def test_private_layout_passes(self):
        self.passes(("struct Private { int first; }", "struct Private { int first; long second; }"))

    def test_removed_function_breaks(self):
        self.breaks("name(const Table&)", ("SHOWN std::string name(", "std::string name("))

    def test_changed_parameter_breaks(self):
        self.breaks("sum(const Table&, Kind)", ("Kind kind);", "int kind);"), ("table, Kind)", "table, int)"))

    def test_changed_member_breaks(self):
        self.breaks("Table", ("std::vector<Record> records;", "std::vector<Record> records;\n  int added = 0;"))

    def test_changed_member_of_elements_of_a_vector_breaks(self):
        self.breaks("Record", ("double value;", "float value;"))

    def test_added_virtual_function_breaks(self):
        self.breaks("Table", ("  virtual int rows", "  virtual int columns() const { return 0; }\n  virtual int rows"))

    def test_changed_value_of_an_enumeration_breaks(self):
        self.breaks("Kind", ("{ scan, shots }", "{ shots, scan }"))

    def test_library_without_debug_information_is_refused(self):
        done, _ = described(os.path.join(self.folder.name, "stripped"), HEADER, SOURCE, "-g0")
        self.assertEqual(done.returncode, 1)
        self.assertIn("expected debug information with types (-g) for its symbols, found none", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

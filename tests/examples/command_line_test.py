# SPDX-License-Identifier: BSD-3-Clause
"""The Python examples as people run them: what they print, and how they fail."""
import os
import subprocess
import sys
import tempfile
import unittest

from example_modules import ROOT, rows_of, write_example

DESCRIPTION = """\
version 2, 2 records, 1000000 per block
riegl.xyz: float64 x 3, unit m
  component 0: 1.0 to 4.0
  component 1: 2.0 to 5.0
  component 2: 3.0 to 6.0
riegl.time_base = {"epoch": "2015-10-27T00:00:00+00:00"}
"""


class CommandLine(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = os.path.join(self.folder.name, "100% #1?.rdbx")
        write_example(self.path)

    def run_example(self, script, *arguments):
        command = [sys.executable, "-B", os.path.join(ROOT, "examples", script), *arguments]
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        return done.returncode, done.stdout, done.stderr.replace(self.folder.name + os.sep, "")

    def test_description_has_extents_and_metadata(self):
        self.assertEqual(self.run_example("read_database.py", self.path), (0, DESCRIPTION, ""))

    def test_description_of_version_1_has_a_warning(self):
        path = os.path.join(ROOT, "tests", "container", "corpus", "version1", "every_type.rdbx")
        lines = self.run_example("read_database.py", path)[1].split("\n")
        self.assertEqual(lines[:2], ["version 1, 17 records, 7 per block",
                                     "no checksum protects attributes and metadata"])

    def test_values_are_printed_one_record_per_line(self):
        self.assertEqual(self.run_example("read_database.py", self.path, "riegl.xyz"),
                         (0, "1.0 2.0 3.0\n4.0 5.0 6.0\n", ""))
        self.assertEqual(self.run_example("read_database.py", self.path, "riegl.xyz", "1"), (0, "1.0 2.0 3.0\n", ""))

    def test_unknown_attribute_is_refused(self):
        self.assertEqual(self.run_example("read_database.py", self.path, "xyz"),
                         (1, "", '100% #1?.rdbx: expected an attribute "xyz", found none\n'))

    def test_missing_file_is_refused(self):
        for script, *output in (["read_database.py"], ["write_database.py", self.path]):
            status, _, error = self.run_example(script, self.path + ".missing", *output)
            self.assertEqual(status, 1)
            self.assertRegex(error, r"^100% #1\?\.rdbx\.missing.*: unable to open database file\n$")

    def test_other_file_is_refused(self):
        with open(self.path, "w", encoding="ascii") as file:
            file.write("x" * 2000)
        self.assertEqual(self.run_example("read_database.py", self.path),
                         (1, "", "100% #1?.rdbx: file is not a database\n"))

    def test_copy_takes_the_place_of_its_original(self):
        self.assertEqual(self.run_example("write_database.py", self.path, self.path, "--block-rows", "1"), (0, "", ""))
        self.assertEqual(rows_of(self.path, "SELECT records, block_rows FROM database"), [(2, 1)])
        self.assertEqual(self.run_example("read_database.py", self.path)[1],
                         DESCRIPTION.replace("1000000 per block", "1 per block"))


if __name__ == "__main__":
    unittest.main()

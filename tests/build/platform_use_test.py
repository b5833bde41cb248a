#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""A page that lacks what the library uses is refused, by name: platform_use_test.py BUILD"""
import os
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
# What is removed from the page, the source that uses it, and what the refusal names.
REMOVED = [
    ("  static StrongPtr<Cache, CacheBase>& MemCache();", "rdbx_columns", "MemCache"),
    ("  bool exists(const std::string& name) const;", "week_day", "exists"),
    ("  using Creator = Torvel::WeakPtr<CreativeArrayBase, Torvel::Creature>;", "pointcloud/registration", "Creator"),
    ("  std::int32_t vectorFlagA = 0;", "pointcloud/registration", "vectorFlagA"),
    ("#define TORVEL_API __attribute__((visibility(\"default\")))", "date", "TORVEL_API"),
    ("  void remember();", "pointcloud/registration", "remember"),
    ("// model/torvel/objects/console.h\n", "date", "model/torvel/objects/console.h"),
    ("int getWeekDay(int year, int month, int day);", "week_day", "getWeekDay"),
]
ADDED = "\n```cpp\n// model/nimbra/further.h\n```\n\n## Coordinate transformation"


class Page(unittest.TestCase):
    def refusal(self, old, new, *arguments):
        with open(os.path.join(ROOT, "docs/integration.md")) as file:
            page = file.read()
        self.assertIn(old, page)
        with tempfile.NamedTemporaryFile("w", suffix=".md") as other:
            other.write(page.replace(old, new))
            other.flush()
            result = subprocess.run([sys.executable, os.path.join(ROOT, "scripts/platform-use"), BUILD, "--page",
                                     other.name, *arguments], capture_output=True, text=True)
        self.assertEqual(result.returncode, 1, result.stdout)
        return result.stderr

    def test_lacks_a_name_that_is_used(self):
        for removed, source, named in REMOVED:
            with self.subTest(removed):
                self.assertIn(named, self.refusal(removed, "", "--source", source))

    def test_has_a_header_that_is_not_included(self):
        refusal = self.refusal("\n## Coordinate transformation", ADDED)
        self.assertIn("no source of the library includes model/nimbra/further.h", refusal)


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()

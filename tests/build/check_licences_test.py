# SPDX-License-Identifier: BSD-3-Clause
"""Trees with one licence missing each, and the answers of scripts/check-licences."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
# Written in two parts, so that no tool takes a line of this file for a statement about it.
SPDX = "SPDX-" "License-Identifier: "
TEXTS = {"LICENSE": "", "LICENSES/BSD-3-Clause.txt": ""}
EVERYTHING = "Files: *\nCopyright: 2026 somebody\nLicense: BSD-3-Clause\n"


def stanza(pattern, licence="BSD-3-Clause"):
    return f"\nFiles:\n {pattern}\nCopyright: 2026 somebody\nLicense: {licence}\n"


class Tree:
    """A temporary project of these files."""

    def __init__(self, files):
        self.folder = tempfile.TemporaryDirectory()
        for path, text in {**TEXTS, ".reuse/dep5": EVERYTHING, **files}.items():
            os.makedirs(os.path.join(self.folder.name, os.path.dirname(path)), exist_ok=True)
            with open(os.path.join(self.folder.name, path), "w", encoding="utf-8") as file:
                file.write(text)

    def git(self, *arguments):
        subprocess.run(["git", "-C", self.folder.name, "-c", "init.defaultBranch=main", *arguments], check=True,
                       capture_output=True)

    def answer(self):
        """Exit status of the check and what it printed."""
        done = subprocess.run([sys.executable, os.path.join(ROOT, "scripts", "check-licences"), "--root",
                               self.folder.name], capture_output=True, text=True, check=False)
        return done.returncode, done.stderr.strip()


class CheckLicences(unittest.TestCase):
    def tree(self, files):
        made = Tree(files)
        self.addCleanup(made.folder.cleanup)
        return made

    def refuses(self, files, text):
        self.assertEqual(self.tree(files).answer(), (1, text))

    def accepts(self, files):
        self.assertEqual(self.tree(files).answer(), (0, ""))

    def test_spdx_line_is_accepted(self):
        self.accepts({"names/names.h": f"// {SPDX}BSD-3-Clause\n",
                      "run": f"#!/bin/sh\n# {SPDX}BSD-3-Clause\n"})

    def test_pattern_is_accepted(self):
        self.accepts({"corpus/deep/empty": "", ".reuse/dep5": EVERYTHING + stanza("corpus/*")})

    def test_file_without_licence_is_refused(self):
        self.refuses({"names/names.h": "#pragma once\n"},
                     "names/names.h: expected an SPDX line or a pattern in .reuse/dep5, found neither")

    def test_spdx_line_far_below_is_refused(self):
        self.refuses({"names/names.h": "\n" * 5 + f"// {SPDX}BSD-3-Clause\n"},
                     "names/names.h: expected an SPDX line or a pattern in .reuse/dep5, found neither")

    def test_other_licence_is_refused(self):
        self.refuses({"names/names.h": f"/* {SPDX}MIT */\n"},
                     "names/names.h: expected the licence BSD-3-Clause, found MIT")

    def test_other_licence_in_a_pattern_is_refused(self):
        self.refuses({"page.md": "", ".reuse/dep5": EVERYTHING + stanza("page.md", "MIT")},
                     '.reuse/dep5: files page.md: expected the licence BSD-3-Clause, found "MIT"')

    def test_pattern_without_files_is_refused(self):
        self.refuses({".reuse/dep5": EVERYTHING + stanza("gone/*")},
                     ".reuse/dep5: the pattern gone/* matches no file")

    def test_missing_text_is_refused(self):
        tree = self.tree({})
        os.remove(os.path.join(tree.folder.name, "LICENSE"))
        self.assertEqual(tree.answer(),
                         (1, "LICENSE: expected the text of the licence BSD-3-Clause, found no such file"))

    @unittest.skipUnless(shutil.which("git"), "git is not installed")
    def test_untracked_file_is_ignored_in_a_repository(self):
        tree = self.tree({"names/names.h": "#pragma once\n"})
        tree.git("init")
        tree.git("add", "LICENSE", "LICENSES", ".reuse")
        self.assertEqual(tree.answer(), (0, ""))

    @unittest.skipUnless(shutil.which("git"), "git is not installed")
    def test_tracked_file_without_licence_is_refused_in_a_repository(self):
        tree = self.tree({"names/names.h": "#pragma once\n"})
        tree.git("init")
        tree.git("add", ".")
        self.assertEqual(tree.answer()[0], 1)


if __name__ == "__main__":
    unittest.main()

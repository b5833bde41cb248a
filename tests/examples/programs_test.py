# SPDX-License-Identifier: BSD-3-Clause
"""Databases of the Python writer in the programs, and databases of rdbtool in the Python reader.

    programs_test.py RDBTOOL NIMBRA-HOST
"""
import array
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

from example_modules import ROOT, Attribute, content_of, database_pieces, read_database, rows_of, write_database

RDBTOOL, NIMBRA_HOST = sys.argv.pop(1), sys.argv.pop(1)
RECORDS = 500

# An attribute that a load brings to the grid, for each type: attribute, type, scale, offset, field.
COLUMNS = [
    ("riegl.target_index", "uint8", 1.0, 0.0, "TargetIndex"),
    ("riegl.scan_angle", "int8", 0.25, -10.0, "ScanAngle"),
    ("riegl.class", "uint16", 1.0, 0.0, "Classification"),
    ("riegl.deviation", "int16", 1.0, 0.0, "Deviation"),
    ("riegl.source_index", "uint32", 1.0, 0.0, "SourceIndex"),
    ("riegl.wfm_echo_time_offset", "int32", 2.0, 7.0, "WfmEchoTimeOffset"),
    ("riegl.wfm_sbl_id", "uint64", 1.0, 0.0, "WfmSampleBlockID"),
    ("riegl.raw_range", "int64", 1.0, 0.0, "RawRange"),
    ("riegl.amplitude", "float32", -0.5, 0.0, "Amplitude"),
    ("riegl.reflectance", "float64", 1.0, 0.0, "Reflectance"),
]


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def column_of(type_name):
    """Stored values that the field's type can hold: small ones, but for identifiers beyond 2^53."""
    first = (1 << 63) + 1 if type_name == "uint64" else 0
    return array.array(database_pieces.TYPE_CODES[type_name], [first + i // 4 for i in range(RECORDS)])


class Programs(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def loaded(self, path, *options):
        """What a load brings to the grid, without the name of the file."""
        done = run(NIMBRA_HOST, "load", path, "--json", "--values", "all", *options)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        report = json.loads(done.stdout)
        del report["file"]
        return report

    def fields(self, path):
        """The values of each field of the chart, over all its fragments."""
        charts = self.loaded(path, "--all-attributes")["representations"]
        (chart,) = [chart for chart in charts if chart["name"] == "StandardCartesianChart3D"]
        return {field["name"]: [value for fragment in field["fragments"] for value in fragment["values"]]
                for field in chart["fields"]}

    def copied(self, path, *options):
        copy = self.path("copy" + os.path.splitext(path)[1])
        done = run(sys.executable, "-B", os.path.join(ROOT, "examples", "write_database.py"), path, copy, *options)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        verified = run(RDBTOOL, "verify", copy)
        self.assertEqual(verified.returncode, 0, verified.stdout)
        self.assertIn(" 0 findings", verified.stdout)
        return copy

    def synthesised(self, kind, extension, *options):
        path = self.path("original" + extension)
        done = run(RDBTOOL, "synth", kind, "--seed", "3", "--records", "700", "--block-rows", "256", "-o", path,
                   *options)
        self.assertEqual(done.returncode, 0, done.stderr)
        return path

    def test_copies_load_as_their_originals(self):
        for kind, extension, *options in (("scan", ".rdbx", "--all-attributes"), ("shots", ".sodx"),
                                          ("trajectory", ".pofx", "--epsg", "32633")):
            original = self.synthesised(kind, extension)
            expected = self.loaded(original, *options)
            for encoding in ("raw", "deflate"):
                copy = self.copied(original, "--encoding", encoding)
                # Fragments of trajectories bear the name of the file.
                found = json.loads(json.dumps(self.loaded(copy, *options)).replace('"copy_', '"original_'))
                self.assertEqual(found, expected, f"{kind}, {encoding}")

    def test_copies_have_the_attributes_of_their_originals(self):
        original = self.synthesised("scan", ".rdbx")
        shown = [json.loads(run(RDBTOOL, "info", path, "--json").stdout) for path in (original, self.copied(original))]
        for key in ("records", "block_rows", "metadata"):
            self.assertEqual(shown[1][key], shown[0][key])
        for found, expected in zip(shown[1]["attributes"], shown[0]["attributes"], strict=True):
            for key in ("name", "type", "length", "scale", "offset", "unit", "title", "description"):
                self.assertEqual(found[key], expected[key])

    def test_values_of_every_type_reach_the_grid(self):
        attributes = [Attribute(i, name, kind, scale=scale, offset=offset)
                      for i, (name, kind, scale, offset, _) in enumerate(COLUMNS, 1)]
        path = self.path("every type.rdbx")
        write_database.write(path, attributes, [column_of(row[1]) for row in COLUMNS], {}, 130)
        fields = self.fields(path)
        for _, kind, scale, offset, name in COLUMNS:
            expected = [value if (scale, offset) == (1, 0) else value * scale + offset for value in column_of(kind)]
            self.assertEqual(fields[name], expected, name)

    def test_points_and_texts_reach_the_program(self):
        attribute = Attribute(1, "riegl.xyz", "float64", 3, title="Koordinaten Österreich", description="高さ")
        points = array.array("d", [454000 + i * 0.001 for i in range(3 * RECORDS)])
        path = self.path("points.rdbx")
        write_database.write(path, [attribute], [points], {"Ä": "日本", "riegl.time_base": "{}"}, 130)
        self.assertEqual([part for point in self.fields(path)["Positions"] for part in point], points.tolist())
        shown = json.loads(run(RDBTOOL, "info", path, "--json").stdout)
        self.assertEqual((shown["attributes"][0]["title"], shown["attributes"][0]["description"]),
                         ("Koordinaten Österreich", "高さ"))
        self.assertEqual([item["name"] for item in shown["metadata"]], ["riegl.time_base", "Ä"])

    def test_tables_of_rdbtool_are_those_of_python(self):
        query = "SELECT name, sql FROM sqlite_master WHERE sql > '' ORDER BY name"
        original = self.synthesised("trajectory", ".pofx")
        plain = [[(name, re.sub(r"\s", "", sql)) for name, sql in rows_of(path, query)]
                 for path in (original, self.copied(original))]
        self.assertEqual(plain[0], plain[1])

    def test_damage_to_a_file_of_rdbtool_is_noticed(self):
        original = self.synthesised("scan", ".rdbx", "--columns", "xyz,class")
        expected = content_of(original)
        self.assertEqual(len(expected[3][0]), 700 * 24)
        run(RDBTOOL, "damage", original, "--attribute", "riegl.class", "--block", "1", "--flip-byte", "5")
        with self.assertRaisesRegex(read_database.DatabaseError, 'column "riegl.class" of .*, block 1: expected check'):
            content_of(original)


if __name__ == "__main__":
    unittest.main()

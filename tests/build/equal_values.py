# SPDX-License-Identifier: BSD-3-Clause
"""Loads databases of the same content on the foreign platform and on the embedded one, and compares the grids.

    equal_values.py --foreign-host FOREIGN_HOST --host NIMBRA_HOST --folder FOLDER
"""
import argparse
import json
import os
import subprocess
import sys
import unittest

from same_databases import METADATA, pointcloud, trajectory, with_column, write_pair

REALS = ("double", "float", "point", "vector")
PROJECTED_TOLERANCE = 1e-6  # metres
OWN_KEYS = {"file", "result", "exception", "console", "attributes", "representations"}
FOREIGN_KEYS = {"result", "attributes", "representations"}
LEVER_ARM = "leverarm:1.5:2:3\nmisalignment:0.1:0.2:-0.3\n"
OPTIONS = argparse.Namespace()


def whole(text):
    """The foreign host prints the negative zero of a real as -0, which would be read as the integer 0."""
    return -0.0 if text == "-0" else int(text)


def printed(command, status):
    """What a host printed as JSON, and its standard error."""
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != status:
        raise AssertionError(f"{command}: expected status {status}, found {done.returncode}: {done.stderr}")
    return json.loads(done.stdout, parse_int=whole), done.stderr


def comparable(kind, values):
    """Elements of one type as values that compare as the bits do: reals as texts, as -0.0 and nan need it."""
    def one(value):
        if isinstance(value, list):
            return [one(component) for component in value]
        return repr(float(value)) if kind in REALS else value
    return [one(value) for value in values]


class EqualValues(unittest.TestCase):
    maxDiff = None

    def loads(self, description, file, *options, status=0, client_texts=None):
        """Loads both databases; returns the number of compared values, and the result."""
        foreign_path, own_path = write_pair(description, OPTIONS.folder, file)
        foreign, foreign_errors = printed([OPTIONS.foreign_host, foreign_path, *options], status)
        own, errors = printed([OPTIONS.host, "load", own_path, "--json", "--values", "all", *options], status)
        self.assertEqual((set(foreign), set(own)), (FOREIGN_KEYS, OWN_KEYS))
        self.assertEqual(own["file"], own_path)
        # The foreign console is the standard error, to which the library writes lines itself; ours is in the JSON text.
        # Lines are compared in sorted order, since nothing tells how the two followed each other.
        lines = errors + "".join(line + "\n" for line in own["console"])
        self.assertEqual(sorted(foreign_errors.splitlines()), sorted(lines.splitlines()))
        # The foreign host prints an exception as a result.
        result = own["exception"]["what"] if own["exception"] else own["result"]
        if client_texts:  # the reason is a text of the client's own
            self.assertEqual((foreign["result"], result), tuple(text.format(file=own_path) for text in client_texts))
        else:
            self.assertEqual(foreign["result"], result)
        self.compare_attributes("grid", foreign["attributes"], own["attributes"])
        return self.compare_representations(foreign["representations"], own["representations"],
                                            file.endswith(".pofx")), result

    def compare_attributes(self, where, foreign, own):
        def listed(attributes):
            for attribute in attributes:
                self.assertEqual(set(attribute), {"name", "type", "values"}, where)
            return [(a["name"], a["type"], comparable(a["type"], a["values"])) for a in attributes]
        self.assertEqual(listed(foreign), listed(own), where)

    def compare_names(self, where, foreign, own, keys):
        for item in foreign + own:
            self.assertEqual(set(item), keys, where)
        self.assertEqual([item["name"] for item in foreign], [item["name"] for item in own], where)

    def compare_representations(self, foreign, own, projected):
        self.compare_names("representations", foreign, own, {"name", "fields"})
        count = 0
        for one, other in zip(foreign, own):
            self.compare_names(one["name"], one["fields"], other["fields"], {"name", "type", "attributes", "fragments"})
            for field, own_field in zip(one["fields"], other["fields"]):
                where = f'{one["name"]}.{field["name"]}'
                count += self.compare_field(where, field, own_field, projected and field["name"] == "Positions")
        return count

    def compare_field(self, where, foreign, own, projected):
        # A field without a fragment has no type: "" of the foreign host, null of ours.
        self.assertEqual(foreign["type"], "" if own["type"] is None else own["type"], where)
        self.compare_attributes(where, foreign["attributes"], own["attributes"])
        self.compare_names(where, foreign["fragments"], own["fragments"], {"name", "count", "values"})
        count = 0
        for piece, own_piece in zip(foreign["fragments"], own["fragments"]):
            at = f'{where}.{piece["name"]}'
            for side in (piece, own_piece):
                self.assertEqual(side["count"], len(side["values"]), at)
            self.assertEqual(piece["count"], own_piece["count"], at)
            count += piece["count"]
            if projected:
                self.compare_positions(at, piece["values"], own_piece["values"])
            else:
                kind = foreign["type"]
                self.assertEqual(comparable(kind, piece["values"]), comparable(kind, own_piece["values"]), at)
        return count

    def compare_positions(self, where, foreign, own):
        for point, own_point in zip(foreign, own):
            self.assertEqual((len(point), len(own_point)), (3, 3), where)
            for value, own_value in zip(point, own_point):
                # assertLessEqual fails for not-a-number, too
                self.assertLessEqual(abs(value - own_value), PROJECTED_TOLERANCE, where)

    def lever_arm(self):
        path = os.path.join(OPTIONS.folder, "lever.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write(LEVER_ARM)
        return path

    def test_point_cloud_with_all_columns(self):
        # Without riegl.pof_xyz, which takes the place of riegl.xyz, and riegl.rgba, which takes directions.
        count, result = self.loads(pointcloud(3, left_out=("riegl.pof_xyz", "riegl.rgba")), "scan.rdbx",
                                   "--all-attributes")
        self.assertEqual(result, "")
        self.assertGreater(count, 9 * 50)

    def test_point_cloud_with_columns_that_displace_others(self):
        only = ("riegl.xyz", "riegl.pof_xyz", "riegl.direction_medium", "riegl.rgba", "riegl.pulse_width")
        count, result = self.loads(pointcloud(4, only), "displaced.rdbx")
        self.assertEqual(result, "")
        self.assertGreater(count, 9 * 2)

    def test_shots(self):
        only = ("riegl.xyz", "riegl.shot_origin", "riegl.shot_direction", "riegl.echo_first", "riegl.echo_count")
        description = with_column(pointcloud(5, only), "riegl.shot_timestamp_hr", "uint64")
        count, result = self.loads(description, "shots.sodx")
        self.assertEqual(result, "")
        self.assertGreaterEqual(count, 9 * 6)

    def test_trajectory_with_lever_arm(self):
        count, result = self.loads(trajectory(7), "flight.pofx", "--epsg", "32633", "--lever-arm", self.lever_arm())
        self.assertEqual((count, result), (9 * 6, ""))

    def test_databases_without_records_or_columns(self):
        for only in ((), ("riegl.none",)):
            with self.subTest(only=only):
                self.assertEqual(self.loads(pointcloud(13, only, records=0), "empty.rdbx"), (0, ""))

    def test_failures_have_equal_texts(self):
        few = ("riegl.xyz", "riegl.timestamp")
        both_times = with_column(pointcloud(11, few), "riegl.shot_timestamp_hr", "uint64")
        no_device = {name: value for name, value in METADATA.items() if name != "riegl.device"}
        for description, file, options, text in (
                (both_times, "times.rdbx", (), "Error both fields for GPSTime are set"),
                (pointcloud(11, few, metadata={}), "bare.sodx", (), "Error: Key not found"),
                (pointcloud(11, few, metadata=no_device), "device.sodx", (), "Error: Key not found"),
                (trajectory(11, ("roll",)), "roll.pofx", ("--epsg", "32633"), "")):
            with self.subTest(file=file):
                result = self.loads(description, file, *options, status=1)[1]
                self.assertNotEqual(result, "")
                self.assertIn(text, result)

    def test_failure_of_the_client_has_its_own_text(self):
        texts = ("The attribute does not exist. (riegl.direction_medium)",
                 'the database has no such attribute (column "riegl.direction_medium" of {file}: expected one of its 2 '
                 "attributes, found none of that name)")
        self.loads(pointcloud(11, ("riegl.xyz", "riegl.rgba")), "colours.rdbx", status=1, client_texts=texts)


def main():
    parser = argparse.ArgumentParser()
    for name in ("--foreign-host", "--host", "--folder"):
        parser.add_argument(name, required=True)
    parser.parse_args(namespace=OPTIONS)
    os.makedirs(OPTIONS.folder, exist_ok=True)
    unittest.main(argv=sys.argv[:1])


if __name__ == "__main__":
    main()

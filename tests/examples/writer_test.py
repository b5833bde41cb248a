# SPDX-License-Identifier: BSD-3-Clause
"""What examples/write_database.py writes, as examples/read_database.py reads it, and what it refuses to write."""
import array
import math
import os
import tempfile
import unittest

from example_modules import Attribute, content_of, database_pieces, read_database, rows_of, write_database

LEAST, GREATEST = -(1 << 63), (1 << 64) - 1

# Stored values, scale and offset, and the extent.
EXTENTS = [
    (array.array("h", [3, -5, 4]), 1.0, 0.0, (-5.0, 4.0, 0)),
    (array.array("h", [3, -5, 4]), -0.5, 1.0, (-1.0, 3.5, 0)),
    (array.array("f", [2.5, math.nan, -math.inf]), 2.0, 1.0, (-math.inf, 6.0, 1)),
    (array.array("d", [math.nan, math.nan]), 1.0, 0.0, (None, None, 2)),
    (array.array("q", [LEAST, (1 << 63) - 1]), 1.0, 0.0, (-2.0 ** 63, 2.0 ** 63, 0)),
    (array.array("q", [LEAST + 1, (1 << 53) + 1]), 1.0, 0.0, (-2.0 ** 63, 2.0 ** 53 + 2, 0)),
    (array.array("q", [(1 << 53) + 1]), 1.0, 0.0, (2.0 ** 53, 2.0 ** 53 + 2, 0)),
    (array.array("q", [(1 << 53) + 3]), -1.0, 0.0, (-2.0 ** 53 - 4, -2.0 ** 53 - 2, 0)),
    (array.array("Q", [GREATEST]), 1.0, 0.0, (2.0 ** 64 - 2048, 2.0 ** 64, 0)),
]

# Attributes, columns and items that do not fit together, and the error.
ONE = Attribute(1, "a", "int8")
REFUSALS = [
    ([ONE], [array.array("h", [1])], {},
     'column "a": expected a name and an array of int8, found an array of type code "h"'),
    ([ONE._replace(name="")], [array.array("b", [1])], {},
     'column "": expected a name and an array of int8, found an array of type code "b"'),
    ([ONE._replace(length=2)], [array.array("b", [1])], {}, 'column "a": expected 2 values per record, found 1 values'),
    ([ONE._replace(scale=0.0)], [array.array("b", [1])], {},
     'column "a": expected a finite scale other than 0 and a finite offset, found 0.0 and 0.0'),
    ([ONE._replace(offset=math.nan)], [array.array("b", [1])], {},
     'column "a": expected a finite scale other than 0 and a finite offset, found 1.0 and nan'),
    ([ONE, Attribute(2, "b", "int8")], [array.array("b", [1]), array.array("b", [1, 2])], {},
     "columns: expected the same number of records in each, found [1, 2]"),
    ([ONE], [array.array("b", [1])], {"ö": "x" * ((32 << 20) - 1)},
     "metadata: expected at most 33554432 bytes of text, found 33554433"),
    ([ONE._replace(title="x" * (32 << 20))], [array.array("b", [1])], {},
     "attributes: expected at most 33554432 bytes of text, found 33554433"),
]


class Writer(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = os.path.join(self.folder.name, "made.rdbx")

    def test_values_of_every_type_come_back(self):
        attributes, columns = [], []
        for number, (name, code) in enumerate(database_pieces.TYPE_CODES.items(), 1):
            attributes.append(Attribute(number, name, name, length=number % 3 + 1))
            columns.append(array.array(code, bytes(range(240)) * array.array(code).itemsize * (number % 3 + 1)))
        for encoding in ("raw", "deflate"):
            write_database.write(self.path, attributes, columns, {}, 70, encoding)
            found = content_of(self.path)
            self.assertEqual(found[0], attributes)
            self.assertEqual(found[3], [column.tobytes() for column in columns])

    def test_metadata_of_any_text_comes_back(self):
        items = {"": "", "Ä": "日本\n\t", "z": "\0", "a b": "12:x"}
        write_database.write(self.path, [], [], items)
        self.assertEqual(content_of(self.path)[1], items)

    def test_database_without_records_has_no_blocks(self):
        write_database.write(self.path, [ONE], [array.array("b")], {})
        self.assertEqual(content_of(self.path)[2:], ([], [b""], [[]]))
        self.assertEqual(rows_of(self.path, "SELECT records, block_rows, extent_checksum FROM database"),
                         [(0, 1000000, None)])

    def test_extents_are_those_of_the_values(self):
        for values, scale, offset, expected in EXTENTS:
            self.assertEqual(write_database.extent(values, scale, offset), expected, values)

    def test_many_components_have_no_extents(self):
        for length, count in ((16, 16), (17, 0)):
            write_database.write(self.path, [ONE._replace(length=length)], [array.array("b", bytes(length))], {})
            self.assertEqual(len(content_of(self.path)[2]), count)

    def test_scaled_values_come_back_bit_for_bit(self):
        for code, type_name in (("f", "float32"), ("d", "float64")):
            values = array.array(code, [0.001 * (i * 37 % 4000) for i in range(2000)])
            data = database_pieces.encoded(values, 2)
            self.assertEqual(database_pieces.parse(data, code, 2, 1000)[3], [(0.001, 0.0), (0.001, 0.0)])
            self.assertEqual(database_pieces.decoded(data, type_name, 2, 1000), values.tobytes())

    def test_values_that_scaling_would_lose_are_not_scaled(self):
        for lost in (math.nan, math.inf, -0.0, 1e-9, 3e9 + 0.5):
            values = array.array("d", [0.25] * 500 + [lost])
            data = database_pieces.encoded(values, 1)
            self.assertEqual(database_pieces.parse(data, "d", 1, 501)[3], [], lost)
            self.assertEqual(database_pieces.decoded(data, "float64", 1, 501), values.tobytes())

    def test_bits_of_not_a_number_are_kept(self):
        bits = array.array("I", [0x7FA00001, 0xFFC12345] * 100)
        values = array.array("f", bits.tobytes())
        for encoding in ("raw", "deflate"):
            write_database.write(self.path, [Attribute(1, "a", "float32")], [values], {}, encoding=encoding)
            self.assertEqual(content_of(self.path)[3], [bits.tobytes()])

    def test_rare_values_come_back_with_their_extents(self):
        attributes = [Attribute(-7, "long", "int16", 17, -0.25, 3.0), Attribute(5, "ends", "float32", 2, -2.0, 1.0),
                      Attribute(1 << 60, "gaps", "float64", 1)]
        columns = [array.array("h", [-32768, 7, 32767] * 17 * 100),
                   array.array("f", [math.inf, -0.0, math.nan, -1.5] * 150), array.array("d", [math.nan] * 300)]
        for encoding, stored_as in (("raw", None), ("deflate", "pieces")):
            write_database.write(self.path, attributes, columns, {}, 200, encoding)
            found = content_of(self.path)
            self.assertEqual(found[0], attributes)
            self.assertEqual(found[3], [column.tobytes() for column in columns])
            self.assertEqual(found[4][0][:3], [8195.0, 1.25, -8188.75])
            self.assertEqual(found[2], [(5, 0, 0, -math.inf, -math.inf, 100), (5, 0, 1, 1.0, 4.0, 0),
                                        (5, 1, 0, -math.inf, -math.inf, 50), (5, 1, 1, 1.0, 4.0, 0),
                                        (1 << 60, 0, 0, None, None, 200), (1 << 60, 1, 0, None, None, 100)])
            self.assertEqual(rows_of(self.path, "SELECT DISTINCT encoding FROM block_index"), [(stored_as,)])

    def test_what_does_not_fit_together_is_refused(self):
        for attributes, columns, items, text in REFUSALS:
            with self.assertRaises(ValueError) as raised:
                write_database.write(self.path, attributes, columns, items)
            self.assertEqual(str(raised.exception), text)

    def test_failure_keeps_the_older_file_and_leaves_no_other(self):
        write_database.write(self.path, [ONE], [array.array("b", [1])], {})
        before = content_of(self.path)
        with self.assertRaises(ValueError):
            write_database.write(self.path, [ONE], [array.array("h", [2])], {})
        self.assertEqual(content_of(self.path), before)
        self.assertEqual(os.listdir(self.folder.name), ["made.rdbx"])

    def test_empty_file_is_refused(self):
        with open(self.path, "wb"):
            pass
        with self.assertRaisesRegex(read_database.DatabaseError, "expected application id 1380205123, found 0"):
            read_database.Database(self.path)


if __name__ == "__main__":
    unittest.main()

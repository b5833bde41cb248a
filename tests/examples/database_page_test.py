# SPDX-License-Identifier: BSD-3-Clause
"""What docs/database-format.md shows is what the examples write and read: tables, texts, checksums and bytes."""
import math
import os
import re
import struct
import tempfile
import unittest
import zlib

from example_modules import ROOT, database_pieces, read_database, rows_of, write_database, write_example

DUMP_LINE = re.compile(r"^ +(\d+) {3}((?:[0-9a-f]{2} )*[0-9a-f]{2})(?: {3}.*)?$", re.M)


def page():
    with open(os.path.join(ROOT, "docs", "database-format.md"), encoding="utf-8") as file:
        return file.read()


def indented_block(first_line):
    """The lines of the page that are indented by four blanks, from that one on."""
    begin = page().index("    " + first_line + "\n")
    lines = page()[begin:].split("\n\n")[0].split("\n")
    return "".join(line[4:] + "\n" for line in lines)


def dumps():
    """The blocks that the page shows as offsets and bytes."""
    found = []
    for offset, digits in DUMP_LINE.findall(page()):
        if int(offset) == 0:
            found.append(b"")
        if int(offset) != len(found[-1]):
            raise AssertionError(f"offset {offset} behind {len(found[-1])} bytes")
        found[-1] += bytes.fromhex(digits)
    return found


def statements(text):
    """CREATE statements by name of the table, without differences in blanks."""
    found = {}
    for statement in re.findall(r"CREATE TABLE[^;]*", text):
        words = re.sub(r"\s+", " ", re.sub(r"\s*([(),])\s*", r"\1", statement)).strip()
        found.setdefault(re.match(r"CREATE TABLE (\w+)", words)[1], []).append(words)
    return found


class Page(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = os.path.join(self.folder.name, "example.rdbx")
        write_example(self.path)

    def shows_number_after(self, number, text):
        pattern = r"\s+".join(map(re.escape, text.split())) + rf"\W+{number}\b"
        self.assertTrue(re.search(pattern, page()), f"expected {number} after: {text}")

    def test_tables_are_those_that_are_written(self):
        rows = rows_of(self.path, "SELECT sql FROM sqlite_master WHERE sql > ''")
        written = statements(";".join(sql for (sql,) in rows))
        shown = statements(page())
        self.assertEqual(sorted(shown), ["attribute", "block", "block_index", "database", "extent", "metadata"])
        self.assertEqual({name: [texts[-1]] for name, texts in shown.items()}, written)
        self.assertEqual(shown["database"][0],
                         "CREATE TABLE database(records INTEGER NOT NULL,block_rows INTEGER NOT NULL)")

    def test_identification_is_the_one_that_is_written(self):
        self.assertEqual(rows_of(self.path, "PRAGMA application_id"), [(1380205123,)])
        self.assertEqual(rows_of(self.path, "PRAGMA user_version"), [(2,)])
        self.assertEqual(rows_of(self.path, "PRAGMA page_size"), [(65536,)])
        self.assertIn("| 1380205123 (hexadecimal 52444243) |", page())

    def test_codes_are_those_of_the_examples(self):
        pieces = database_pieces
        self.assertIn(f"filter: {pieces.NO_FILTER} none, {pieces.SHUFFLE} shuffle,"
                      f" {pieces.DELTA_AND_SHUFFLE} delta and shuffle |", page())
        self.assertIn(f"codec: {pieces.NO_CODEC} none, {pieces.ZLIB} zlib stream, {pieces.LZ4} LZ4 block |", page())
        for name in pieces.TYPE_CODES:
            self.assertIn(f"`{name}`", page())

    def test_limits_are_those_of_the_examples(self):
        self.assertIn(f"values per record, 1 to {read_database.MAXIMUM_LENGTH} |", page())
        self.shows_number_after(read_database.MAXIMUM_TEXT_BYTES, "all names and values together are at most")
        self.shows_number_after(read_database.MAXIMUM_TEXT_BYTES, "descriptions of all attributes together are at most")
        self.shows_number_after(write_database.MAXIMUM_EXTENT_COMPONENTS, "attribute with at most")
        self.shows_number_after(read_database.MAXIMUM_DEFAULT_CHARACTERS, "quotes included, has more than")
        self.shows_number_after(database_pieces.MAXIMUM_LZ4_BYTES, "A piece with codec 2 has at most")
        self.shows_number_after(database_pieces.LZ4_LAST_COPY, "the last one starts at least")
        self.shows_number_after(database_pieces.LZ4_LAST_LITERALS, "the last sequence has at least")
        self.shows_number_after(database_pieces.USUAL_PIECE_BYTES, "as many records per piece as make")

    def test_fields_of_the_canonical_text(self):
        for value, text in ((None, "-"), (-12, "-12"), ("", "0:"), ("Ö b", "4:Ö b"), (1.0, "3ff0000000000000"),
                            (0.0, "0000000000000000"), (-0.0, "0000000000000000"), (-math.inf, "fff0000000000000")):
            self.assertEqual(read_database.canonical_field(value), text.encode())

    def test_checksum_is_the_one_of_zlib(self):
        self.shows_number_after(zlib.crc32(b"123456789"), "CRC-32 of the nine bytes `123456789` is")

    def test_text_of_the_catalogue_has_the_checksum(self):
        text = indented_block("rdb2nimbra 2").encode()
        self.assertEqual(zlib.crc32(text), 2216246988)
        self.shows_number_after(2216246988, "with the CRC-32")

    def test_text_of_the_extents_has_the_checksum(self):
        text = indented_block("extent 1 0 0 3ff0000000000000 4010000000000000 0").encode()
        self.assertEqual(zlib.crc32(text), 513255105)
        self.shows_number_after(513255105, "with the CRC-32")

    def test_example_is_written_with_both_checksums(self):
        self.assertEqual(rows_of(self.path, "SELECT * FROM database"), [(2, 1000000, 2216246988, 513255105)])
        self.assertEqual(rows_of(self.path, "SELECT * FROM block_index"), [(1, 0, None, 1830403536, 48)])

    def test_example_is_read_with_its_values(self):
        database = read_database.Database(self.path)
        self.assertEqual(list(database.values("riegl.xyz")), [1, 2, 3, 4, 5, 6])
        self.assertEqual(database.attributes["riegl.xyz"].title, "Koordinaten Österreich")
        self.assertEqual(database.items, {"riegl.time_base": '{"epoch": "2015-10-27T00:00:00+00:00"}'})
        database.close()

    def test_blocks_in_pieces_have_their_values(self):
        expected = struct.pack("<6d", 101, 1.5, 101.25, 1, 100.5, 1)
        self.assertEqual([len(block) for block in dumps()], [84, 88])
        for block in dumps():
            self.assertEqual(database_pieces.decoded(block, "float64", 2, 3), expected)
            self.shows_number_after(zlib.crc32(block), f"`data` has {len(block)} bytes, and its CRC-32 is")

    def test_table_of_the_block_is_described(self):
        for number, piece in enumerate(database_pieces.parse(dumps()[0], "d", 2, 3)[-1]):
            self.assertIn(f"piece {number}: {len(piece)} bytes, CRC-32 {zlib.crc32(piece)}", page())

    def test_lz4_block_has_its_result(self):
        stored = bytes.fromhex(re.search(r"^    stored   ([0-9a-f ]+)$", page(), re.M)[1])
        result = re.search(r"^    result   (\w+)$", page(), re.M)[1].encode()
        self.assertEqual(database_pieces.lz4_decoded(stored, len(result)), result)


if __name__ == "__main__":
    unittest.main()

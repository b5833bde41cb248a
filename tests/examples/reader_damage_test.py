# SPDX-License-Identifier: BSD-3-Clause
"""Damaged files, and what examples/read_database.py answers: the right content or an error, never other content."""
import os
import random
import shutil
import sqlite3
import struct
import tempfile
import unittest
import zlib

from example_modules import (ROOT, content_of, database_pieces, execute, read_database, renew_catalogue_checksum,
                             renew_extent_checksum, rows_of, write_sample)

# Statement on a file of version 2, and the error without "FILE: " or " of FILE".
WRONG_FILES = [
    ("PRAGMA application_id = 1", "expected application id 1380205123, found 1"),
    ("PRAGMA user_version = 0", "expected version 1 or 2, found 0"),
    ("PRAGMA user_version = 3", "expected version 1 or 2, found 3"),
    ("PRAGMA user_version = 1",
     'table "database": expected no [\'catalogue_checksum\', \'extent_checksum\'] in version 1, found them'),
    ("PRAGMA user_version = 1; ALTER TABLE database DROP COLUMN catalogue_checksum;"
     "ALTER TABLE database DROP COLUMN extent_checksum",
     'table "block_index": expected no such table in version 1, found one'),
    ("DROP TABLE extent", 'table "extent": expected an ordinary table, found none'),
    ("ALTER TABLE metadata RENAME TO other; CREATE VIEW metadata AS SELECT name, value FROM other",
     'table "metadata": expected an ordinary table, found none'),
    ("ALTER TABLE database DROP COLUMN extent_checksum",
     "table \"database\": expected columns ['catalogue_checksum', 'extent_checksum'], found no ['extent_checksum']"),
    ("ALTER TABLE metadata DROP COLUMN value; ALTER TABLE metadata ADD COLUMN value TEXT AS ('x')",
     "table \"metadata\": expected columns ['name', 'value'], found no ['value']"),
    ("ALTER TABLE block ADD COLUMN further TEXT AS ('x')",
     'table "block": expected stored values, found a rule that makes them in [(\'further\',)]'),
    ("ALTER TABLE extent ADD COLUMN further TEXT DEFAULT '123456789012345'",
     'table "extent": expected stored values, found a rule that makes them in [(\'further\',)]'),
    ("INSERT INTO database SELECT * FROM database", "expected 1 row of table database, found 2"),
    ("DELETE FROM database", "expected 1 row of table database, found 0"),
    ("DELETE FROM block WHERE attribute = 2 AND number = 1", 'table "block": expected 6 blocks, found 5'),
    ("INSERT INTO block VALUES (2, 3, 0, x'00')", 'table "block": expected 6 blocks, found 7'),
    ("UPDATE block SET number = 7 WHERE number = 2",
     'table "block": expected every block of each attribute, found others'),
]

# Any change of what the catalogue's checksum covers.
CATALOGUE_CHANGES = [
    "UPDATE database SET records = 299", "UPDATE database SET block_rows = 129",
    "UPDATE database SET catalogue_checksum = catalogue_checksum + 1",
    "UPDATE attribute SET id = 3 WHERE id = 2", "UPDATE attribute SET name = 'point' WHERE id = 1",
    "UPDATE attribute SET type = 'int64' WHERE id = 1", "UPDATE attribute SET length = 2 WHERE id = 1",
    "UPDATE attribute SET scale = 0.25 WHERE id = 2", "UPDATE attribute SET offset = -2 WHERE id = 2",
    "UPDATE attribute SET unit = 'ft' WHERE id = 1", "UPDATE attribute SET title = 'Hohe' WHERE id = 1",
    "UPDATE attribute SET title = NULL WHERE id = 1", "UPDATE attribute SET description = '' WHERE id = 1",
    "INSERT INTO attribute (id, name, type) VALUES (3, 'other', 'int8')", "DELETE FROM attribute WHERE id = 2",
    "UPDATE metadata SET name = 'A' WHERE name = 'Ä'", "UPDATE metadata SET value = '日' WHERE name = 'Ä'",
    "DELETE FROM metadata WHERE name = 'Ä'", "INSERT INTO metadata VALUES ('', '')",
    "UPDATE block_index SET attribute = 3 WHERE attribute = 2", "UPDATE block_index SET number = 3 WHERE number = 2",
    "UPDATE block_index SET encoding = NULL WHERE attribute = 1 AND number = 0",
    "UPDATE block_index SET checksum = checksum + 1 WHERE attribute = 1 AND number = 0",
    "UPDATE block_index SET bytes = bytes + 1 WHERE attribute = 1 AND number = 0",
    "DELETE FROM block_index WHERE attribute = 1 AND number = 2", "INSERT INTO block_index VALUES (3, 0, NULL, 0, 0)",
]

# Statement on a file of version 2 whose checksum is renewed afterwards, and the error.
CONTRADICTIONS = [
    ("DELETE FROM block_index WHERE attribute = 1 AND number = 2",
     'table "block_index": expected the blocks of table "block", found others'),
    ("UPDATE block_index SET encoding = 'other' WHERE attribute = 1 AND number = 2",
     'column "points", block 2: expected no encoding or "pieces", found "other"'),
    ("UPDATE metadata SET value = printf('%.*c', 33554432, 'x') WHERE name = 'Ä'",
     'table "metadata": expected at most 33554432 bytes of text, found 33554487'),
    ("UPDATE attribute SET unit = printf('%.*c', 33554432, 'x') WHERE id = 2",
     'table "attribute": expected at most 33554432 bytes of text, found 33554451'),
    ("UPDATE database SET records = 299",
     'column "points", block 2: expected one zlib stream of 516 bytes, found another one'),
    ("UPDATE attribute SET length = 4 WHERE id = 2",
     'column "classes", block 0: expected one zlib stream of 1024 bytes, found another one'),
    ("UPDATE attribute SET type = 'int32' WHERE id = 2",
     'column "classes", block 0: expected one zlib stream of 512 bytes, found another one'),
]

# Statement on the extents of a file of version 2 whose checksum is renewed afterwards, and the error.
WRONG_EXTENTS = [
    ("UPDATE extent SET attribute = 3 WHERE attribute = 2",
     "attribute 3, block 0: expected a block of at most 16 values per record, found none"),
    ("UPDATE extent SET number = 3 WHERE number = 2",
     "attribute 1, block 3: expected a block of at most 16 values per record, found none"),
    ("UPDATE extent SET number = -1 WHERE number = 0",
     "attribute 1, block -1: expected a block of at most 16 values per record, found none"),
    ("DELETE FROM extent WHERE component = 1", "attribute 1, block 0: expected 3 components, found [0, 2]"),
    ("UPDATE extent SET component = 3 WHERE component = 2",
     "attribute 1, block 0: expected 3 components, found [0, 1, 3]"),
    ("UPDATE extent SET minimum = 8, maximum = 7.5 WHERE attribute = 2 AND number = 1",
     "attribute 2, block 1: expected a range that fits the values that are missing, found (8.0, 7.5) and 0"),
    ("UPDATE extent SET minimum = NULL WHERE attribute = 2 AND number = 1",
     "attribute 2, block 1: expected a range that fits the values that are missing, found (None, -0.5) and 0"),
    ("UPDATE extent SET minimum = NULL, maximum = NULL, missing = 127 WHERE attribute = 2 AND number = 1",
     "attribute 2, block 1: expected a range that fits the values that are missing, found (None, None) and 127"),
    ("UPDATE extent SET minimum = 1, maximum = 1, missing = 44 WHERE attribute = 2 AND number = 2",
     "attribute 2, block 2: expected a range that fits the values that are missing, found (1.0, 1.0) and 44"),
    ("UPDATE extent SET minimum = NULL, maximum = NULL, missing = 45 WHERE attribute = 2 AND number = 2",
     "attribute 2, block 2: expected a range that fits the values that are missing, found (None, None) and 45"),
    ("UPDATE extent SET missing = -1 WHERE attribute = 2 AND number = 1",
     "attribute 2, block 1: expected a range that fits the values that are missing, found (-2.0, -0.5) and -1"),
    ("UPDATE extent SET maximum = 'x' WHERE attribute = 2 AND number = 1",
     "attribute 2, block 1: expected a range that fits the values that are missing, found (-2.0, 'x') and 0"),
]

# Statement on a file of version 1, whose catalogue nothing protects, and the error.
WRONG_CATALOGUES = [
    ("UPDATE database SET records = -1", "expected a count of records and 1 to 4294967295 per block, found -1 and 7"),
    ("UPDATE database SET block_rows = 0", "expected a count of records and 1 to 4294967295 per block, found 17 and 0"),
    ("UPDATE database SET records = 1 << 62", 'table "block": expected 7246935171814466711 blocks, found 33'),
    ("UPDATE attribute SET type = 'int128' WHERE id = 1",
     'column "int8": expected a type of int8 to uint64, float32 or float64, found int128'),
    ("UPDATE attribute SET length = 65537 WHERE id = 1",
     'column "int8": expected 1 to 65536 values per record, found 65537'),
    ("UPDATE attribute SET scale = 0 WHERE id = 1", 'column "int8": expected a scale other than 0, found 0'),
    ("UPDATE attribute SET offset = 1e999 WHERE id = 1", 'column "int8": expected finite scale and offset, found inf'),
    ("UPDATE attribute SET unit = x'00' WHERE id = 1", "column \"int8\": expected texts for people, found b'\\x00'"),
    ("UPDATE metadata SET value = x'00' WHERE name <> 'riegl.time_base'",
     "expected metadata items of two texts, found Österreich and b'\\x00'"),
    ("DELETE FROM block; DELETE FROM attribute", "expected no records without attributes, found 17"),
    ("CREATE TABLE other AS SELECT * FROM attribute; DROP TABLE attribute; ALTER TABLE other RENAME TO attribute;"
     "UPDATE attribute SET id = 'x' WHERE id = 1", 'column "int8": expected an integer as id, found x'),
    ("CREATE TABLE Block_Index(x)", 'table "block_index": expected no such table in version 1, found one'),
]

# Offset and bytes that are changed in a block of two pieces of a float64 attribute of length 2, and the error.
WRONG_PIECES = [
    (0, b"\3", "expected pieces for 3 records, found 3 of 2"),
    (4, b"\0", "expected pieces for 3 records, found 2 of 0"),
    (8, b"\3", "expected known codes in the header, found 3, 0, 1, 0"),
    (9, b"\3", "expected known codes in the header, found 2, 3, 1, 0"),
    (10, b"\2", "expected known codes in the header, found 2, 0, 2, 0"),
    (11, b"\1", "expected known codes in the header, found 2, 0, 1, 1"),
    (12, struct.pack("<d", 0),
     "expected finite scales other than 0 and finite offsets, found [(0.0, 100.0), (0.5, 0.0)]"),
    (20, struct.pack("<d", float("inf")),
     "expected finite scales other than 0 and finite offsets, found [(0.01, inf), (0.5, 0.0)]"),
    (44, b"\x0f", "piece 0: expected checksum 1268091884, found 2654329852"),
    (52, b"\7", "piece 1: expected checksum 894802496, found 4015573518"),
    (60, b"\0", "piece 0: expected checksum 1268091884, found 2800044780"),
    (84, b"\0", "expected a block of 84 bytes, found 85"),
]

# LZ4 blocks that are to have 12 bytes, and the error.
WRONG_LZ4 = [
    ("", "expected an LZ4 block of 12 bytes, found its beginning"),
    ("35 61 62", "expected an LZ4 block of 12 bytes, found 2"),
    ("f0", "expected an LZ4 block of 12 bytes, found its beginning"),
    ("31 61 62 63 00 00 00", "expected a copy within 12 bytes, found 5 from 0 before byte 3"),
    ("31 61 62 63 04 00 00", "expected a copy within 12 bytes, found 5 from 4 before byte 3"),
    ("36 61 62 63 03 00 00", "expected a copy within 12 bytes, found 10 from 3 before byte 3"),
    ("31 61 62 63 03 00 00", "expected an LZ4 block of 12 bytes, found 8"),
    ("31 61 62 63 03 00", "expected an LZ4 block of 12 bytes, found its beginning"),
    ("11 61 01 00 60 62 63 64 65 66 67", "expected 5 literals at the end and the last copy from 12 bytes before it,"
                                         " found 6 literals and a copy from 11 bytes before it"),
    ("14 61 01 00 30 62 63 64", "expected 5 literals at the end and the last copy from 12 bytes before it,"
                                " found 3 literals and a copy from 11 bytes before it"),
]


class WithFile(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.sound = os.path.join(self.folder.name, "sound.rdbx")
        self.path = os.path.join(self.folder.name, "damaged.rdbx")

    def error_after(self, script, action=lambda path: None):
        shutil.copyfile(self.sound, self.path)
        execute(self.path, script)
        action(self.path)
        with self.assertRaises(read_database.DatabaseError, msg=script) as raised:
            content_of(self.path)
        return str(raised.exception).replace(f" of {self.path}", "").replace(f"{self.path}: ", "")


class Damage(WithFile):
    def setUp(self):
        super().setUp()
        write_sample(self.sound)

    def test_wrong_file_is_refused(self):
        for script, text in WRONG_FILES:
            self.assertEqual(self.error_after(script), text)

    def test_change_of_the_catalogue_is_noticed(self):
        for script in CATALOGUE_CHANGES:
            self.assertRegex(self.error_after(script), r"^catalogue: expected checksum \d+, found \d+$")

    def test_tables_that_contradict_each_other_are_refused(self):
        for script, text in CONTRADICTIONS:
            self.assertEqual(self.error_after(script, renew_catalogue_checksum), text)

    def test_order_of_the_rows_does_not_matter(self):
        expected = content_of(self.sound)
        execute(self.sound, "UPDATE metadata SET rowid = 10 WHERE name = 'riegl.time_base'")
        self.assertEqual(content_of(self.sound), expected)

    def test_blob_in_the_catalogue_is_refused(self):
        self.assertEqual(self.error_after("UPDATE attribute SET unit = x'00' WHERE id = 1"),
                         "catalogue: expected integers, reals, texts and nulls, found a blob")

    def test_change_of_an_extent_is_noticed(self):
        for script in ("UPDATE extent SET minimum = minimum - 1 WHERE attribute = 1 AND number = 0",
                       "UPDATE extent SET maximum = NULL WHERE attribute = 2", "UPDATE extent SET missing = 1",
                       "DELETE FROM extent WHERE attribute = 1 AND number = 2 AND component = 2",
                       "DELETE FROM extent", "UPDATE database SET extent_checksum = NULL"):
            self.assertRegex(self.error_after(script), r"^extents: expected checksum (\d+|None), found (\d+|None)$")

    def test_extents_that_contradict_the_blocks_are_refused(self):
        for script, text in WRONG_EXTENTS:
            found = self.error_after(script, renew_extent_checksum)
            self.assertEqual(found.replace("extents, ", ""), text, script)

    def test_short_default_of_a_further_column_is_ignored(self):
        expected = content_of(self.sound)
        execute(self.sound, "ALTER TABLE extent ADD COLUMN further TEXT DEFAULT '12345678901234'")
        self.assertEqual(content_of(self.sound), expected)

    def test_change_of_a_block_is_noticed(self):
        (data,), = rows_of(self.sound, "SELECT data FROM block WHERE attribute = 2 AND number = 1")
        expected, found = zlib.crc32(data), zlib.crc32(b"\0" * len(data))
        self.assertEqual(
            self.error_after("UPDATE block SET data = zeroblob(length(data)) WHERE attribute = 2 AND number = 1"),
            f'column "classes", block 1: expected checksum {expected}, found {found}')
        self.assertEqual(
            self.error_after("UPDATE block SET checksum = NULL WHERE attribute = 2 AND number = 1"),
            f'column "classes", block 1: expected checksum and bytes {[expected, len(data)]} as in the index,'
            f" found {[None, len(data)]}")
        self.assertEqual(self.error_after("UPDATE block SET data = 'text' WHERE attribute = 2 AND number = 1"),
                         'column "classes", block 1: expected a blob, found none')

    def test_any_damage_gives_the_right_content_or_an_error(self):
        execute(self.sound, "PRAGMA page_size = 512; VACUUM")
        expected = content_of(self.sound)
        with open(self.sound, "rb") as file:
            sound = file.read()
        seed = random.Random(7)
        errors = 0
        for _ in range(300):
            damaged = bytearray(sound)
            first = seed.randrange(len(sound))
            for at in range(first, min(first + seed.choice((1, 1, 16)), len(sound))):
                damaged[at] ^= 1 << seed.randrange(8)
            with open(self.path, "wb") as file:
                file.write(damaged)
            try:
                self.assertEqual(content_of(self.path), expected, f"damage from byte {first} on")
            except (read_database.DatabaseError, sqlite3.Error):
                errors += 1
        self.assertGreater(errors, 50)


class DamageInVersion1(WithFile):
    def setUp(self):
        super().setUp()
        shutil.copyfile(os.path.join(ROOT, "tests", "container", "corpus", "version1", "every_type.rdbx"), self.sound)

    def test_wrong_catalogue_is_refused(self):
        for script, text in WRONG_CATALOGUES:
            self.assertEqual(self.error_after(script), text)

    def test_checksum_of_a_block_may_be_null(self):
        shutil.copyfile(self.sound, self.path)
        execute(self.path, "UPDATE block SET checksum = NULL")
        self.assertEqual(repr(content_of(self.path)), repr(content_of(self.sound)))

    def test_size_beyond_memory_is_refused(self):
        shutil.copyfile(os.path.join(ROOT, "tests", "fuzz", "corpus", "database", "overflown_size"), self.path)
        with self.assertRaisesRegex(read_database.DatabaseError, "expected content that fits into memory, found"):
            content_of(self.path)

    def test_block_of_another_size_is_refused(self):
        self.assertEqual(self.error_after("UPDATE block SET checksum = NULL, data = x'00' WHERE attribute = 1"),
                         'column "int8", block 0: expected 7 bytes, found 1')


class DamagedPieces(unittest.TestCase):
    def block(self):
        pieces = [bytes.fromhex("640319ff000000ff000000ff000000ff"), bytes.fromhex("3202000000000000")]
        return (struct.pack("<IIBBBB4d", 2, 2, 2, 0, 1, 0, 0.01, 100, 0.5, 0)
                + b"".join(struct.pack("<II", len(piece), zlib.crc32(piece)) for piece in pieces) + b"".join(pieces))

    def error_of(self, data, type_name="float64"):
        with self.assertRaises(read_database.DatabaseError) as raised:
            database_pieces.decoded(bytes(data), type_name, 2, 3)
        return str(raised.exception)

    def test_wrong_header_is_refused(self):
        for offset, content, text in WRONG_PIECES:
            data = bytearray(self.block())
            data[offset:offset + len(content)] = content
            self.assertEqual(self.error_of(data), text)

    def test_beginning_of_a_block_is_refused(self):
        for size in range(len(self.block())):
            self.error_of(self.block()[:size])
        self.assertEqual(self.error_of(b"\2"), "expected a header of 12 bytes, found 1 bytes")
        self.assertEqual(self.error_of(self.block()[:59]), "expected header and table of 60 bytes, found 59 bytes")

    def test_scaled_integers_are_refused(self):
        self.assertEqual(self.error_of(self.block(), "int64"),
                         "expected integers that are not scaled, found scaled ones")

    def test_piece_of_another_size_is_refused(self):
        piece = b"\0" * 47
        data = struct.pack("<IIBBBBII", 1, 3, 0, 0, 0, 0, 47, zlib.crc32(piece)) + piece
        self.assertEqual(self.error_of(data), "piece 0: expected 48 bytes, found 47")

    def test_zlib_stream_of_another_size_is_refused(self):
        text = "expected one zlib stream of 12 bytes, found another one"
        for stored in (zlib.compress(b"x" * 11), zlib.compress(b"x" * 13), zlib.compress(b"x" * 12)[:-1],
                       zlib.compress(b"x" * 12) + b"\0", b""):
            with self.assertRaisesRegex(read_database.DatabaseError, text):
                database_pieces.inflated(stored, 12)
        with self.assertRaisesRegex(read_database.DatabaseError, "expected a zlib stream, found: Error -3"):
            database_pieces.inflated(b"no stream", 12)

    def test_lz4_block_of_too_many_bytes_is_refused(self):
        most = 2113929216
        for records, text in ((most + 1, f"piece 0: expected at most {most} bytes in an LZ4 block, found {most + 1}"),
                              (most, f"expected an LZ4 block of {most} bytes, found its beginning")):
            data = struct.pack("<IIBBBBII", 1, records, 0, 2, 0, 0, 0, 0)
            with self.assertRaises(read_database.DatabaseError) as raised:
                database_pieces.decoded(data, "uint8", 1, records)
            self.assertEqual(str(raised.exception), text)

    def test_shortest_block_with_an_lz4_copy_is_taken(self):
        for last_token in ("80", "8f"):  # the low bits stand for no copy
            stored = bytes.fromhex(f"10 61 01 00 {last_token} 62 63 64 65 66 67 68 69")
            self.assertEqual(database_pieces.lz4_decoded(stored, 13), b"aaaaabcdefghi")

    def test_lz4_block_with_few_literals_at_the_end_is_refused(self):
        text = "expected 5 literals at the end and the last copy from 12 bytes before it, found {} literals and a copy"
        for digits, literals, size in (("16 61 01 00 30 62 63 64", 3, 14), ("19 61 01 00 00", 0, 14)):
            with self.assertRaisesRegex(read_database.DatabaseError, text.format(literals)):
                database_pieces.lz4_decoded(bytes.fromhex(digits), size)

    def test_wrong_lz4_block_is_refused(self):
        for digits, text in WRONG_LZ4:
            with self.assertRaises(read_database.DatabaseError) as raised:
                database_pieces.lz4_decoded(bytes.fromhex(digits), 12)
            self.assertEqual(str(raised.exception), text, digits)


if __name__ == "__main__":
    unittest.main()

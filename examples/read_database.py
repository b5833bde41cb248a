#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Reads database files with Python's standard library; docs/database-format.md describes the format.

    read_database.py FILE                   prints the attributes, their extents and the metadata
    read_database.py FILE ATTRIBUTE [N]     prints the values of an attribute, of the first N records or of all

Reads both versions of the format, and blocks of all encodings.
"""
import argparse
import array
import contextlib
import itertools
import math
import pathlib
import sqlite3
import struct
import sys
import typing
import zlib

import database_pieces
from database_pieces import TYPE_CODES, DatabaseError, require

APPLICATION_ID = 0x52444243
MAXIMUM_LENGTH = 65536
MAXIMUM_TEXT_BYTES = 32 << 20  # of all attributes, and of all metadata items
MAXIMUM_EXTENT_COMPONENTS = 16
MAXIMUM_DEFAULT_CHARACTERS = 16  # as the declaration of the column has them

TABLES = {"database": ["records", "block_rows"],
          "attribute": ["id", "name", "type", "length", "scale", "offset", "unit", "title", "description"],
          "block": ["attribute", "number", "checksum", "data"],
          "metadata": ["name", "value"]}
TABLES_OF_VERSION_2 = {"database": ["catalogue_checksum", "extent_checksum"],
                       "block_index": ["attribute", "number", "encoding", "checksum", "bytes"],
                       "extent": ["attribute", "number", "component", "minimum", "maximum", "missing"]}


class Attribute(typing.NamedTuple):
    """A row of table `attribute`."""
    id: int
    name: str
    type: str
    length: int = 1
    scale: float = 1.0
    offset: float = 0.0
    unit: typing.Optional[str] = None
    title: typing.Optional[str] = None
    description: typing.Optional[str] = None


# The canonical text of the catalogue ---------------------------------------------------------------------------------

def canonical_field(value):
    """A field of a line: a null, an integer, a real or a text."""
    if value is None:
        return b"-"
    if isinstance(value, int):
        return b"%d" % value
    if isinstance(value, float):
        return struct.pack(">d", value + 0.0).hex().encode()  # -0.0 + 0.0 is 0.0
    require(isinstance(value, str), "catalogue: expected integers, reals, texts and nulls, found a blob")
    text = value.encode()
    return b"%d:%s" % (len(text), text)


def canonical_line(word, values):
    return b" ".join([word, *map(canonical_field, values)]) + b"\n"


def catalogue_text(layout, attributes, items, index):
    """The text whose CRC-32 is `catalogue_checksum`.

    layout      records and records per block
    attributes  Attribute objects by id
    items       pairs of name and value, by the bytes of the name
    index       rows of table `block_index` by attribute and number
    """
    lines = [b"rdb2nimbra 2\n", canonical_line(b"database", layout)]
    lines += [canonical_line(b"attribute", row) for row in attributes]
    lines += [canonical_line(b"metadata", row) for row in items]
    lines += [canonical_line(b"block", row) for row in index]
    return b"".join(lines)


def extent_text(extents):
    """The text whose CRC-32 is `extent_checksum`, of the rows of table `extent` by attribute, number and component."""
    return b"".join(canonical_line(b"extent", row) for row in extents)


def text_bytes(rows):
    """The bytes of all texts in some rows of texts and nulls."""
    return sum(len(text.encode()) for row in rows for text in row if text is not None)


def texts_of(attributes):
    """What counts as the texts of attributes: rows of names, units, titles and descriptions."""
    return [[attribute.name, attribute.unit, attribute.title, attribute.description] for attribute in attributes]


# Databases -----------------------------------------------------------------------------------------------------------

class Database:
    """An open database file: `version`, `records`, `block_rows`, `attributes` by name and `items` (the metadata).

    Raises DatabaseError or sqlite3.Error for a file that is no database or is damaged. Damage to blocks and extents is
    found when they are read.
    """

    def __init__(self, path):
        self.path = path
        self.file = sqlite3.connect(pathlib.Path(path).absolute().as_uri() + "?mode=ro", uri=True, isolation_level=None)
        try:
            self._open()
        except BaseException:
            self.file.close()
            raise

    def close(self):
        self.file.close()

    def _open(self):
        for statement in ("PRAGMA trusted_schema = OFF", "PRAGMA cell_size_check = ON"):
            self.file.execute(statement)
        self.file.execute("BEGIN")  # one unchanging state of the file
        ((application_id,),) = self._rows("PRAGMA application_id")
        require(application_id == APPLICATION_ID,
                f"{self.path}: expected application id {APPLICATION_ID}, found {application_id}")
        ((self.version,),) = self._rows("PRAGMA user_version")
        require(self.version in (1, 2), f"{self.path}: expected version 1 or 2, found {self.version}")
        self._require_tables()
        self._read_catalogue()

    def _rows(self, query, *values):
        try:
            return self.file.execute(query, values).fetchall()
        except UnicodeDecodeError as error:  # of SQLite's own message, which quotes the file
            raise DatabaseError(f"{self.path}: expected texts in UTF-8, found: {error}") from error
        except MemoryError as error:  # most often a damaged size
            raise DatabaseError(f"{self.path}: expected content that fits into memory, found a larger size") from error

    def _require_tables(self):
        """Version 1 has none of the tables and columns that version 2 adds."""
        for table, columns in TABLES.items():
            self._require_table(table, columns)
        for table, columns in TABLES_OF_VERSION_2.items():
            if self.version == 2:
                self._require_table(table, columns)
            else:
                self._refuse_table(table, columns)

    def _columns(self, table):
        """The names of a table's columns, without generated ones."""
        return {name.lower() for (name,) in self._rows("SELECT name FROM pragma_table_info(?)", table)}

    def _require_table(self, table, columns):
        kinds = self._rows("SELECT type, rootpage > 0 FROM sqlite_master WHERE name = ?", table)
        require(kinds == [("table", 1)], f'table "{table}" of {self.path}: expected an ordinary table, found none')
        missing = sorted(set(columns) - self._columns(table))
        require(not missing, f'table "{table}" of {self.path}: expected columns {columns}, found no {missing}')
        # Values that are not stored are not bounded by the size of the file.
        made = self._rows("SELECT name FROM pragma_table_xinfo(?) WHERE hidden <> 0 OR length(dflt_value) > ?", table,
                          MAXIMUM_DEFAULT_CHARACTERS)
        require(not made, f'table "{table}" of {self.path}: expected stored values, found a rule that makes them in'
                          f" {made}")

    def _refuse_table(self, table, columns):
        if table in TABLES:
            later = sorted(set(columns) & self._columns(table))
            require(not later, f'table "{table}" of {self.path}: expected no {later} in version 1, found them')
        else:
            kinds = self._rows("SELECT type FROM sqlite_master WHERE name = ? COLLATE NOCASE", table)
            require(not kinds, f'table "{table}" of {self.path}: expected no such table in version 1, found one')

    def _read_catalogue(self):
        layout = self._rows("SELECT records, block_rows FROM database")
        require(len(layout) == 1, f"{self.path}: expected 1 row of table database, found {len(layout)}")
        self.records, self.block_rows = layout[0]
        self._attributes = [Attribute(*row) for row in self._rows(
            'SELECT id, name, type, length, scale, "offset", unit, title, description FROM attribute ORDER BY id')]
        items = self._rows("SELECT name, value FROM metadata")
        for name, value in items:
            require(isinstance(name, str) and isinstance(value, str),
                    f"{self.path}: expected metadata items of two texts, found {name} and {value}")
        items.sort(key=lambda item: item[0].encode())
        index = None
        if self.version == 2:
            index = self._rows("SELECT attribute, number, encoding, checksum, bytes FROM block_index"
                               " ORDER BY attribute, number")
            found = zlib.crc32(catalogue_text(layout[0], self._attributes, items, index))
            ((expected,),) = self._rows("SELECT catalogue_checksum FROM database")
            require(found == expected, f"catalogue of {self.path}: expected checksum {expected}, found {found}")
        self._require_sense()
        if self.version == 2:
            self._require_text_bytes("attribute", texts_of(self._attributes))
            self._require_text_bytes("metadata", items)
        self.attributes = {attribute.name: attribute for attribute in self._attributes}
        require(len(self.attributes) == len(self._attributes),
                f"{self.path}: expected every name of an attribute once, found one twice")
        self.items = dict(items)
        self._require_blocks(index)

    def _require_sense(self):
        is_layout = isinstance(self.records, int) and isinstance(self.block_rows, int)
        require(is_layout and self.records >= 0 and 1 <= self.block_rows < 1 << 32,
                f"{self.path}: expected a count of records and 1 to 4294967295 per block,"
                f" found {self.records} and {self.block_rows}")
        for attribute in self._attributes:
            column = f'column "{attribute.name}" of {self.path}'
            require(isinstance(attribute.id, int), f"{column}: expected an integer as id, found {attribute.id}")
            require(isinstance(attribute.name, str) and attribute.type in TYPE_CODES,
                    f"{column}: expected a type of int8 to uint64, float32 or float64, found {attribute.type}")
            require(isinstance(attribute.length, int) and 1 <= attribute.length <= MAXIMUM_LENGTH,
                    f"{column}: expected 1 to {MAXIMUM_LENGTH} values per record, found {attribute.length}")
            for number in (attribute.scale, attribute.offset):
                require(isinstance(number, (int, float)) and math.isfinite(number),
                        f"{column}: expected finite scale and offset, found {number}")
            require(attribute.scale != 0, f"{column}: expected a scale other than 0, found 0")
            for text in (attribute.unit, attribute.title, attribute.description):
                require(text is None or isinstance(text, str), f"{column}: expected texts for people, found {text}")
        require(self._attributes or self.records == 0,
                f"{self.path}: expected no records without attributes, found {self.records}")

    def _require_text_bytes(self, table, rows):
        size = text_bytes(rows)
        require(size <= MAXIMUM_TEXT_BYTES,
                f'table "{table}" of {self.path}: expected at most {MAXIMUM_TEXT_BYTES} bytes of text, found {size}')

    def _require_blocks(self, index):
        """Every attribute has every block once, in table `block` and in the index. Reads no block."""
        keys = self._rows("SELECT attribute, number FROM block ORDER BY attribute, number")
        expected = self.block_count * len(self._attributes)
        require(len(keys) == expected, f'table "block" of {self.path}: expected {expected} blocks, found {len(keys)}')
        expected = [(attribute.id, number) for attribute in self._attributes for number in range(self.block_count)]
        require(keys == expected, f'table "block" of {self.path}: expected every block of each attribute, found others')
        self.index = None
        if index is not None:
            require([row[:2] for row in index] == keys,
                    f'table "block_index" of {self.path}: expected the blocks of table "block", found others')
            self.index = {row[:2]: row[2:] for row in index}

    @property
    def block_count(self):
        """Blocks per attribute."""
        return -(-self.records // self.block_rows)

    def block(self, name, number):
        """The records of a block as a raw block has them: little-endian values, record after record."""
        attribute = self.attributes[name]
        block = f'column "{name}" of {self.path}, block {number}'
        records = min(self.block_rows, self.records - number * self.block_rows)
        rows = self._rows("SELECT checksum, data FROM block WHERE attribute = ? AND number = ?", attribute.id, number)
        require(len(rows) == 1 and isinstance(rows[0][1], bytes), f"{block}: expected a blob, found none")
        checksum, data = rows[0]
        encoding = None
        if self.index is not None:
            encoding, *expected = self.index[attribute.id, number]
            require([checksum, len(data)] == expected,
                    f"{block}: expected checksum and bytes {expected} as in the index, found {[checksum, len(data)]}")
        found = zlib.crc32(data)
        require(checksum in (None, found), f"{block}: expected checksum {checksum}, found {found}")
        if encoding == "pieces":
            try:
                return database_pieces.decoded(data, attribute.type, attribute.length, records)
            except DatabaseError as error:
                raise DatabaseError(f"{block}: {error}") from error
        require(encoding is None, f'{block}: expected no encoding or "pieces", found "{encoding}"')
        size = records * attribute.length * struct.calcsize(TYPE_CODES[attribute.type])
        require(len(data) == size, f"{block}: expected {size} bytes, found {len(data)}")
        return data

    def stored(self, name):
        """All stored values of an attribute, record after record."""
        values = array.array(TYPE_CODES[self.attributes[name].type])
        for number in range(self.block_count):
            values.frombytes(self.block(name, number))
        if sys.byteorder == "big":
            values.byteswap()
        return values

    def values(self, name):
        """All values of an attribute: stored x scale + offset."""
        stored = self.stored(name)
        scale, offset = self.attributes[name].scale, self.attributes[name].offset
        if (scale, offset) == (1, 0):
            return stored
        return [float(value) * scale + offset for value in stored]

    def extents(self):
        """The rows of table `extent`: attribute, number, component, minimum, maximum, missing. None in version 1."""
        if self.version == 1:
            return []
        rows = self._rows("SELECT attribute, number, component, minimum, maximum, missing FROM extent"
                          " ORDER BY attribute, number, component")
        found = zlib.crc32(extent_text(rows)) if rows else None
        ((expected,),) = self._rows("SELECT extent_checksum FROM database")
        require(found == expected, f"extents of {self.path}: expected checksum {expected}, found {found}")
        for block, rows_of_block in itertools.groupby(rows, key=lambda row: row[:2]):
            self._require_extent(*block, list(rows_of_block))
        return rows

    def _require_extent(self, attribute, number, rows):
        block = f"extents of {self.path}, attribute {attribute}, block {number}"
        lengths = {known.id: known.length for known in self._attributes}
        length = lengths.get(attribute, 0)
        require(0 < length <= MAXIMUM_EXTENT_COMPONENTS and number in range(self.block_count),
                f"{block}: expected a block of at most {MAXIMUM_EXTENT_COMPONENTS} values per record, found none")
        components = [row[2] for row in rows]
        require(components == list(range(length)), f"{block}: expected {length} components, found {components}")
        records = min(self.block_rows, self.records - number * self.block_rows)
        for *_, minimum, maximum, missing in rows:
            ends = (minimum, maximum)
            is_range = all(isinstance(end, float) for end in ends) and minimum <= maximum
            require(isinstance(missing, int) and 0 <= missing <= records
                    and (ends == (None, None) if missing == records else is_range),
                    f"{block}: expected a range that fits the values that are missing, found {ends} and {missing}")


def shown_range(rows):
    """The extent of one component over all blocks."""
    minima = [row[3] for row in rows if row[3] is not None]
    maxima = [row[4] for row in rows if row[4] is not None]
    missing = sum(row[5] for row in rows)
    shown = f"{min(minima)!r} to {max(maxima)!r}" if minima else "no values"
    return shown + (f", {missing} missing" if missing else "")


def describe(database):
    print(f"version {database.version}, {database.records} records, {database.block_rows} per block")
    if database.version == 1:
        print("no checksum protects attributes and metadata")
    extents = database.extents()
    for attribute in database.attributes.values():
        unit = f", unit {attribute.unit}" if attribute.unit else ""
        print(f"{attribute.name}: {attribute.type} x {attribute.length}{unit}")
        for component in range(attribute.length):
            rows = [row for row in extents if row[0] == attribute.id and row[2] == component]
            if rows and len(rows) == database.block_count:
                print(f"  component {component}: {shown_range(rows)}")
    for name, value in database.items.items():
        print(f"{name} = {value}")


def print_values(database, name, records):
    require(name in database.attributes, f'{database.path}: expected an attribute "{name}", found none')
    length = database.attributes[name].length
    values = database.values(name)
    for record in range(database.records if records is None else min(records, database.records)):
        print(*values[record * length:(record + 1) * length])


def main():
    parser = argparse.ArgumentParser(description="Prints what a database file holds.")
    parser.add_argument("file", metavar="FILE")
    parser.add_argument("attribute", metavar="ATTRIBUTE", nargs="?", help="prints its values, one record per line")
    parser.add_argument("records", metavar="N", nargs="?", type=int, help="prints the first N records only")
    arguments = parser.parse_args()
    try:
        with contextlib.closing(Database(arguments.file)) as database:
            if arguments.attribute is None:
                describe(database)
            else:
                print_values(database, arguments.attribute, arguments.records)
    except DatabaseError as error:
        sys.exit(str(error))
    except sqlite3.Error as error:
        sys.exit(f"{arguments.file}: {error}")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Reads database files with Python's standard library alone; docs/database-format.md describes the format.

    read_database.py FILE                   prints the attributes, their extents and the metadata
    read_database.py FILE ATTRIBUTE [N]     prints the values of an attribute, of the first N records or of all

Reads versions 1 and 2, raw blocks and blocks in pieces; LZ4 is the one codec that the standard library does not have.
"""
import array
import sqlite3
import struct
import sys
import zlib

APPLICATION = 0x52444243
# Type codes of struct and array, bytes per value.
TYPES = {"int8": ("b", 1), "uint8": ("B", 1), "int16": ("h", 2), "uint16": ("H", 2), "int32": ("i", 4),
         "uint32": ("I", 4), "int64": ("q", 8), "uint64": ("Q", 8), "float32": ("f", 4), "float64": ("d", 8)}


class DatabaseError(Exception):
    """A file that is no database, or a damaged one."""


def require(condition, text):
    if not condition:
        raise DatabaseError(text)


# The canonical text of the catalogue ---------------------------------------------------------------------------------

def field(value):
    """One field of a line."""
    if value is None:
        return b"-"
    if isinstance(value, float):
        return struct.pack(">d", value + 0.0).hex().encode()  # -0.0 + 0.0 is 0.0
    if isinstance(value, str):
        text = value.encode()
        return b"%d:%s" % (len(text), text)
    return b"%d" % value


def line(word, *values):
    return b" ".join([word.encode(), *map(field, values)]) + b"\n"


def catalogue_text(layout, attributes, items, index):
    """The text whose CRC-32 is `catalogue_checksum`. Rows are tuples in the order of their columns."""
    return b"".join([b"rdb2nimbra 2\n", line("database", *layout),
                     *(line("attribute", *row) for row in attributes),
                     *(line("metadata", *row) for row in items),
                     *(line("block", *row) for row in index)])


def extent_text(extents):
    return b"".join(line("extent", *row) for row in extents)


# Pieces --------------------------------------------------------------------------------------------------------------

def unshuffled(data, width):
    """First bytes of all values, second bytes and so on, back to value after value."""
    count = len(data) // width
    plain = bytearray(len(data))
    for byte in range(width):
        plain[byte::width] = data[byte * count:(byte + 1) * count]
    return bytes(plain)


def summed(data, width, length):
    """Each value becomes the sum of the differences of its component so far, modulo 2^bits."""
    code = {1: "B", 2: "H", 4: "I", 8: "Q"}[width]
    values = list(struct.unpack("<%d%s" % (len(data) // width, code), data))
    mask = (1 << (8 * width)) - 1
    for i in range(length, len(values)):
        values[i] = (values[i] + values[i - length]) & mask
    return struct.pack("<%d%s" % (len(values), code), *values)


class Pieces:
    """A block in the encoding `pieces`."""

    def __init__(self, data, checksum, code, width, length, records):
        self.data, self.code, self.width, self.length, self.records = data, code, width, length, records
        count, self.per_piece, self.filter, self.codec, scaled, padding = struct.unpack_from("<IIBBBB", data)
        require(self.per_piece > 0 and count == -(-records // self.per_piece), "wrong count of pieces")
        require(self.filter <= 2 and self.codec <= 2 and scaled <= 1 and padding == 0, "wrong header of pieces")
        require(not scaled or code in "fd", "scaled integers")
        position = 12
        self.scaling = []
        for _ in range(length if scaled else 0):
            self.scaling.append(struct.unpack_from("<dd", data, position))
            position += 16
        table = [struct.unpack_from("<II", data, position + 8 * i) for i in range(count)]
        position += 8 * count
        self.pieces = []
        for size, piece_checksum in table:
            self.pieces.append((position, size, piece_checksum))
            position += size
        require(position == len(data), "pieces of %d bytes in a block of %d" % (position, len(data)))
        require(zlib.crc32(data) == checksum, "wrong checksum of a block")

    def piece(self, number):
        """The records of a piece as raw bytes."""
        position, size, checksum = self.pieces[number]
        stored = self.data[position:position + size]
        require(zlib.crc32(stored) == checksum, "wrong checksum of piece %d" % number)
        records = min(self.per_piece, self.records - number * self.per_piece)
        width = 4 if self.scaling else self.width
        plain = self.decompressed(stored, records * self.length * width)
        if self.filter:
            plain = unshuffled(plain, width)
        if self.filter == 2:
            plain = summed(plain, width, self.length)
        return self.restored(plain) if self.scaling else plain

    def decompressed(self, stored, size):
        require(self.codec != 2, "LZ4 blocks need a library beyond Python's own")
        if self.codec == 0:
            plain = stored
        else:
            stream = zlib.decompressobj()
            plain = stream.decompress(stored, size)  # never more than `size` bytes
            plain += stream.flush() if len(plain) < size else b""
            stream.decompress(stream.unconsumed_tail, 1)
            require(stream.eof and not stream.unused_data, "a zlib stream of another size")
        require(len(plain) == size, "a piece of another size")
        return plain

    def restored(self, plain):
        integers = struct.unpack("<%di" % (len(plain) // 4), plain)
        values = []
        for i, integer in enumerate(integers):
            scale, offset = self.scaling[i % self.length]
            values.append(float(integer) * scale + offset)
        return struct.pack("<%d%s" % (len(values), self.code), *values)

    def whole(self):
        return b"".join(self.piece(number) for number in range(len(self.pieces)))


# Databases -----------------------------------------------------------------------------------------------------------

class Database:
    """An open database: `version`, `records`, `block_rows`, `attributes` (rows by name) and `items`."""

    def __init__(self, path):
        self.path = path
        self.file = sqlite3.connect("file:%s?mode=ro" % path.replace("%", "%25").replace("?", "%3f").replace("#", "%23"),
                                    uri=True)
        self.file.execute("BEGIN")  # one unchanging state of the file
        require(self.rows("PRAGMA application_id") == [(APPLICATION,)], "no database of this kind")
        self.version = self.rows("PRAGMA user_version")[0][0]
        require(self.version in (1, 2), "version %d" % self.version)
        tables = {name for name, in self.rows("SELECT name FROM sqlite_schema")}
        columns = {name for name, in self.rows("SELECT name FROM pragma_table_info('database')")}
        later = {"block_index", "extent", "catalogue_checksum", "extent_checksum"} & (tables | columns)
        require(len(later) == (0 if self.version == 1 else 4), "tables of another version")
        (layout,) = self.rows("SELECT records, block_rows FROM database")
        self.records, self.block_rows = layout
        rows = self.rows('SELECT id, name, type, length, scale, "offset", unit, title, description FROM attribute'
                         " ORDER BY id")
        self.attributes = {row[1]: row for row in rows}
        items = self.rows("SELECT name, value FROM metadata ORDER BY name")  # SQLite compares bytes
        self.items = dict(items)
        self.index = None
        if self.version == 2:
            index = self.rows("SELECT attribute, number, encoding, checksum, bytes FROM block_index"
                              " ORDER BY attribute, number")
            self.index = {row[:2]: row[2:] for row in index}
            (found,) = self.rows("SELECT catalogue_checksum FROM database")
            require(zlib.crc32(catalogue_text(layout, rows, items, index)) == found[0],
                    "wrong checksum of the catalogue")

    def rows(self, query, *values):
        return self.file.execute(query, values).fetchall()

    def extents(self):
        """Rows (attribute, number, component, minimum, maximum, missing); version 2 only."""
        if self.version == 1:
            return []
        rows = self.rows("SELECT attribute, number, component, minimum, maximum, missing FROM extent"
                         " ORDER BY attribute, number, component")
        (found,) = self.rows("SELECT extent_checksum FROM database")
        require(found[0] == (zlib.crc32(extent_text(rows)) if rows else None), "wrong checksum of the extents")
        return rows

    def block(self, name, number):
        """The records of a block as raw little-endian bytes."""
        attribute, _, type_name, length = self.attributes[name][:4]
        code, width = TYPES[type_name]
        records = min(self.block_rows, self.records - number * self.block_rows)
        found = self.rows("SELECT checksum, data FROM block WHERE attribute = ? AND number = ?", attribute, number)
        require(len(found) == 1, "no block %d of %s" % (number, name))
        checksum, data = found[0]
        encoding = None
        if self.index is not None:
            encoding, expected, size = self.index[attribute, number]
            require(checksum == expected and len(data) == size, "block %d of %s is not that of the index" % (number, name))
        if encoding == "pieces":
            return Pieces(data, checksum, code, width, length, records).whole()
        require(encoding is None, "encoding " + str(encoding))
        require(checksum is None or zlib.crc32(data) == checksum, "wrong checksum of block %d of %s" % (number, name))
        require(len(data) == records * length * width, "block %d of %s has another size" % (number, name))
        return data

    def stored(self, name):
        """All stored values of an attribute, record after record."""
        code, _ = TYPES[self.attributes[name][2]]
        values = array.array(code)
        for number in range(-(-self.records // self.block_rows)):
            values.frombytes(self.block(name, number))
        if sys.byteorder == "big":
            values.byteswap()
        return values

    def values(self, name):
        """All values of an attribute: stored x scale + offset."""
        scale, offset = self.attributes[name][4:6]
        stored = self.stored(name)
        return stored if (scale, offset) == (1, 0) else [value * scale + offset for value in stored]


def describe(database):
    print("version", database.version, "records", database.records)
    extents = database.extents()
    for number, name, type_name, length, *rest in database.attributes.values():
        print(name, type_name, "x", length)
        for component in range(length):
            ranges = [row[3:5] for row in extents if row[0] == number and row[2] == component and row[3] is not None]
            if ranges:
                print("  ", min(low for low, _ in ranges), "to", max(high for _, high in ranges))
    for name, value in database.items.items():
        print(name, "=", value)


def main(arguments):
    if len(arguments) not in (1, 2, 3):
        sys.exit(__doc__)
    try:
        database = Database(arguments[0])
        if len(arguments) == 1:
            describe(database)
            return
        length = database.attributes[arguments[1]][3]
        values = database.values(arguments[1])
        records = int(arguments[2]) if len(arguments) == 3 else database.records
        for record in range(min(records, database.records)):
            print(*(repr(value) for value in values[record * length:(record + 1) * length]))
    except (DatabaseError, sqlite3.Error, struct.error, zlib.error) as error:
        sys.exit("%s: %s" % (arguments[0], error))


if __name__ == "__main__":
    main(sys.argv[1:])

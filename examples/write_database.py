#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Writes a database file of version 2 with Python's standard library alone; docs/database-format.md describes the format.

    write_database.py INPUT OUTPUT [raw|deflate]     copies a database that read_database.py can read

`write` is what other programs would take over: attributes, values and items in, a file out.
"""
import math
import os
import sqlite3
import struct
import sys
import zlib

import read_database
from read_database import TYPES, catalogue_text, extent_text

SCHEMA = """
CREATE TABLE database (records INTEGER NOT NULL, block_rows INTEGER NOT NULL,
                       catalogue_checksum INTEGER NOT NULL, extent_checksum INTEGER);
CREATE TABLE attribute(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, type TEXT NOT NULL,
                       length INTEGER NOT NULL DEFAULT 1, scale REAL NOT NULL DEFAULT 1, offset REAL NOT NULL DEFAULT 0,
                       unit TEXT, title TEXT, description TEXT);
CREATE TABLE block    (attribute INTEGER NOT NULL REFERENCES attribute(id), number INTEGER NOT NULL,
                       checksum INTEGER, data BLOB NOT NULL, PRIMARY KEY (attribute, number));
CREATE TABLE metadata (name TEXT PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE block_index(attribute INTEGER NOT NULL, number INTEGER NOT NULL, encoding TEXT, checksum INTEGER NOT NULL,
                         bytes INTEGER NOT NULL, PRIMARY KEY(attribute, number)) WITHOUT ROWID;
CREATE TABLE extent(attribute INTEGER NOT NULL, number INTEGER NOT NULL, component INTEGER NOT NULL, minimum REAL,
                    maximum REAL, missing INTEGER NOT NULL, PRIMARY KEY(attribute, number, component)) WITHOUT ROWID;
"""
PIECE_BYTES = 262144  # decoded, about


def shuffled(data, width):
    return b"".join(data[byte::width] for byte in range(width))


def encoded(data, width, length, records):
    """A block in pieces: shuffled and compressed by zlib. Other filters and scaled integers may make it smaller."""
    record_bytes = width * length
    per_piece = max(PIECE_BYTES // record_bytes, 1)
    pieces = []
    for first in range(0, records, per_piece):
        plain = data[first * record_bytes:(first + per_piece) * record_bytes]
        pieces.append(zlib.compress(shuffled(plain, width), 6))
    shuffle, zlib_stream, scaled = 1, 1, 0
    header = struct.pack("<IIBBBB", len(pieces), per_piece, shuffle, zlib_stream, scaled, 0)
    table = b"".join(struct.pack("<II", len(piece), zlib.crc32(piece)) for piece in pieces)
    return header + table + b"".join(pieces)


def range_of(values, scale, offset):
    """Minimum, maximum and count of missing values, after scale and offset."""
    present = [value for value in values if value == value]
    if not present:
        return None, None, len(values)
    ends = [outward(low, direction) * scale + offset
            for low, direction in ((min(present), -math.inf), (max(present), math.inf))]
    return min(ends) + 0.0, max(ends) + 0.0, len(values) - len(present)


def outward(value, direction):
    """The value as a float; of integers that no float holds, the next one in the direction."""
    near = float(value)
    if isinstance(value, int) and (int(near) - value) * direction < 0:
        return math.nextafter(near, direction)
    return near


def write(path, attributes, columns, items, block_rows=1000000, encoding="deflate"):
    """Writes a database.

    attributes  rows (name, type, length, scale, offset, unit, title, description); None for a text that is absent
    columns     for each attribute its stored values, record after record, as an array.array of its type
    items       names and texts
    """
    temporary = path + ".partial"
    if os.path.exists(temporary):
        os.remove(temporary)
    file = sqlite3.connect(temporary, isolation_level=None)
    file.executescript("PRAGMA page_size=65536; PRAGMA application_id=%d; PRAGMA user_version=2; BEGIN;"
                       % read_database.APPLICATION + SCHEMA)
    records = len(columns[0]) // attributes[0][2] if attributes else 0
    rows = [(number, name, kind, length, float(scale), float(offset), *texts)
            for number, (name, kind, length, scale, offset, *texts) in enumerate(attributes, 1)]
    index, extents = [], []
    for row, values in zip(rows, columns):
        attribute, _, kind, length, scale, offset = row[:6]
        file.execute("INSERT INTO attribute VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)", row)
        code, width = TYPES[kind]
        for number, first in enumerate(range(0, records, block_rows)):
            block = values[first * length:(first + block_rows) * length]
            raw = struct.pack("<%d%s" % (len(block), code), *block)
            data = encoded(raw, width, length, len(block) // length) if encoding == "deflate" else raw
            name = "pieces" if len(data) < len(raw) else None
            data = data if name else raw
            file.execute("INSERT INTO block VALUES (?, ?, ?, ?)", (attribute, number, zlib.crc32(data), data))
            index.append((attribute, number, name, zlib.crc32(data), len(data)))
            for component in range(length if length <= 16 else 0):
                extents.append((attribute, number, component, *range_of(block[component::length], scale, offset)))
    items = sorted(items.items(), key=lambda item: item[0].encode())
    file.executemany("INSERT INTO metadata VALUES (?, ?)", items)
    file.executemany("INSERT INTO block_index VALUES (?, ?, ?, ?, ?)", index)
    file.executemany("INSERT INTO extent VALUES (?, ?, ?, ?, ?, ?)", extents)
    layout = (records, block_rows)
    file.execute("INSERT INTO database VALUES (?, ?, ?, ?)",
                 (*layout, zlib.crc32(catalogue_text(layout, rows, items, index)),
                  zlib.crc32(extent_text(extents)) if extents else None))
    file.execute("COMMIT")
    file.close()
    os.replace(temporary, path)


def main(arguments):
    if len(arguments) not in (2, 3):
        sys.exit(__doc__)
    source = read_database.Database(arguments[0])
    attributes = [row[1:] for row in source.attributes.values()]
    write(arguments[1], attributes, [source.stored(row[0]) for row in attributes], source.items, source.block_rows,
          arguments[2] if len(arguments) == 3 else "deflate")


if __name__ == "__main__":
    main(sys.argv[1:])

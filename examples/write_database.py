#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Writes database files of version 2 with Python's standard library; docs/database-format.md describes the format.

    write_database.py INPUT OUTPUT [--encoding raw|deflate] [--block-rows N]     copies a database of either version

Other programs call `write`, which takes attributes, values and metadata items.
"""
import argparse
import contextlib
import math
import os
import sqlite3
import sys
import zlib

import database_pieces
import read_database
from read_database import (MAXIMUM_EXTENT_COMPONENTS, MAXIMUM_TEXT_BYTES, catalogue_text, extent_text, text_bytes,
                           texts_of)

SCHEMA = """
CREATE TABLE database (records INTEGER NOT NULL, block_rows INTEGER NOT NULL,
                       catalogue_checksum INTEGER NOT NULL, extent_checksum INTEGER);
CREATE TABLE attribute(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, type TEXT NOT NULL,
                       length INTEGER NOT NULL DEFAULT 1, scale REAL NOT NULL DEFAULT 1,
                       offset REAL NOT NULL DEFAULT 0, unit TEXT, title TEXT, description TEXT);
CREATE TABLE block    (attribute INTEGER NOT NULL REFERENCES attribute(id), number INTEGER NOT NULL,
                       checksum INTEGER, data BLOB NOT NULL, PRIMARY KEY (attribute, number));
CREATE TABLE metadata (name TEXT PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE block_index(attribute INTEGER NOT NULL, number INTEGER NOT NULL, encoding TEXT,
                         checksum INTEGER NOT NULL, bytes INTEGER NOT NULL,
                         PRIMARY KEY(attribute, number)) WITHOUT ROWID;
CREATE TABLE extent(attribute INTEGER NOT NULL, number INTEGER NOT NULL, component INTEGER NOT NULL,
                    minimum REAL, maximum REAL, missing INTEGER NOT NULL,
                    PRIMARY KEY(attribute, number, component)) WITHOUT ROWID;
"""


# Extents -------------------------------------------------------------------------------------------------------------

def real_below(value):
    """The value as a real; of an integer that no real equals, the next lower one."""
    nearest = float(value)
    return math.nextafter(nearest, -math.inf) if nearest > value else nearest


def real_above(value):
    nearest = float(value)
    return math.nextafter(nearest, math.inf) if nearest < value else nearest


def extent(values, scale, offset):
    """Minimum, maximum and count of missing values of stored values, after scale and offset."""
    numbers = [value for value in values if value == value]  # not-a-number differs from itself
    missing = len(values) - len(numbers)
    if not numbers:
        return None, None, missing
    ends = [real_below(min(numbers)) * scale + offset, real_above(max(numbers)) * scale + offset]
    return min(ends), max(ends), missing


# Databases -----------------------------------------------------------------------------------------------------------

def checked_records(attributes, columns, items):
    """The number of records. Raises ValueError where the arguments of `write` do not fit together."""
    counts = set()
    for attribute, values in zip(attributes, columns, strict=True):
        if not attribute.name or values.typecode != database_pieces.TYPE_CODES[attribute.type]:
            raise ValueError(f'column "{attribute.name}": expected a name and an array of {attribute.type},'
                             f' found an array of type code "{values.typecode}"')
        if len(values) % attribute.length != 0:
            raise ValueError(f'column "{attribute.name}": expected {attribute.length} values per record,'
                             f" found {len(values)} values")
        if attribute.scale == 0 or not math.isfinite(attribute.scale) or not math.isfinite(attribute.offset):
            raise ValueError(f'column "{attribute.name}": expected a finite scale other than 0 and a finite offset,'
                             f" found {attribute.scale} and {attribute.offset}")
        counts.add(len(values) // attribute.length)
    if len(counts) > 1:
        raise ValueError(f"columns: expected the same number of records in each, found {sorted(counts)}")
    for what, rows in (("attributes", texts_of(attributes)), ("metadata", items)):
        if text_bytes(rows) > MAXIMUM_TEXT_BYTES:
            raise ValueError(f"{what}: expected at most {MAXIMUM_TEXT_BYTES} bytes of text, found {text_bytes(rows)}")
    return counts.pop() if counts else 0


def insert_blocks(file, attribute, values, block_rows, encoding):
    """Inserts the blocks of a column; returns their rows of the tables `block_index` and `extent`."""
    index, extents = [], []
    length = attribute.length
    for number, first in enumerate(range(0, len(values), block_rows * length)):
        block = values[first:first + block_rows * length]
        data, name = database_pieces.little_endian(block), None
        if encoding == "deflate":
            pieces = database_pieces.encoded(block, length)
            if len(pieces) < len(data):
                data, name = pieces, "pieces"
        checksum = zlib.crc32(data)
        file.execute("INSERT INTO block (attribute, number, checksum, data) VALUES (?, ?, ?, ?)",
                     (attribute.id, number, checksum, data))
        index.append((attribute.id, number, name, checksum, len(data)))
        if length <= MAXIMUM_EXTENT_COMPONENTS:
            for component in range(length):
                extents.append((attribute.id, number, component,
                                *extent(block[component::length], attribute.scale, attribute.offset)))
    return index, extents


def insert_content(file, attributes, columns, items, block_rows, encoding):
    records = checked_records(attributes, columns, items)
    file.executemany("INSERT INTO attribute VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)", attributes)
    index, extents = [], []
    for attribute, values in zip(attributes, columns):
        block_rows_of_index, rows_of_extent = insert_blocks(file, attribute, values, block_rows, encoding)
        index += block_rows_of_index
        extents += rows_of_extent
    file.executemany("INSERT INTO metadata VALUES (?, ?)", items)
    file.executemany("INSERT INTO block_index VALUES (?, ?, ?, ?, ?)", index)
    file.executemany("INSERT INTO extent VALUES (?, ?, ?, ?, ?, ?)", extents)
    layout = (records, block_rows)
    catalogue_checksum = zlib.crc32(catalogue_text(layout, attributes, items, index))
    extent_checksum = zlib.crc32(extent_text(extents)) if extents else None
    file.execute("INSERT INTO database VALUES (?, ?, ?, ?)", (*layout, catalogue_checksum, extent_checksum))


def write(path, attributes, columns, items, block_rows=1000000, encoding="deflate"):
    """Writes a database file of version 2; an older file at `path` is replaced when the new one is complete.

    attributes  Attribute objects by rising id
    columns     for each attribute an array.array of its type: all stored values, record after record
    items       metadata: texts by name
    block_rows  records per block
    encoding    "raw" or "deflate"; a block that deflate does not make smaller is stored raw
    """
    attributes = [attribute._replace(scale=float(attribute.scale), offset=float(attribute.offset))
                  for attribute in attributes]
    items = sorted(items.items(), key=lambda item: item[0].encode())
    unfinished = f"{path}.{os.getpid()}.partial"
    try:
        with contextlib.closing(sqlite3.connect(unfinished, isolation_level=None)) as file:
            file.executescript("PRAGMA page_size = 65536; BEGIN; PRAGMA user_version = 2;"
                               f"PRAGMA application_id = {read_database.APPLICATION_ID};" + SCHEMA)
            insert_content(file, attributes, columns, items, block_rows, encoding)
            file.execute("COMMIT")
        os.replace(unfinished, path)
    except BaseException:
        with contextlib.suppress(FileNotFoundError):
            os.remove(unfinished)
        raise


def main():
    parser = argparse.ArgumentParser(description="Copies a database file of either version to one of version 2.")
    parser.add_argument("input", metavar="INPUT")
    parser.add_argument("output", metavar="OUTPUT")
    parser.add_argument("--encoding", choices=["raw", "deflate"], default="deflate")
    parser.add_argument("--block-rows", metavar="N", type=int, help="records per block; as the input has by default")
    arguments = parser.parse_args()
    try:
        with contextlib.closing(read_database.Database(arguments.input)) as source:
            columns = [source.stored(name) for name in source.attributes]
            write(arguments.output, list(source.attributes.values()), columns, source.items,
                  arguments.block_rows or source.block_rows, arguments.encoding)
    except read_database.DatabaseError as error:
        sys.exit(str(error))
    except sqlite3.Error as error:
        sys.exit(f"{arguments.input} to {arguments.output}: {error}")


if __name__ == "__main__":
    main()

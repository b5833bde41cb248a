# SPDX-License-Identifier: BSD-3-Clause
"""What the tests of the Python examples share: their modules, a small database, and statements on its tables."""
import array
import contextlib
import os
import sqlite3
import sys
import zlib

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
sys.path.insert(0, os.path.join(ROOT, "examples"))

import database_pieces  # noqa: E402
import read_database  # noqa: E402
import write_database  # noqa: E402
from read_database import Attribute  # noqa: E402

__all__ = ["ROOT", "Attribute", "database_pieces", "read_database", "write_database", "content_of", "execute",
           "renew_catalogue_checksum", "renew_extent_checksum", "rows_of", "write_example", "write_sample"]

TIME_BASE = '{"epoch": "2015-10-27T00:00:00+00:00"}'


def write_example(path):
    """The example of the page: two records of one attribute, and one metadata item."""
    attribute = Attribute(1, "riegl.xyz", "float64", 3, unit="m", title="Koordinaten Österreich")
    write_database.write(path, [attribute], [array.array("d", [1, 2, 3, 4, 5, 6])], {"riegl.time_base": TIME_BASE})


def write_sample(path):
    """Two columns of 300 records in blocks of 128, the first one scaled; two metadata items."""
    attributes = [Attribute(1, "points", "float64", 3, unit="m", title="Höhe"),
                  Attribute(2, "classes", "uint16", scale=0.5, offset=-3.0)]
    points = array.array("d", [float(i * 37 % 5000) * 0.001 for i in range(900)])
    classes = array.array("H", [i // 50 for i in range(300)])
    items = {"riegl.time_base": TIME_BASE, "Ä": "日本"}
    write_database.write(path, attributes, [points, classes], items, 128)


def content_of(path):
    """Everything that a reader learns from a file."""
    with contextlib.closing(read_database.Database(path)) as database:
        names = list(database.attributes)
        stored = [database.stored(name).tobytes() for name in names]
        return (list(database.attributes.values()), database.items, database.extents(), stored,
                [list(database.values(name)) for name in names])


def execute(path, script):
    """Runs statements on a file, as any other program might."""
    with contextlib.closing(sqlite3.connect(path, isolation_level=None)) as file:
        file.executescript(script)


def renew_catalogue_checksum(path):
    """Makes the checksum that of the tables, as a writer would that writes such tables."""
    text = read_database.catalogue_text(
        rows_of(path, "SELECT records, block_rows FROM database")[0],
        rows_of(path, "SELECT * FROM attribute ORDER BY id"),
        rows_of(path, "SELECT name, value FROM metadata ORDER BY name"),
        rows_of(path, "SELECT * FROM block_index ORDER BY attribute, number"))
    execute(path, f"UPDATE database SET catalogue_checksum = {zlib.crc32(text)}")


def renew_extent_checksum(path):
    """The same for the checksum of the extents."""
    text = read_database.extent_text(rows_of(path, "SELECT * FROM extent ORDER BY attribute, number, component"))
    execute(path, f"UPDATE database SET extent_checksum = {zlib.crc32(text)}")


def rows_of(path, query):
    with contextlib.closing(sqlite3.connect(path)) as file:
        return file.execute(query).fetchall()

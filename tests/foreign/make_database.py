#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Writes a database file from a JSON description.

make_database.py DESCRIPTION FILE

The description is {"records": n, "metadata": {name: text or JSON value}, "columns": [{"name", "type", "length",
"values": [...]}]}. The values of a record may be a list of their own. Numbers that JSON does not have are the texts
"nan", "inf" and "-inf". The form of the file is told in quarry/database.h.
"""
import json
import struct
import sys
from urllib.parse import quote

FORMATS = {"uint8": "B", "uint16": "H", "int16": "h", "uint32": "I", "int32": "i", "uint64": "Q",
           "float32": "f", "float64": "d"}
PLAIN = "._-/:,{}[]\""


def flat(values):
    for value in values:
        if isinstance(value, list):
            yield from flat(value)
        else:
            yield value


def bits(kind, value):
    number = float(value) if kind.startswith("float") else int(value)
    try:
        return struct.pack(">" + FORMATS[kind], number).hex()
    except OverflowError:  # beyond the range of single precision
        return struct.pack(">f", float("inf") if number > 0 else float("-inf")).hex()


def lines(description):
    records = int(description["records"])
    yield "quarry-database 1"
    yield f"records {records}"
    for name, value in description.get("metadata", {}).items():
        text = value if isinstance(value, str) else json.dumps(value, ensure_ascii=False)
        yield f"meta {quote(name, safe=PLAIN)} {quote(text, safe=PLAIN)}"
    for column in description.get("columns", []):
        name, kind, length = column["name"], column["type"], int(column.get("length", 1))
        if kind not in FORMATS:
            sys.exit(f"{name}: {kind} is none of {', '.join(FORMATS)}")
        values = [bits(kind, value) for value in flat(column["values"])]
        if len(values) != records * length:
            sys.exit(f"{name}: {len(values)} values, not {records * length}")
        yield f"column {kind} {length} {quote(name, safe=PLAIN)}"
        yield " ".join(values)
    yield "end"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[1], encoding="utf-8") as source:
        description = json.load(source)
    with open(sys.argv[2], "w", encoding="ascii", newline="\n") as target:
        for line in lines(description):
            target.write(line + "\n")


if __name__ == "__main__":
    main()

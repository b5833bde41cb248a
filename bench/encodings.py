#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
# Imports survey files with every encoding of the blocks and prints their bytes per record.
"""usage: encodings.py BIN_FOLDER DATA_FOLDER [SYNTH_RECORDS]

BIN_FOLDER holds rdbtool. Every LAS and SBET file in DATA_FOLDER is imported with --encoding raw, lz4 and deflate, and a
synthetic scan is made with each (default: 12,000,000 records). The table shows the bytes of all blocks per record, without
the 10 pages of 64 KB that an empty database has, for the coordinates and the time stamps alone as well. The ratios compare
with the LAZ file of the same points where one of that name is in the folder or its size per point is in LAZ_BYTES. A file
that cannot be imported is named with the reason. Below some thousand records the pieces are short and the figures high."""

import glob
import json
import os
import subprocess
import sys
import tempfile

ENCODINGS = ("raw", "lz4", "deflate")
# Bytes per point of compressed files of the same points; they cannot be made here.
LAZ_BYTES = {"autzen_trim": 5.49, "lone-star": 4.59}
ROW = "{:38} {:>9} {:>8} {:>8} {:>8} {:>22} {:>22} {:>7}"


def stored(tool, arguments, folder, encoding):
    """The JSON description of the database that the arguments make, or the error text."""
    database = os.path.join(folder, "out.rdbx")
    made = subprocess.run([tool, *arguments, "-o", database, "--encoding", encoding], capture_output=True, text=True)
    if made.returncode != 0:
        return made.stderr.strip().splitlines()[-1]
    subprocess.run([tool, "verify", database], check=True, stdout=subprocess.DEVNULL)
    described = subprocess.run([tool, "info", "--json", database], check=True, capture_output=True, text=True)
    return json.loads(described.stdout)


def bytes_per_record(description, names=None):
    return sum(a["bytes_per_record"] for a in description["attributes"] if names is None or a["name"] in names)


def laz_bytes(path, records):
    """Bytes per point of the LAZ file of the same points, or None."""
    stem = os.path.splitext(path)[0]
    if os.path.exists(stem + ".laz"):
        return os.path.getsize(stem + ".laz") / records
    return LAZ_BYTES.get(os.path.basename(stem))


def three(descriptions, names):
    return " / ".join(f"{bytes_per_record(d, names):.2f}" for d in descriptions)


def print_line(name, descriptions, laz):
    records = descriptions[0]["records"]
    if records == 0:
        print(f"{name}: no records")
        return
    sizes = [bytes_per_record(d) for d in descriptions]
    ratios = "" if laz is None else f"lz4 {sizes[1] / laz:.2f}, deflate {sizes[2] / laz:.2f}"
    print(ROW.format(name, records, *(f"{size:.2f}" for size in sizes), three(descriptions, {"riegl.xyz"}),
                     three(descriptions, {"riegl.timestamp", "riegl.pof_timestamp"}), ratios), flush=True)


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    tool = os.path.join(sys.argv[1], "rdbtool")
    synth_records = sys.argv[3] if len(sys.argv) == 4 else "12000000"
    sources = sorted(p for p in glob.glob(os.path.join(sys.argv[2], "*")) if p.endswith((".las", ".laz", ".sbet")))
    jobs = [(os.path.basename(p), ["import", p], p) for p in sources]
    jobs += [(f"synth {kind}", ["synth", kind, "--records", records, "--seed", "7"], kind)
             for kind, records in (("scan", synth_records), ("shots", "1000000"), ("trajectory", "100000"))]
    print(ROW.format("file", "records", *ENCODINGS, "xyz", "time stamps", "to LAZ"))
    with tempfile.TemporaryDirectory() as folder:
        for name, arguments, path in jobs:
            descriptions = [stored(tool, arguments, folder, encoding) for encoding in ENCODINGS]
            if isinstance(descriptions[0], str):
                print(f"{name}: not imported: {descriptions[0]}")
                continue
            print_line(name, descriptions, laz_bytes(path, max(descriptions[0]["records"], 1)))


main()

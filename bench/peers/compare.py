#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
# Reads the same columns with the library's host, with VTK's XML reader and with numpy.fromfile, and prints ratios.
# docs/benchmarks.md says how to read them. Nothing is installed; a missing peer is named and skipped.
"""usage: compare.py BIN_FOLDER [RECORDS [REPETITIONS]]

BIN_FOLDER holds the programs of the release build. One of them, peer_columns, runs the library. The peers need
the Debian packages python3-numpy and python3-vtk9."""

import os
import statistics
import struct
import subprocess
import sys
import tempfile
import time

# The columns of the comparison: 36 bytes per record.
COLUMNS = [("xyz", "f8", 3), ("time", "f8", 1), ("intensity", "u2", 1), ("returns", "u1", 1), ("number", "u1", 1)]
VTK_TYPES = {"f8": "Float64", "u2": "UInt16", "u1": "UInt8"}
BYTES = {"f8": 8, "u2": 2, "u1": 1}


def write_vtp(path, bare, records):
    """An appended-raw file: the header in XML, each array after its length in bytes."""
    offset = 0
    arrays = []
    for name, kind, length in COLUMNS:
        arrays.append(f'<DataArray type="{VTK_TYPES[kind]}" Name="{name}" NumberOfComponents="{length}" '
                      f'format="appended" offset="{offset}"/>')
        offset += 8 + records * length * BYTES[kind]
    with open(path, "wb") as out, open(bare, "rb") as columns:
        out.write(f'<?xml version="1.0"?>\n<VTKFile type="PolyData" version="1.0" byte_order="LittleEndian" '
                  f'header_type="UInt64">\n<PolyData><Piece NumberOfPoints="{records}" NumberOfVerts="0" '
                  f'NumberOfLines="0" NumberOfStrips="0" NumberOfPolys="0">\n<PointData>{"".join(arrays[1:])}'
                  f'</PointData>\n<Points>{arrays[0]}</Points>\n</Piece></PolyData>\n'
                  f'<AppendedData encoding="raw">\n_'.encode())
        for _, kind, length in COLUMNS:
            size = records * length * BYTES[kind]
            out.write(struct.pack("<Q", size))
            for done in range(0, size, 1 << 24):
                out.write(columns.read(min(1 << 24, size - done)))
        out.write(b"\n</AppendedData>\n</VTKFile>\n")


def numpy_reader():
    import numpy

    def read(_, bare, records):
        with open(bare, "rb") as columns:
            return [numpy.fromfile(columns, dtype=kind, count=records * length) for _, kind, length in COLUMNS]

    def total(columns):
        return float(columns[1].sum())

    return read, total


def vtk_reader():
    from vtkmodules.util.numpy_support import vtk_to_numpy
    from vtkmodules.vtkIOXML import vtkXMLPolyDataReader

    def read(vtp, _, __):
        reader = vtkXMLPolyDataReader()
        reader.SetFileName(vtp)
        reader.Update()
        return reader.GetOutput()

    def total(data):
        return float(vtk_to_numpy(data.GetPointData().GetArray("time")).sum())

    return read, total


class Loader:
    """The library in a process that loads on request and prints the seconds."""

    def __init__(self, program, database, one_processor):
        command = [program, "load", database]
        if one_processor:
            command = ["taskset", "-c", str(min(os.sched_getaffinity(0)))] + command
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def load(self):
        self.process.stdin.write("\n")
        self.process.stdin.flush()
        seconds, total = self.process.stdout.readline().split()
        return float(seconds), float(total)


def compare(name, loader, read, total, files, repetitions):
    expected = loader.load()[1]
    found = total(read(*files))
    if abs(found - expected) > 1e-9 * abs(expected):
        sys.exit(f"compare.py: {name} gives another sum of time stamps: expected {expected!r}, found {found!r}")
    ours, theirs = [], []
    for _ in range(repetitions):
        ours.append(loader.load()[0])
        start = time.perf_counter()
        data = read(*files)
        theirs.append(time.perf_counter() - start)
        del data
    ratios = [a / b for a, b in zip(ours, theirs)]
    print(f"{name}: {1000 * statistics.median(ours):.1f} ms / {1000 * statistics.median(theirs):.1f} ms = "
          f"{statistics.median(ours) / statistics.median(theirs):.3f} ({min(ratios):.3f}..{max(ratios):.3f})")


def main():
    if not 2 <= len(sys.argv) <= 4:
        sys.exit(__doc__)
    program = os.path.join(sys.argv[1], "peer_columns")
    records = int(sys.argv[2]) if len(sys.argv) > 2 else 20000000
    repetitions = int(sys.argv[3]) if len(sys.argv) > 3 else 9
    with tempfile.TemporaryDirectory() as folder:
        database, bare, vtp = (os.path.join(folder, name) for name in ("scan.rdbx", "columns.bin", "columns.vtp"))
        subprocess.run([program, "write", database, bare, str(records)], check=True)
        one, two = Loader(program, database, True), Loader(program, database, False)
        for peer, package, make in (("numpy.fromfile", "python3-numpy", numpy_reader),
                                    ("vtkXMLPolyDataReader", "python3-vtk9", vtk_reader)):
            try:
                read, total = make()
            except ImportError:
                print(f"{peer}: skipped, it needs the Debian package {package}")
                continue
            if make is vtk_reader:
                write_vtp(vtp, bare, records)
            for threads, loader in (("one client thread", one), ("two client threads", two)):
                compare(f"rdbx2Z4, {threads} / {peer}", loader, read, total, (vtp, bare, records), repetitions)


main()

#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
# Times whole processes that load the same points from raw and from encoded databases, warm and from a slow disk.
"""usage: encoded_loads.py BIN_FOLDER [--points FILE.las] [--records N] [--rounds N] [--cold MB_PER_SECOND...]
                        [--folder FOLDER]

BIN_FOLDER holds rdbtool and nimbra-host of the release build. The points are those of a LAS file of format 1 or 3,
repeated up to the number of records (default: 12,000,000), or of `rdbtool synth scan`. Each repetition keeps a random
four fifths of the points in their order and moves coordinates, time stamps and intensities, so that no repetition is a
copy that an encoding could find. The databases go to a temporary folder, or to FOLDER, where they stay and are used
again; --rounds 0 only makes them. Each round runs one process of `nimbra-host load --all-attributes --json` per encoding,
in alternating order. The table has medians, and ratios to raw of neighbouring runs. All loads must print the same.

Warm: the files are in the page cache, from the loads that compare them. --cold limits reading to so many megabytes
(10^6 bytes) per second by a control group of its own, in the blkio hierarchy (blkio.throttle.read_bps_device) or in a
unified one (io.max), and empties the page cache of the file before each run; this needs the superuser and a folder on a
block device. The lines "device" give what `cat` reads per second, without and with the limit."""

import argparse
import contextlib
import hashlib
import json
import os
import random
import resource
import statistics
import struct
import subprocess
import sys
import tempfile
import time

ENCODINGS = ("raw", "lz4", "deflate")
MEGABYTE = 1000000


def write_points(source, path, records):
    """Writes a LAS file of so many points, made from those of `source`."""
    with open(source, "rb") as file:
        data = bytearray(file.read())
    offset, = struct.unpack_from("<I", data, 96)
    form, length, count = data[104], *struct.unpack_from("<HI", data, 105)
    if form not in (1, 3):
        sys.exit(f"{source}: expected point format 1 or 3, found {form}")
    points = [data[offset + length * i:offset + length * (i + 1)] for i in range(count)]
    parts = [(*struct.unpack_from("<iiiH", p, 0), struct.unpack_from("<d", p, 20)[0]) for p in points]
    struct.pack_into("<I", data, 107, records)
    struct.pack_into("<I", data, 111, records)
    noise = random.Random(7)
    written = 0
    with open(path, "wb") as out:
        out.write(data[:offset])
        while written < records:
            east, north, later = noise.randrange(10000), noise.randrange(10000), noise.randrange(100) * 0.01
            piece = bytearray()
            for point, (x, y, z, intensity, stamp) in zip(points, parts):
                bits = noise.getrandbits(16)
                if bits & 7 > 5 or written == records:
                    continue
                struct.pack_into("<iiiH", point, 0, x + east, y + north, z + (bits >> 8),
                                 min(intensity + (bits >> 5 & 3), 65535))
                struct.pack_into("<d", point, 20, stamp + later)
                piece += point
                written += 1
            out.write(piece)


class Limit:
    """A control group that limits reading from the device of a folder."""

    def __init__(self, folder, bytes_per_second):
        number = os.stat(folder).st_dev
        self.device = f"{os.major(number)}:{os.minor(number)}"
        name = f"rdb2nimbra-{os.getpid()}"
        old, new = "/sys/fs/cgroup/blkio", "/sys/fs/cgroup"
        if os.path.exists(os.path.join(old, "blkio.throttle.read_bps_device")) or os.path.isdir(old):
            self.path, rule = os.path.join(old, name), ("blkio.throttle.read_bps_device", str(bytes_per_second))
        else:
            self.path, rule = os.path.join(new, name), ("io.max", f"rbps={bytes_per_second}")
        os.makedirs(self.path, exist_ok=True)
        with open(os.path.join(self.path, rule[0]), "w") as file:
            file.write(f"{self.device} {rule[1]}")

    def enter(self):
        with open(os.path.join(self.path, "cgroup.procs"), "w") as file:
            file.write(str(os.getpid()))

    def remove(self):
        os.rmdir(self.path)


def forget(path):
    """Empties the page cache of a file."""
    descriptor = os.open(path, os.O_RDONLY)
    os.fsync(descriptor)
    os.posix_fadvise(descriptor, 0, 0, os.POSIX_FADV_DONTNEED)
    os.close(descriptor)


def run(command, limit=None):
    """Runs a process. Returns seconds, processor seconds and output."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    begin = time.perf_counter()
    done = subprocess.run(command, stdout=subprocess.PIPE, check=True, preexec_fn=limit.enter if limit else None)
    seconds = time.perf_counter() - begin
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    used = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    return seconds, used, done.stdout


def load(host, path, limit=None):
    return run([host, "load", path, "--all-attributes", "--json"], limit)


def digest(host, path):
    """Of what a load prints beside the name of the file: the first thousand values of all fields."""
    shown = json.loads(run([host, "load", path, "--all-attributes", "--json", "--values", "1000"])[2])
    shown.pop("file")
    return hashlib.sha256(json.dumps(shown).encode()).hexdigest()


def measure(title, files, rounds, timed):
    """Times each file in turn and prints medians, and medians of the ratios of neighbouring runs."""
    times = {encoding: [] for encoding in files}
    for number in range(rounds):
        for encoding in sorted(files, reverse=number % 2 == 1):
            times[encoding].append(timed(files[encoding])[:2])
    for encoding in files:
        ratios = [mine[0] / raw[0] for mine, raw in zip(times[encoding], times["raw"])]
        processor = [mine[1] / raw[1] for mine, raw in zip(times[encoding], times["raw"])]
        print(f"{title:22} {encoding:8} {statistics.median(t[0] for t in times[encoding]) * 1000:9.0f} ms "
              f"{statistics.median(t[1] for t in times[encoding]) * 1000:9.0f} ms "
              f"{statistics.median(ratios):7.3f} ({min(ratios):.3f}..{max(ratios):.3f}) "
              f"{statistics.median(processor):7.3f}", flush=True)


def make_files(options, tool, folder):
    files = {encoding: os.path.join(folder, encoding, "points.rdbx") for encoding in ENCODINGS}
    if all(os.path.exists(path) for path in files.values()):
        return files
    points = os.path.join(folder, "points.las")
    if options.points:
        write_points(options.points, points, options.records)
    for encoding in ENCODINGS:
        os.makedirs(os.path.join(folder, encoding), exist_ok=True)
        source = ["import", points] if options.points else ["synth", "scan", "--records", str(options.records)]
        seconds = run([tool, *source, "-o", files[encoding], "--encoding", encoding])[0]
        size = os.path.getsize(files[encoding])
        print(f"made {encoding:8} {size / options.records:6.2f} bytes per record, {size / MEGABYTE:.0f} MB, "
              f"in {seconds:.1f} s", flush=True)
    if options.points:
        os.unlink(points)
    return files


def measure_cold(files, options, host, folder):
    def cold(path, limit=None):
        forget(path)
        return load(host, path, limit)

    def bare(path, limit=None):
        forget(path)
        return run(["cat", path], limit)

    seconds = min(bare(files["raw"])[0] for _ in range(2))
    print(f"device: {os.path.getsize(files['raw']) / MEGABYTE / seconds:.0f} MB/s without a limit")
    for rate in options.cold:
        limit = Limit(folder, int(rate * MEGABYTE))
        try:
            seconds = bare(files["raw"], limit)[0]
            print(f"device: {os.path.getsize(files['raw']) / MEGABYTE / seconds:.0f} MB/s under the limit of {rate:g}")
            measure(f"cold, {rate:g} MB/s", files, max(options.rounds // 3, 1), lambda path: cold(path, limit))
        finally:
            limit.remove()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("bin")
    parser.add_argument("--points")
    parser.add_argument("--records", type=int, default=12000000)
    parser.add_argument("--rounds", type=int, default=9)
    parser.add_argument("--cold", type=float, nargs="*", default=[])
    parser.add_argument("--folder")
    options = parser.parse_args()
    tool, host = (os.path.join(options.bin, name) for name in ("rdbtool", "nimbra-host"))
    with contextlib.ExitStack() as stack:
        folder = options.folder or stack.enter_context(tempfile.TemporaryDirectory())
        files = make_files(options, tool, folder)
        if options.rounds == 0:
            return
        if len({digest(host, path) for path in files.values()}) != 1:
            sys.exit("the loads of the three files differ")
        print(f"{'':31} {'median':>12} {'processor':>12} {'to raw':>7} {'(range)':14} {'processor to raw':>7}")
        measure("warm", files, options.rounds, lambda path: load(host, path))
        if options.cold:
            measure_cold(files, options, host, folder)


main()

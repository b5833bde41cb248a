# SPDX-License-Identifier: BSD-3-Clause
# Prints what a LAS or SBET file holds, for comparison with an import: name, count, smallest, largest, sum.
# Shares no code with the tool: plain struct unpacking, sums without rounding error.
import math
import struct
import sys


def show(name, values):
    print(name, len(values), repr(min(values)), repr(max(values)), repr(math.fsum(values)))


def las(data):
    offset, = struct.unpack_from("<I", data, 96)
    form, length, count = data[104], *struct.unpack_from("<HI", data, 105)
    scale = struct.unpack_from("<6d", data, 131)
    records = [data[offset + length * i:offset + length * (i + 1)] for i in range(count)]
    for axis in range(3):
        raw = [struct.unpack_from("<i", r, 4 * axis)[0] for r in records]
        show("xyz%d" % axis, [v * scale[axis] + scale[3 + axis] for v in raw])
    show("riegl.amplitude", [struct.unpack_from("<H", r, 12)[0] for r in records])
    show("riegl.target_index", [r[14] & 7 for r in records])
    show("riegl.target_count", [r[14] >> 3 & 7 for r in records])
    show("riegl.class", [r[15] & 31 for r in records])
    show("riegl.scan_angle", [struct.unpack_from("<b", r, 16)[0] for r in records])
    show("riegl.source_index", [struct.unpack_from("<H", r, 18)[0] for r in records])
    stamps = [struct.unpack_from("<d", r, 20)[0] for r in records]
    if struct.unpack_from("<H", data, 6)[0] & 1:
        week = (stamps[0] + 1e9) // 604800
        stamps = [s + (1e9 - week * 604800) for s in stamps]
    show("riegl.timestamp", stamps)
    if form == 3:
        colours = [struct.unpack_from("<3H", r, 28) for r in records]
        shift = 8 if max(max(c) for c in colours) > 255 else 0
        for channel in range(3):
            show("rgba%d" % channel, [c[channel] >> shift for c in colours])
    if length > 34:  # the described extra bytes of the one file that has them
        for position, form, name in ((34, "<3H", "las.Colors"), (47, "<2b", "las.Flags"),
                                     (49, "<I", "las.Intensity"), (53, "<Q", "las.Time")):
            show(name, [v for r in records for v in struct.unpack_from(form, r, position)])


def ecef(latitude, longitude, height):
    e2 = 1 - (6356752.314245179 / 6378137.0) ** 2
    n = 6378137.0 / math.sqrt(1 - e2 * math.sin(latitude) ** 2)
    return ((n + height) * math.cos(latitude) * math.cos(longitude),
            (n + height) * math.cos(latitude) * math.sin(longitude), (n * (1 - e2) + height) * math.sin(latitude))


def sbet(data):
    records = list(struct.iter_unpack("<17d", data))
    for place, name in ((0, "timestamp"), (3, "height")):
        show("riegl.pof_" + name, [r[place] for r in records])
    for place, name in ((1, "latitude"), (2, "longitude"), (7, "roll"), (8, "pitch")):
        show("riegl.pof_" + name, [math.degrees(r[place]) for r in records])
    show("riegl.pof_yaw", [math.degrees(r[9] - r[10]) % 360 for r in records])
    places = [ecef(*r[1:4]) for r in records]
    length = [0.0]
    for before, here in zip(places, places[1:]):
        length.append(length[-1] + math.dist(before, here))
    show("riegl.pof_path_length", length)


(sbet if sys.argv[1].endswith(".sbet") else las)(open(sys.argv[1], "rb").read())

# SPDX-License-Identifier: BSD-3-Clause
# Reads the columns of a LAS file with the standard library only and prints count, minimum, maximum and sum of each.
# Shares no code with the project, whose results are compared with it.
import struct
import sys

FORMATS = {0: None, 1: 20, 2: None, 3: 20}
COLOUR_AT = {2: 20, 3: 28}


def columns(path):
    data = open(path, "rb").read()
    offset, = struct.unpack_from("<I", data, 96)
    point_format, length, count = struct.unpack_from("<BHI", data, 104)
    scales = struct.unpack_from("<3d", data, 131)
    offsets = struct.unpack_from("<3d", data, 155)
    found = {name: [] for name in ("x", "y", "z", "time", "intensity", "return", "returns", "class", "source")}
    for i in range(count):
        at = offset + i * length
        xyz = struct.unpack_from("<3i", data, at)
        for axis, name in enumerate("xyz"):
            found[name].append(xyz[axis] * scales[axis] + offsets[axis])
        intensity, bits, classification, angle, user, source = struct.unpack_from("<HBBbBH", data, at + 12)
        found["intensity"].append(intensity)
        found["return"].append(bits & 7)
        found["returns"].append(bits >> 3 & 7)
        found["class"].append(classification & 31)
        found["source"].append(source)
        found["time"].append(struct.unpack_from("<d", data, at + 20)[0])
    return found


for name, values in columns(sys.argv[1]).items():
    print(name, len(values), *(repr(float(f(values))) for f in (min, max, sum)) if values else ("0", "0", "0"))

# SPDX-License-Identifier: BSD-3-Clause
# Reads and writes blocks in the encoding `pieces` with nothing but the standard library, one value after the other.
# Independent of everything that it checks.
#
#   standard_library.py decode FOLDER    makes NAME.read of each NAME.block that FOLDER/list names
#   standard_library.py encode FOLDER    makes NAME.block of each NAME.records that FOLDER/list names
#
# Lines of FOLDER/list: NAME TYPE LENGTH RECORDS, and for encode FILTER CODEC RECORDS_PER_PIECE SCALE OFFSET (0: not scaled)
import struct
import sys
import zlib

LETTERS = {"int8": "b", "uint8": "B", "int16": "h", "uint16": "H", "int32": "i", "uint32": "I", "int64": "q",
           "uint64": "Q", "float32": "f", "float64": "d"}


def lz4(data):
    """The bytes of an LZ4 block: sequences of literals and copies from what is there already."""
    plain = bytearray()
    at = 0

    def longer(length):
        nonlocal at
        while length >= 15:
            more = data[at]
            at += 1
            length += more
            if more != 255:
                break
        return length

    while True:
        token = data[at]
        at += 1
        literals = longer(token >> 4)
        plain += data[at:at + literals]
        at += literals
        if at == len(data):
            return bytes(plain)
        distance, = struct.unpack_from("<H", data, at)
        at += 2
        copied = longer(token & 15) + 4
        if not 0 < distance <= len(plain):
            raise ValueError(f"distance {distance} behind {len(plain)} bytes")
        for _ in range(copied):
            plain.append(plain[-distance])


def unfiltered(data, kind, width, length):
    if kind == 0:
        return data
    count = len(data) // width
    values = [sum(data[b * count + i] << 8 * b for b in range(width)) for i in range(count)]
    if kind == 2:
        for i in range(length, count):
            values[i] = (values[i] + values[i - length]) % 2 ** (8 * width)
    return b"".join(value.to_bytes(width, "little") for value in values)


def filtered(data, kind, width, length):
    if kind == 0:
        return data
    values = [int.from_bytes(data[i:i + width], "little") for i in range(0, len(data), width)]
    if kind == 2:
        values = [(value - (values[i - length] if i >= length else 0)) % 2 ** (8 * width)
                  for i, value in enumerate(values)]
    return b"".join(bytes(value >> 8 * b & 255 for value in values) for b in range(width))


def decoded(block, letter, length, records):
    count, per_piece, kind, codec, scaled, zero = struct.unpack_from("<IIBBBB", block)
    assert zero == 0 and count == -(-records // per_piece), (zero, count)
    at = 12
    scales = []
    if scaled:
        scales = [struct.unpack_from("<dd", block, at + 16 * c) for c in range(length)]
        at += 16 * length
    table = [struct.unpack_from("<II", block, at + 8 * p) for p in range(count)]
    at += 8 * count
    found = b""
    for size, checksum in table:
        stored = block[at:at + size]
        at += size
        assert len(stored) == size and zlib.crc32(stored) == checksum
        plain = {0: bytes, 1: zlib.decompress, 2: lz4}[codec](stored)
        plain = unfiltered(plain, kind, 4 if scaled else struct.calcsize(letter), length)
        if scaled:
            integers = struct.unpack(f"<{len(plain) // 4}i", plain)
            values = [float(i) * scales[k % length][0] + scales[k % length][1] for k, i in enumerate(integers)]
            plain = struct.pack(f"<{len(values)}{letter}", *values)
        found += plain
    assert at == len(block)
    return found


def encoded(raw, letter, length, records, kind, codec, per_piece, scale, offset):
    width = struct.calcsize(letter)
    if scale:
        values = struct.unpack(f"<{records * length}{letter}", raw)
        raw = struct.pack(f"<{records * length}i", *[round((value - offset) / scale) for value in values])
        width = 4
    step = per_piece * length * width
    pieces = [filtered(raw[i:i + step], kind, width, length) for i in range(0, len(raw), step)]
    pieces = [zlib.compress(piece) if codec == 1 else piece for piece in pieces]
    return (struct.pack("<IIBBBB", len(pieces), per_piece, kind, codec, 1 if scale else 0, 0)
            + (struct.pack("<dd", scale, offset) * length if scale else b"")
            + b"".join(struct.pack("<II", len(piece), zlib.crc32(piece)) for piece in pieces) + b"".join(pieces))


def main(what, folder):
    with open(f"{folder}/list", encoding="ascii") as lines:
        rows = [line.split() for line in lines]
    for name, type_name, length, records, *rest in rows:
        letter = LETTERS[type_name]
        source, target = (".block", ".read") if what == "decode" else (".records", ".block")
        with open(f"{folder}/{name}{source}", "rb") as file:
            data = file.read()
        if what == "decode":
            result = decoded(data, letter, int(length), int(records))
        else:
            result = encoded(data, letter, int(length), int(records), *map(int, rest[:3]), *map(float, rest[3:]))
        with open(f"{folder}/{name}{target}", "wb") as file:
            file.write(result)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])

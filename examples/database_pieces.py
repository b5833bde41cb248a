# SPDX-License-Identifier: BSD-3-Clause
"""Decodes and encodes blocks in pieces with Python's standard library; docs/database-format.md describes them.

`decoded` takes every filter and codec, `encoded` makes pieces that are compressed by zlib.
"""
import array
import math
import struct
import sys
import zlib

# The codes by which the modules array and struct know the types, and unsigned integers by their bytes.
TYPE_CODES = {"int8": "b", "uint8": "B", "int16": "h", "uint16": "H", "int32": "i", "uint32": "I", "int64": "q",
              "uint64": "Q", "float32": "f", "float64": "d"}
UNSIGNED_CODES = {1: "B", 2: "H", 4: "I", 8: "Q"}
REAL_CODES = ("f", "d")

HEADER = struct.Struct("<IIBBBB")
SCALING = struct.Struct("<dd")
TABLE_ROW = struct.Struct("<II")
NO_FILTER, SHUFFLE, DELTA_AND_SHUFFLE = FILTERS = (0, 1, 2)
NO_CODEC, ZLIB, LZ4 = CODECS = (0, 1, 2)
MAXIMUM_LZ4_BYTES = 2113929216  # decoded
LZ4_LAST_LITERALS = 5  # at least, behind a copy
LZ4_LAST_COPY = 12  # bytes before the end of the result, at least

USUAL_PIECE_BYTES = 262144  # decoded
# What real values may be multiples of, and what their offset may be a multiple of.
SCALES = (1.0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7)
OFFSET_UNITS = (1e6, 1e5, 1e4, 1e3, 1e2, 1e1, 1.0)
SAMPLE_RECORDS = 100


class DatabaseError(Exception):
    """The file is no database of this kind, or it is damaged."""


def require(condition, text):
    if not condition:
        raise DatabaseError(text)


def little_endian(values):
    """The bytes of an array as the file has them."""
    if sys.byteorder == "big":
        values = values[:]
        values.byteswap()
    return values.tobytes()


# Codecs --------------------------------------------------------------------------------------------------------------

def inflated(stored, size):
    """The content of a zlib stream, which has to have `size` bytes."""
    stream = zlib.decompressobj()
    try:
        plain = stream.decompress(stored, size + 1)  # stops there, however long the stream is
    except zlib.error as error:
        raise DatabaseError(f"expected a zlib stream, found: {error}") from error
    require(stream.eof and not stream.unused_data and len(plain) == size,
            f"expected one zlib stream of {size} bytes, found another one")
    return plain


def lz4_length(stored, position, length):
    """Adds the bytes that continue a length of 15; returns the length and the position behind them."""
    byte = 255 if length == 15 else 0
    while byte == 255:
        byte = stored[position]
        position += 1
        length += byte
    return length, position


def lz4_decoded(stored, size):
    """The content of an LZ4 block, which has to have `size` bytes: literals and copies in turn, literals at the end."""
    plain = bytearray()
    position = 0
    copy_begin = None  # of the last copy
    try:
        while True:
            token = stored[position]
            count, position = lz4_length(stored, position + 1, token >> 4)
            plain += stored[position:position + count]
            position += count
            if position >= len(stored):
                break
            distance = stored[position] + 256 * stored[position + 1]
            count, position = lz4_length(stored, position + 2, token & 15)
            count += 4
            require(0 < distance <= len(plain) and len(plain) + count <= size,
                    f"expected a copy within {size} bytes, found {count} from {distance} before byte {len(plain)}")
            copy_begin = len(plain)
            run = plain[-distance:]  # a copy may overlap what it makes: then the run repeats
            plain += (run * (count // distance + 1))[:count]
    except IndexError as error:
        raise DatabaseError(f"expected an LZ4 block of {size} bytes, found its beginning") from error
    require(position == len(stored) and len(plain) == size,
            f"expected an LZ4 block of {size} bytes, found {len(plain)}")
    require(copy_begin is None or (count >= LZ4_LAST_LITERALS and size - copy_begin >= LZ4_LAST_COPY),
            f"expected {LZ4_LAST_LITERALS} literals at the end and the last copy from {LZ4_LAST_COPY} bytes before it,"
            f" found {count} literals and a copy from {size - (copy_begin or 0)} bytes before it")
    return bytes(plain)


# Filters -------------------------------------------------------------------------------------------------------------

def shuffled(data, width):
    """The first bytes of all values, then their second bytes, and so on."""
    return b"".join(data[byte::width] for byte in range(width))


def unshuffled(data, width):
    count = len(data) // width
    values = bytearray(len(data))
    for byte in range(width):
        values[byte::width] = data[byte * count:(byte + 1) * count]
    return bytes(values)


def differences(data, width, length):
    """Each value less the same component of the record before, modulo 2^(8 x width); the first record stays."""
    layout = f"<{len(data) // width}{UNSIGNED_CODES[width]}"
    values = struct.unpack(layout, data)
    before = [0] * length + list(values)
    mask = (1 << 8 * width) - 1
    return struct.pack(layout, *((value - other) & mask for value, other in zip(values, before)))


def sums(data, width, length):
    """Undoes `differences`."""
    layout = f"<{len(data) // width}{UNSIGNED_CODES[width]}"
    values = list(struct.unpack(layout, data))
    mask = (1 << 8 * width) - 1
    for i in range(length, len(values)):
        values[i] = (values[i] + values[i - length]) & mask
    return struct.pack(layout, *values)


def filtered(data, filter_code, width, length):
    if filter_code == DELTA_AND_SHUFFLE:
        data = differences(data, width, length)
    return data if filter_code == NO_FILTER else shuffled(data, width)


def unfiltered(data, filter_code, width, length):
    if filter_code != NO_FILTER:
        data = unshuffled(data, width)
    return sums(data, width, length) if filter_code == DELTA_AND_SHUFFLE else data


# Scaled values -------------------------------------------------------------------------------------------------------

def restored(integers, scaling, code):
    """The real values that 32-bit integers stand for, as an array. `scaling` has scale and offset of each component."""
    values = array.array(code)
    for i, integer in enumerate(integers):
        scale, offset = scaling[i % len(scaling)]
        values.append(float(integer) * scale + offset)
    return values


def integers_of(values, scale, offset):
    """The integers that stand for the values of one component, or None where one would not come back bit for bit."""
    try:
        integers = array.array("i", [round((value - offset) / scale) for value in values])
    except (ValueError, OverflowError):  # not-a-number, infinities, more than 32 bits
        return None
    is_same = restored(integers, [(scale, offset)], values.typecode).tobytes() == values.tobytes()
    return integers if is_same else None


def scaling_of(values):
    """A scale and an offset by which integers stand for the values of one component, or None."""
    if not math.isfinite(values[0]):
        return None
    # The last bits depend on the offset that the values were made with; it mostly is 0 or a round number near them.
    for offset in (0.0, *(values[0] // unit * unit for unit in OFFSET_UNITS)):
        for scale in SCALES:
            if integers_of(values[:SAMPLE_RECORDS], scale, offset) and integers_of(values, scale, offset):
                return scale, offset
    return None


def scaled(values, length):
    """Real values as an array of integers, and the scaling of each component; None where a bit would be lost."""
    scaling = [scaling_of(values[component::length]) for component in range(length)]
    if None in scaling:
        return None
    integers = array.array("i", bytes(4 * len(values)))
    for component in range(length):
        integers[component::length] = integers_of(values[component::length], *scaling[component])
    return integers, scaling


# Blocks --------------------------------------------------------------------------------------------------------------

def parse(data, code, length, records):
    """The parts of a block: records per piece, code of the filter, code of the codec, scaling, stored pieces."""
    require(len(data) >= HEADER.size, f"expected a header of 12 bytes, found {len(data)} bytes")
    count, records_per_piece, filter_code, codec, is_scaled, zero = HEADER.unpack_from(data)
    require(records_per_piece > 0 and count == -(-records // records_per_piece),
            f"expected pieces for {records} records, found {count} of {records_per_piece}")
    require(filter_code in FILTERS and codec in CODECS and is_scaled in (0, 1) and zero == 0,
            f"expected known codes in the header, found {filter_code}, {codec}, {is_scaled}, {zero}")
    require(not is_scaled or code in REAL_CODES, "expected integers that are not scaled, found scaled ones")
    table = HEADER.size + (SCALING.size * length if is_scaled else 0)
    position = table + TABLE_ROW.size * count
    require(position <= len(data), f"expected header and table of {position} bytes, found {len(data)} bytes")
    scaling = list(SCALING.iter_unpack(data[HEADER.size:table]))
    require(all(math.isfinite(scale) and scale != 0 and math.isfinite(offset) for scale, offset in scaling),
            f"expected finite scales other than 0 and finite offsets, found {scaling}")
    pieces = []
    for size, checksum in TABLE_ROW.iter_unpack(data[table:position]):
        piece = data[position:position + size]
        found = zlib.crc32(piece)
        require(found == checksum, f"piece {len(pieces)}: expected checksum {checksum}, found {found}")
        pieces.append(piece)
        position += size
    require(position == len(data), f"expected a block of {position} bytes, found {len(data)}")
    return records_per_piece, filter_code, codec, scaling, pieces


def decoded(data, type_name, length, records):
    """The records of a block in pieces, as a raw block has them.

    type_name  of the attribute
    length     values per record
    records    of the block
    """
    code = TYPE_CODES[type_name]
    records_per_piece, filter_code, codec, scaling, pieces = parse(data, code, length, records)
    width = 4 if scaling else struct.calcsize(code)
    raw = []
    for number, piece in enumerate(pieces):
        size = min(records_per_piece, records - number * records_per_piece) * length * width
        if codec == ZLIB:
            piece = inflated(piece, size)
        elif codec == LZ4:
            require(size <= MAXIMUM_LZ4_BYTES,
                    f"piece {number}: expected at most {MAXIMUM_LZ4_BYTES} bytes in an LZ4 block, found {size}")
            piece = lz4_decoded(piece, size)
        require(len(piece) == size, f"piece {number}: expected {size} bytes, found {len(piece)}")
        piece = unfiltered(piece, filter_code, width, length)
        if scaling:
            integers = struct.unpack(f"<{size // 4}i", piece)
            piece = little_endian(restored(integers, scaling, code))
        raw.append(piece)
    return b"".join(raw)


def encoded(values, length):
    """A block in pieces: scaled where that is possible, filtered, and compressed by zlib.

    values  an array.array of the attribute's type: the records of the block, at least one
    length  values per record
    """
    scaling = []
    result = scaled(values, length) if values.typecode in REAL_CODES else None
    if result is not None:
        values, scaling = result
    width = values.itemsize
    data = little_endian(values)
    records_per_piece = max(USUAL_PIECE_BYTES // (length * width), 1)
    piece_bytes = records_per_piece * length * width

    def compressed(first, filter_code):
        return zlib.compress(filtered(data[first:first + piece_bytes], filter_code, width, length), 6)

    # The filter that suits the first piece best is taken for all of them.
    filter_code = min(FILTERS, key=lambda code: len(compressed(0, code)))
    pieces = [compressed(first, filter_code) for first in range(0, len(data), piece_bytes)]
    return b"".join([HEADER.pack(len(pieces), records_per_piece, filter_code, ZLIB, 1 if scaling else 0, 0),
                     *(SCALING.pack(*component) for component in scaling),
                     *(TABLE_ROW.pack(len(piece), zlib.crc32(piece)) for piece in pieces),
                     *pieces])

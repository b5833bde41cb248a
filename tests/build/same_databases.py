# SPDX-License-Identifier: BSD-3-Clause
"""Writes pairs of databases of the same content: in the foreign text format, and as a database file of this project."""
import array
import json
import os
import random
import subprocess
import sys

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
sys.path.insert(0, os.path.join(ROOT, "examples"))

import write_database  # noqa: E402
from database_pieces import TYPE_CODES  # noqa: E402
from read_database import Attribute  # noqa: E402

MAKER = os.path.join(ROOT, "tests", "foreign", "make_database.py")

# Every column of docs/columns.md that fits beside the others, by the type and number of its stored values.
POINTCLOUD = {
    ("float64", 3): "xyz xyz_socs direction_medium hydro_intersection_point hydro_intersection_normal shot_origin "
                    "shot_direction pof_xyz",
    ("float64", 1): "timestamp raw_range pof_latitude pof_longitude pof_height pof_roll pof_pitch pof_yaw "
                    "pof_roll_ned pof_pitch_ned pof_yaw_ned pof_timestamp pof_path_length",
    ("float32", 1): "amplitude reflectance pulse_width scan_angle wfm_sbl_mean wfm_sbl_std_dev line_angle_coarse gain",
    ("int16", 1): "deviation",
    ("uint8", 1): "target_index target_count mirror_facet scan_segment mta_uncertain_point mta_zone "
                  "window_echo_impact_corrected start_of_scan_line source_indicator fwa waveform_available "
                  "scan_direction wfm_sbl_channel dyntrig_uncertain_point",
    ("uint8", 4): "rgba",
    ("uint16", 1): "class wfm_sda_count wfm_sample_value echo_count wfm_sbl_count",
    ("int32", 1): "wfm_echo_time_offset wfm_sbl_time_offset scan_line_index",
    ("uint32", 1): "source_index",
    ("uint64", 1): "wfm_sbl_id id wfm_sda_first echo_first wfm_sbl_first",
}
TRAJECTORY = ("timestamp", "roll", "pitch", "yaw", "longitude", "latitude", "height", "path_length")
SPECIAL_REALS = {"float64": ["nan", "inf", "-inf", -0.0, 5e-324, 1.7976931348623157e308, -1e300, 0.1],
                 "float32": ["nan", "inf", "-inf", -0.0, 2.0 ** -149, 3.4028234663852886e38, -1.0, 0.5]}
BITS = {"int16": 16, "uint8": 8, "uint16": 16, "int32": 32, "uint32": 32, "uint64": 64}
METADATA = {
    "riegl.time_base": {"epoch": "2015-10-27T00:00:00+00:00", "system": "GPS"},
    "riegl.atmosphere": {"group_velocity": 299700000.5, "wavelength": 1550},
    "riegl.waveform_info": {"sample_interval": 2e-9, "delta_st": 1.5e-7},
    "riegl.device": {"serial_number": "S2220001", "device_type": "Höhe 日本", "device_build": "b"},
    "riegl.mta_settings": {"zone_width": 750.5},
}


def special_values(kind):
    if kind in SPECIAL_REALS:
        return SPECIAL_REALS[kind]
    lowest = 0 if kind.startswith("u") else -2 ** (BITS[kind] - 1)
    return [lowest, lowest + 2 ** BITS[kind] - 1, lowest + 1, 1]


def seeded_column(seed, name, kind, length, records):
    """Extremes of the type and numbers between; the name seeds the numbers."""
    numbers = random.Random(f"{seed} {name}")
    special = special_values(kind)

    def value():
        if numbers.random() < 0.4:
            return numbers.choice(special)
        if kind in SPECIAL_REALS:
            # a multiple of 1/64 is exact in single precision
            return numbers.randint(-2 ** 20, 2 ** 20) / 64 if kind == "float32" else numbers.uniform(-1e4, 1e4)
        return numbers.randint(special[0], special[1])

    values = (special + [value() for _ in range(records * length)])[:records * length]
    return {"name": name, "type": kind, "length": length, "values": values}


def pointcloud(seed, only=(), left_out=(), records=9, metadata=None):
    """All columns, or the named ones only, but those left out. The time stamps are seconds, which the load shifts."""
    names = [(f"riegl.{name}", kind, length) for (kind, length), words in POINTCLOUD.items() for name in words.split()]
    columns = [seeded_column(seed, name, kind, length, records) for name, kind, length in names
               if name not in left_out and (not only or name in only)]
    for column in columns:
        if column["name"] == "riegl.timestamp":
            column["values"] = [100.5 + 60.25 * i for i in range(records)]
    return {"records": records, "metadata": METADATA if metadata is None else metadata, "columns": columns}


def with_column(description, name, kind):
    column = seeded_column(1, name, kind, 1, description["records"])
    return {**description, "columns": description["columns"] + [column]}


def trajectory(seed, left_out=(), records=9):
    """A path over Central Europe, with extremes in the columns that no one projects."""
    numbers = random.Random(seed)
    places = {"longitude": (12.5, 15.5), "latitude": (46.5, 48.5), "height": (100.0, 3000.0)}
    columns = []
    for word in TRAJECTORY:
        name = f"riegl.pof_{word}"
        column = seeded_column(seed, name, "float64", 1, records)
        if word in places:
            column["values"] = [numbers.uniform(*places[word]) for _ in range(records)]
        if word not in left_out:
            columns.append(column)
    return {"records": records, "metadata": METADATA, "columns": columns}


def number(kind, value):
    return float(value) if kind in SPECIAL_REALS else int(value)


def write_pair(description, folder, file):
    """Writes one description in both formats.

    Returns the path of the foreign database and that of ours; both end in `file`.
    """
    paths = [os.path.join(folder, side, file) for side in ("foreign", "own")]
    for path in paths:
        os.makedirs(os.path.dirname(path), exist_ok=True)
    source = os.path.join(folder, file + ".json")
    with open(source, "w", encoding="utf-8") as opened:
        json.dump(description, opened)
    subprocess.run([sys.executable, MAKER, source, paths[0]], check=True)
    with open(source, encoding="utf-8") as opened:
        description = json.load(opened)
    attributes = [Attribute(i, column["name"], column["type"], column["length"])
                  for i, column in enumerate(description["columns"], 1)]
    columns = [array.array(TYPE_CODES[column["type"]], [number(column["type"], v) for v in column["values"]])
               for column in description["columns"]]
    items = {name: json.dumps(value, ensure_ascii=False) for name, value in description["metadata"].items()}
    write_database.write(paths[1], attributes, columns, items)
    return paths

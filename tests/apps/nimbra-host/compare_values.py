# SPDX-License-Identifier: BSD-3-Clause
# Compares the values of the first column in a JSON report with raw doubles, bit by bit:
# compare_values.py REPORT.json DOUBLES.bin. Not-a-number matches every not-a-number.
import array
import json
import math
import struct
import sys

with open(sys.argv[1], encoding="utf-8") as report:
    field = json.load(report)["representations"][0]["fields"][0]
shown = [value for fragment in field["fragments"] for value in fragment["values"]]
expected = array.array("d")
with open(sys.argv[2], "rb") as raw:
    expected.frombytes(raw.read())

if len(shown) != len(expected) or not expected:
    sys.exit(f"expected {len(expected)} values, found {len(shown)}")
for number, (found, wanted) in enumerate(zip(shown, expected)):
    found = float(found)
    if math.isnan(wanted) and math.isnan(found):
        continue
    if struct.pack("<d", found) != struct.pack("<d", wanted):
        sys.exit(f"value {number}: expected {wanted!r}, found {found!r}")

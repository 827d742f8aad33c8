#!/usr/bin/env python3
"""Puts default values of currency and date into a type library.

The IDL compiler can't write them: it marks the parameter, but leaves out the value. Every such currency parameter
gets 0, every date the value that stands below under the parameter's name.

Usage: default_values.py INPUT OUTPUT
"""

import struct
import sys

VT_CY, VT_DATE = 6, 7
DATES = {"From": 36526.0, "UpTo": 73050.99998842593}  # 2000-01-01 00:00:00, 2099-12-31 23:59:59

NO_VALUE = -1
HAS_DEFAULT = 0x20  # PARAMFLAG_FHASDEFAULT
FUNCTION_HAS_DEFAULTS = 0x1000
INTERFACES = (3, 4)  # TKIND_INTERFACE, TKIND_DISPATCH
SEGMENT_NAMES, SEGMENT_CUSTOM_DATA = 7, 11


def main():
    source, target = sys.argv[1:]
    with open(source, "rb") as file:
        data = bytearray(file.read())

    def word(offset):
        return struct.unpack_from("<i", data, offset)[0]

    if data[:4] != b"MSFT":
        raise SystemExit(f"{source} is no type library")
    type_count = word(0x20)
    types_at = 0x54 + (4 if word(0x14) & 0x100 else 0)
    segments_at = types_at + 4 * type_count

    def segment(number):
        return struct.unpack_from("<ii", data, segments_at + 16 * number)

    def name(offset):
        at = segment(SEGMENT_NAMES)[0] + offset
        length = word(at + 8) & 0xFF
        return data[at + 12 : at + 12 + length].decode("ascii")

    custom_at, custom_length = segment(SEGMENT_CUSTOM_DATA)
    custom = bytearray(data[custom_at : custom_at + custom_length] if custom_at >= 0 else b"")
    places = {}

    def place(kind, value):
        """Where the value stands in the custom data."""
        if (kind, value) not in places:
            places[kind, value] = len(custom)
            packed = struct.pack("<q", value) if kind == VT_CY else struct.pack("<d", value)
            custom.extend(struct.pack("<H", kind) + packed + b"WW")  # filled up to a multiple of four
        return places[kind, value]

    for index in range(type_count):
        info = segment(0)[0] + word(types_at + 4 * index)
        if word(info) & 15 not in INTERFACES:
            continue
        function = word(info + 4) + 4
        for _ in range(word(info + 24) & 0xFFFF):
            size = word(function) & 0xFFFF
            count = word(function + 20) & 0xFFFF
            parameters = function + size - 12 * count
            if word(function + 16) & FUNCTION_HAS_DEFAULTS:
                values = parameters - 4 * count
                for i in range(count):
                    kind, parameter, flags = (word(parameters + 12 * i + 4 * j) for j in range(3))
                    kind &= 0xFFFF
                    if flags & HAS_DEFAULT and word(values + 4 * i) == NO_VALUE and kind in (VT_CY, VT_DATE):
                        value = 0 if kind == VT_CY else DATES[name(parameter)]
                        struct.pack_into("<i", data, values + 4 * i, place(kind, value))
            function += size

    # Everything names custom data by its place in the segment, so that the longer one can stand at the end.
    struct.pack_into("<ii", data, segments_at + 16 * SEGMENT_CUSTOM_DATA, len(data), len(custom))
    with open(target, "wb") as file:
        file.write(data + custom)


if __name__ == "__main__":
    main()

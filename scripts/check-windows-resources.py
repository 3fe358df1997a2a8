#!/usr/bin/env python3
"""Reads the resources of a Windows binary back with llvm-readobj and checks
its version resource (fixed and string file versions from the project's
version, company, product, description and original file name) and, for a
program, its application manifest (asInvoker, Windows Vista to 10/11).

Usage: check-windows-resources.py FILE VERSION [--manifest | --no-manifest]"""
import re
import struct
import subprocess
import sys
import xml.etree.ElementTree as ET

VERSIONINFO, MANIFEST = 16, 24
ASM_V3 = "{urn:schemas-microsoft-com:asm.v3}"
COMPATIBILITY = "{urn:schemas-microsoft-com:compatibility.v1}"
SUPPORTED_OS = {
    "{e2011457-1546-43c5-a5fe-008deee3d3f0}",  # Windows Vista
    "{35138b9a-5d96-4fbd-8e2d-a2440225f93a}",  # Windows 7
    "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",  # Windows 8
    "{1f676c76-80e1-4239-95bb-83d0f6d0da78}",  # Windows 8.1
    "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}",  # Windows 10 and 11
}


def resources(path):
    """The data of each resource type, from llvm-readobj's hex dump."""
    dump = subprocess.run(["llvm-readobj", "--coff-resources", path], check=True,
                          capture_output=True, text=True).stdout
    found, current = {}, None
    for line in dump.splitlines():
        kind = re.match(r"\s*Type: .*\(ID (\d+)\)", line)
        if kind:
            current = int(kind.group(1))
            found[current] = b""
        row = re.match(r"\s*[0-9A-F]{4,}: ((?:[0-9A-F]{2,8} ?)+)\s*\|", line)
        if row and current is not None:
            found[current] += bytes.fromhex(row.group(1).replace(" ", ""))
    return found


def fixed_file_version(info):
    """FILEVERSION of VS_FIXEDFILEINFO, behind its signature 0xFEEF04BD."""
    at = info.index(struct.pack("<I", 0xFEEF04BD))
    most, least = struct.unpack_from("<II", info, at + 8)
    return f"{most >> 16}.{most & 0xFFFF}.{least >> 16}.{least & 0xFFFF}"


def align(offset):
    return (offset + 3) & ~3


def string_values(info, at=0, end=None):
    """The text values of the VS_VERSIONINFO tree: each node is its length,
    its value's length, its type (1 for text), its key, then its value and
    its children, each on a 4-byte boundary."""
    end = len(info) if end is None else end
    values = {}
    while at + 6 <= end:
        length, value_length, kind = struct.unpack_from("<HHH", info, at)
        key_end = at + 6
        while info[key_end:key_end + 2] != b"\0\0":
            key_end += 2
        key = info[at + 6:key_end].decode("utf-16-le")
        value_at = align(key_end + 2)
        value_size = value_length * 2 if kind == 1 else value_length
        if kind == 1 and value_length:
            values[key] = info[value_at:value_at + value_size].decode("utf-16-le").rstrip("\0")
        values.update(string_values(info, align(value_at + value_size), at + length))
        at = align(at + length)
    return values


def check_manifest(text):
    root = ET.fromstring(text)
    levels = [e.get("level") for e in root.iter(ASM_V3 + "requestedExecutionLevel")]
    assert levels == ["asInvoker"], f"requestedExecutionLevel: {levels}"
    ids = {e.get("Id") for e in root.iter(COMPATIBILITY + "supportedOS")}
    assert ids == SUPPORTED_OS, f"supportedOS: {sorted(ids)}"


def main(path, version, manifest):
    found = resources(path)
    info = found[VERSIONINFO]
    assert fixed_file_version(info) == version + ".0", f"FILEVERSION {fixed_file_version(info)}"
    values = string_values(info)
    name = path.replace("\\", "/").rsplit("/", 1)[-1]
    expected = {"CompanyName": "TAQ", "FileVersion": version, "OriginalFilename": name,
                "InternalName": name.rsplit(".", 1)[0], "ProductName": "ZOR Installation History",
                "ProductVersion": version}
    for key, value in expected.items():
        assert values.get(key) == value, f"{key}: {values.get(key)!r}, expected {value!r}"
    assert values.get("FileDescription", "").startswith("ZOR installation history: "), values
    if manifest:
        check_manifest(found[MANIFEST].decode("utf-8"))
    else:
        assert MANIFEST not in found, "a DLL carries no application manifest"
    print(f"{path}: version {version}, {values['FileDescription']!r}"
          + (", manifest asInvoker, Vista to 10/11" if manifest else ""))


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], sys.argv[3] == "--manifest")

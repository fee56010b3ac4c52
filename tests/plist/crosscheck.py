#!/usr/bin/env python3
"""Checks the library's property-list reading and writing against Python's
plistlib.

Writes XML lists (as plistlib writes them, and rewritten with CDATA
sections, character references, empty-element keys and strings, comments
and CRLF line ends) and binary lists with every offset and reference width
from 1 to 8 bytes (plistlib always picks the narrowest, so those are written
here and checked to read back in plistlib too). The checker program prints
what the library reads from each; it must equal what plistlib reads.

Then the checker writes random dictionaries (fixed seed) with the library,
as XML in three time zones and as binary lists; what plistlib reads from
each file must be what the checker says it wrote (dates to the second in
XML, to the microsecond in binary). Each binary list must also come through
libplist's plistutil (rewritten by it as binary, then read by plistlib)
unchanged, where plistutil is installed.

usage: crosscheck.py CHECKER
"""
import datetime
import os
import plistlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

EPOCH = datetime.datetime(2001, 1, 1)
EXACT_DATES = False  # binary lists keep dates to the microsecond here


class Float32(float):
    """A real written as 4 bytes in binary lists."""


SMALL = {"a": 1, "b": [True, "x"], "": ""}

RICH = {
    "ascii": "hello",
    "unicode": "h\u00e9llo \u4e16\U0001F600",
    "empty": "",
    "": "empty key",
    "markup": "a<b>&c \"q\" 's' ]] >",
    "lines": "one\ntwo\tthree",
    "ints": [0, 1, 255, 256, 65535, 65536, 2**31, 2**32, 2**63 - 1, 2**64 - 1, -1, -2**63],
    "reals": [1.5, -2.25, 1e300, 0.1],
    "bools": [True, False],
    "date": datetime.datetime(2020, 1, 2, 3, 4, 5),
    "old": datetime.datetime(1900, 6, 7, 8, 9, 10),
    "data": b"\x00\x01\xfe\xff",
    "nodata": b"",
    "nested": {"deeper": {"list": [[], {}, ["x"]]}},
    "emptydict": {},
    "emptyarray": [],
}


def canon(v):
    if isinstance(v, bool):
        return "b:1" if v else "b:0"
    if isinstance(v, int):
        return "i:%d" % v
    if isinstance(v, float):
        if v != v:
            return "r:nan"
        return "r:%016x" % struct.unpack(">Q", struct.pack(">d", v))[0]
    if isinstance(v, str):
        return "s:" + v.encode("utf-8").hex()
    if isinstance(v, bytes):
        return "x:" + v.hex()
    if isinstance(v, datetime.datetime):
        if EXACT_DATES:
            micro = (v.replace(tzinfo=None) - EPOCH) // datetime.timedelta(microseconds=1)
            return "t:%s%d.%06d" % ("-" if micro < 0 else "", abs(micro) // 10**6, abs(micro) % 10**6)
        return "t:%d" % round((v.replace(tzinfo=None) - EPOCH).total_seconds())
    if isinstance(v, list):
        return "[" + ",".join(canon(x) for x in v) + "]"
    if isinstance(v, dict):
        keys = sorted(v, key=lambda k: k.encode("utf-8"))
        return "{" + ",".join(k.encode("utf-8").hex() + "=" + canon(v[k]) for k in keys) + "}"
    raise TypeError(type(v))


# ---------------------------------------------------------------------------
# Binary lists of any width


def write_binary(value, offset_size, ref_size):
    """A binary list of value with the given widths, or None if they are too narrow."""
    objects = []

    def flatten(v):
        index = len(objects)
        objects.append(None)
        if isinstance(v, dict):
            keys = [flatten(k) for k in v]
            values = [flatten(x) for x in v.values()]
            objects[index] = ("dict", keys + values, len(v))
        elif isinstance(v, list):
            objects[index] = ("array", [flatten(x) for x in v], len(v))
        else:
            objects[index] = ("leaf", v)
        return index

    flatten(value)
    if len(objects) > 1 << (8 * ref_size) or len(objects) > 1 << 62:
        return None

    def count(marker, n):
        if n < 15:
            return bytes([marker | n])
        return bytes([marker | 0xF]) + integer(n)

    def integer(n):
        if n < 0:
            return b"\x13" + struct.pack(">q", n)
        for code, fmt in ((0, ">B"), (1, ">H"), (2, ">L")):
            if n < 1 << (8 << code):
                return bytes([0x10 | code]) + struct.pack(fmt, n)
        if n < 1 << 63:
            return b"\x13" + struct.pack(">q", n)
        return b"\x14" + n.to_bytes(16, "big", signed=True)

    def leaf(v):
        if isinstance(v, bool):
            return b"\x09" if v else b"\x08"
        if isinstance(v, int):
            return integer(v)
        if isinstance(v, Float32):
            return b"\x22" + struct.pack(">f", v)
        if isinstance(v, float):
            return b"\x23" + struct.pack(">d", v)
        if isinstance(v, datetime.datetime):
            return b"\x33" + struct.pack(">d", (v - EPOCH).total_seconds())
        if isinstance(v, bytes):
            return count(0x40, len(v)) + v
        if isinstance(v, str):
            try:
                return count(0x50, len(v)) + v.encode("ascii")
            except UnicodeEncodeError:
                text = v.encode("utf-16-be")
                return count(0x60, len(text) // 2) + text
        raise TypeError(type(v))

    out = bytearray(b"bplist00")
    offsets = []
    for entry in objects:
        offsets.append(len(out))
        if entry[0] == "leaf":
            out += leaf(entry[1])
        else:
            out += count(0xD0 if entry[0] == "dict" else 0xA0, entry[2])
            for ref in entry[1]:
                out += ref.to_bytes(ref_size, "big")
    table = len(out)
    if table >= 1 << (8 * offset_size):
        return None
    for offset in offsets:
        out += offset.to_bytes(offset_size, "big")
    out += struct.pack(">6xBBQQQ", offset_size, ref_size, len(objects), 0, table)
    return bytes(out)


# ---------------------------------------------------------------------------
# XML variants


def unescape(text):
    return text.replace("&lt;", "<").replace("&gt;", ">").replace("&amp;", "&")


def with_cdata(xml):
    return re.sub(r"<(key|string)>([^<]*)</\1>",
                  lambda m: "<%s><![CDATA[%s]]></%s>" % (m[1], unescape(m[2]), m[1]), xml)


def with_references(xml):
    def refs(m):
        out = []
        for i, c in enumerate(unescape(m[2])):
            if c == "'":
                out.append("&apos;")
            elif c == '"':
                out.append("&quot;")
            elif c == "&":
                out.append("&amp;")
            elif c == "<":
                out.append("&lt;")
            else:
                out.append("&#x%X;" % ord(c) if i % 2 else "&#%d;" % ord(c))
        return "<%s>%s</%s>" % (m[1], "".join(out), m[1])
    return re.sub(r"<(key|string)>([^<]*)</\1>", refs, xml)


def with_empty_elements(xml):
    return xml.replace("<key></key>", "<key/>").replace("<string></string>", "<string/>")


def decorated(xml):
    xml = xml.replace("<dict>", "<dict><!-- c -->").replace("</array>", "<?pi x?></array>")
    return "\ufeff" + xml.replace("\n", "\r\n")


def bare_root(xml):
    xml = re.sub(r"<!DOCTYPE[^>]*>", "", xml)
    return xml.replace('<plist version="1.0">', "").replace("</plist>", "")


def main():
    checker = sys.argv[1]
    cases = {}
    for name, value in (("small", SMALL), ("rich", RICH)):
        xml = plistlib.dumps(value, fmt=plistlib.FMT_XML).decode("utf-8")
        for variant, text in (("plain", xml), ("cdata", with_cdata(xml)),
                              ("references", with_references(xml)),
                              ("empty-elements", with_empty_elements(xml)),
                              ("decorated", decorated(xml)), ("bare-root", bare_root(xml))):
            cases["%s-%s.xml" % (name, variant)] = text.encode("utf-8")
        cases["%s-plistlib.bplist" % name] = plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
        for offset_size in range(1, 9):
            for ref_size in range(1, 9):
                data = write_binary(value, offset_size, ref_size)
                if data is not None:
                    cases["%s-o%d-r%d.bplist" % (name, offset_size, ref_size)] = data
    # A 4-byte real.
    cases["float32.bplist"] = write_binary({"f": Float32(0.5)}, 1, 1)

    with tempfile.TemporaryDirectory() as tmp:
        expected = {}
        for file_name, data in cases.items():
            path = str(Path(tmp) / file_name)
            Path(path).write_bytes(data)
            expected[path] = canon(plistlib.loads(data))
        widths = {n for n in cases if re.search(r"-o[5-8]-|-r[5-8]\.", n)}
        run = subprocess.run([checker] + list(expected), capture_output=True, text=True)
        got = dict(line.split("\t", 1) for line in run.stdout.splitlines())
        failures = [(p, expected[p], got.get(p)) for p in expected if got.get(p) != expected[p]]
        for path, want, have in failures:
            print("MISMATCH %s\n  plistlib: %s\n  library:  %s" % (Path(path).name, want, have))
        print("%d lists (%d binary with 5- to 8-byte widths): %d agree"
              % (len(cases), len(widths), len(cases) - len(failures)))
        status = 1 if failures or run.returncode != 0 else 0

    plistutil = shutil.which("plistutil")
    global EXACT_DATES
    for zone, form in (("UTC", "xml"), ("America/New_York", "xml"), ("Pacific/Chatham", "xml"),
                       ("Pacific/Chatham", "binary")):
        EXACT_DATES = form == "binary"
        with tempfile.TemporaryDirectory() as tmp:
            env = dict(os.environ, GNUSTEP_TZ=zone)
            run = subprocess.run([checker, "--write", tmp, "16", "200", form], capture_output=True,
                                 text=True, env=env)
            written = dict(line.split("\t", 1) for line in run.stdout.splitlines())
            wrong = []
            for path, want in written.items():
                readers = [("plistlib", path)]
                if form == "binary" and plistutil:
                    again = path + ".libplist"
                    subprocess.run([plistutil, "-i", path, "-o", again, "-f", "bin"], check=False)
                    readers.append(("plistutil", again))
                for reader, file in readers:
                    try:
                        data = Path(file).read_bytes()
                        if form == "binary" and not data.startswith(b"bplist00"):
                            raise ValueError("not a binary list")
                        have = canon(plistlib.loads(data))
                    except Exception as error:  # noqa: BLE001 - reported below
                        have = "%s failed: %s" % (reader, error)
                    if have != want:
                        wrong.append(path)
                        print("WRITTEN %s (%s, %s)\n  library:  %s\n  %s: %s"
                              % (Path(path).name, form, zone, want, reader, have))
            print("%s %s: %d lists written, %d read back by plistlib%s as written"
                  % (form, zone, len(written), len(written) - len(set(wrong)),
                     " and plistutil" if form == "binary" and plistutil else ""))
            if wrong or run.returncode != 0 or len(written) != 200:
                status = 1
    return status


if __name__ == "__main__":
    sys.exit(main())

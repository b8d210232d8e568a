#!/usr/bin/env python3
"""Writes small intermediate files for tests, independently of the project's writer.

Usage: mkif.py OUT [--version N] [--target N] [--magic TEXT] [--first-byte N]
                   [--option-set "N:opt1 opt2 ..."]... [--file-name NAME]...
                   [--producer TEXT] [--truncate N] [--record KIND:HEXBYTES]...
                   [--raw HEXBYTES]
"""
import argparse
import struct


def uleb(v):
    out = bytearray()
    while True:
        b = v & 0x7F
        v >>= 7
        if v:
            out.append(b | 0x80)
        else:
            out.append(b)
            return bytes(out)


def record(kind, body):
    return bytes([kind]) + uleb(len(body)) + body


def cstr(s):
    return s.encode() + b"\0"


def header(args, offsets):
    body = cstr(args.magic) + struct.pack("<hh", args.version, args.target)
    body += struct.pack("<5I", *offsets) + cstr(args.producer)
    if args.version >= -83:
        body += struct.pack("<I", 0)
    return bytes([args.first_byte]) + uleb(len(body)) + body


def main():
    p = argparse.ArgumentParser()
    p.add_argument("out")
    p.add_argument("--version", type=int, default=-73)
    p.add_argument("--target", type=int, default=400)
    p.add_argument("--magic", default="!<icode>\n")
    p.add_argument("--first-byte", type=int, default=8)
    p.add_argument("--producer", default="mkif test writer")
    p.add_argument("--option-set", action="append", default=[])
    p.add_argument("--file-name", action="append", default=[])
    p.add_argument("--record", action="append", default=[])
    p.add_argument("--raw", default="", help="hex bytes put in the main stream as they are")
    p.add_argument("--truncate", type=int)
    args = p.parse_args()

    # The header has a fixed length, so it is sized with zero offsets first.
    size = len(header(args, [0] * 5))
    stream = b"".join(record(int(k), bytes.fromhex(h))
                      for k, h in (r.split(":", 1) for r in args.record)) + bytes.fromhex(args.raw) + b"\xff"
    offsets = [0] * 5  # options, initializers, types, file names, globals
    tail = b""
    pos = size + len(stream)
    if args.option_set:
        recs = b""
        for spec in args.option_set:
            num, _, opts = spec.partition(":")
            strings = opts.split() if opts else []
            body = uleb(int(num)) + uleb(len(strings)) + b"".join(cstr(s) for s in strings)
            recs += record(111, body)
        offsets[0] = pos
        tail += recs + b"\xff"
        pos = size + len(stream) + len(tail)
    offsets[2] = pos
    tail += b"\xff"
    pos += 1
    if args.file_name:
        offsets[3] = pos
        sec = b"".join(record(126, cstr(n)) for n in args.file_name) + b"\xff"
        tail += sec
        pos += len(sec)
    offsets[4] = pos
    tail += b"\xff"
    data = header(args, offsets) + stream + tail
    if args.truncate is not None:
        data = data[: args.truncate]
    with open(args.out, "wb") as f:
        f.write(data)


if __name__ == "__main__":
    main()

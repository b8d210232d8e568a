#!/usr/bin/env python3
"""Writes an intermediate file with two small functions, f1 and f2, each with
one local and one statement "x = 1", independently of the project's writer.

Usage: mkfuncs.py OUT [--branch]

With --branch, f2 is "g = 1; if (g) goto L5; g = 2; L5: g = 3;" instead, g a
global int: stores to memory stay, so the jump does too.
"""
import struct
import sys

sys.dont_write_bytecode = True
from mkif import cstr, record, uleb  # noqa: E402

INT, FUNC = 1, 2


def sleb(v):
    out = bytearray()
    while True:
        b = v & 0x7F
        v >>= 7
        if (v == 0 and not b & 0x40) or (v == -1 and b & 0x40):
            out.append(b)
            return bytes(out)
        out.append(b | 0x80)


def type_rec(tid, code, fields):
    return record(116, uleb(tid) + bytes([code]) + fields)


def symbol(name, size_bits, sclass, type_id):
    body = cstr(name) + uleb(size_bits) + uleb(0) + bytes([sclass]) + struct.pack("<H", 0)
    body += uleb(type_id) + uleb(0) + uleb(32) + bytes([0]) + uleb(0) + uleb(0) + b"\0"
    return record(35, body)


def psn(line):
    return uleb(1) + uleb(line) + uleb(1)


def node(op, type_id, fields=b""):
    return record(101, bytes([op]) + uleb(type_id) + fields)


def function(index, line):
    assign = node(58, INT) + node(2, INT, uleb(2) + uleb(0)) + node(4, INT, sleb(1))
    return (record(1, psn(line) + uleb(index)) + record(5, psn(line)) +
            symbol("x", 32, 1, INT) + record(6, psn(line + 1)) +
            record(46, psn(line + 1)) + assign + record(2, psn(line + 2)))


def function_with_branch(index, line):
    """g = 1; if (g) goto L5; g = 2; L5: g = 3;"""
    g = uleb(0) + uleb(2)
    def set_x(v):
        return record(46, psn(line)) + node(58, INT) + node(2, INT, g) + node(4, INT, sleb(v))
    test = record(46, psn(line)) + node(109, 0) + node(2, INT, g) + node(1, 0, uleb(5))
    return (record(1, psn(line) + uleb(index)) + record(5, psn(line)) +
            symbol("x", 32, 1, INT) + record(6, psn(line)) +
            set_x(1) + test + set_x(2) + record(42, uleb(5)) + set_x(3) + record(2, psn(line + 9)))


def main():
    types = (type_rec(INT, 6, bytes([0]) + uleb(32) + uleb(32) + bytes([0, 0])) +
             type_rec(FUNC, 20, uleb(INT) + bytes([0, 1, 0, 0])) +
             type_rec(FUNC, 254, bytes([0])) + type_rec(FUNC, 255, bytes([0])))
    names = record(126, cstr("two.c"))
    globals_ = symbol("f1", 0, 2, FUNC) + symbol("f2", 0, 2, FUNC)
    branch = "--branch" in sys.argv[2:]
    if branch:
        globals_ += symbol("g", 32, 2, INT)
    second = function_with_branch if branch else function
    stream = function(0, 1) + second(1, 10) + b"\xff"

    def header(offsets):
        body = cstr("!<icode>\n") + struct.pack("<hh", -73, 400)
        body += struct.pack("<5I", *offsets) + cstr("mkfuncs") + struct.pack("<I", 0)
        return bytes([8]) + uleb(len(body)) + body

    size = len(header([0] * 5))
    pos = size + len(stream)
    offsets = [0, 0, pos, 0, 0]
    tail = types + b"\xff"
    offsets[3] = pos + len(tail)
    tail += names + b"\xff"
    offsets[4] = pos + len(tail)
    tail += globals_ + b"\xff"
    with open(sys.argv[1], "wb") as f:
        f.write(header(offsets) + stream + tail)


if __name__ == "__main__":
    main()

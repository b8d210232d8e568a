#!/usr/bin/env python3
"""Writes an intermediate file whose main is "x = OP(1, 2); return x" (or
"x = OP(1)" for a unary operator), for an operator number given, independently
of the project's writer.

Usage: mkop.py OUT OPERATOR [--unary]
"""
import os
import struct
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "Inputs"))
from mkif import cstr, record, uleb  # noqa: E402
from mkfuncs import node, psn, sleb, symbol, type_rec  # noqa: E402

INT, FUNC = 1, 2


def main():
    op = int(sys.argv[2])
    operands = node(4, INT, sleb(1))
    if "--unary" not in sys.argv[3:]:
        operands += node(4, INT, sleb(2))
    x = node(2, INT, uleb(2) + uleb(0))
    body = (record(1, psn(1) + uleb(0)) + record(5, psn(1)) + symbol("x", 32, 1, INT) +
            record(6, psn(1)) +
            record(46, psn(2)) + node(58, INT) + x + node(op, INT) + operands +
            record(46, psn(3)) + node(36, INT) + node(2, FUNC, uleb(1) + uleb(0)) + x +
            record(2, psn(4)))
    types = (type_rec(INT, 6, bytes([0]) + uleb(32) + uleb(32) + bytes([0, 0])) +
             type_rec(FUNC, 20, uleb(INT) + bytes([0, 1, 0, 0])) +
             type_rec(FUNC, 254, bytes([0])) + type_rec(FUNC, 255, bytes([0])))
    names = record(126, cstr("op.c"))
    stream = body + b"\xff"

    def header(offsets):
        h = cstr("!<icode>\n") + struct.pack("<hh", -73, 400)
        h += struct.pack("<5I", *offsets) + cstr("mkop") + struct.pack("<I", 0)
        return bytes([8]) + uleb(len(h)) + h

    size = len(header([0] * 5))
    pos = size + len(stream)
    offsets = [0, 0, pos, 0, 0]
    tail = types + b"\xff"
    offsets[3] = pos + len(tail)
    tail += names + b"\xff"
    offsets[4] = pos + len(tail)
    tail += symbol("main", 0, 2, FUNC) + b"\xff"
    with open(sys.argv[1], "wb") as f:
        f.write(header(offsets) + stream + tail)


if __name__ == "__main__":
    main()

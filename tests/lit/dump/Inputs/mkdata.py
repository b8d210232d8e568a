#!/usr/bin/env python3
"""Writes an intermediate file with named types, file-level data with pragmas
and initializers, and two functions, independently of the project's writer:

    struct S {int a; char b[4]; unsigned f : 3;};  enum E {A, B = 5};
    typedef struct S* SP;
    static int tab[3] = {1, 2};   #pragma DATA_SECTION(".mydata")
    char msg[4] = "ab\\n";  int* ptr = &tab + 4;  extern int ext;

    int f(int a, int b) {            /* option set 1 */
        int s = a + b * 3;
        if (s > 10) goto L1;
        s = (short)(a - b) * -4;
    L1: return s > 0 ? s : -s;
    }
    int g(SP p) {
        int x = p->a;
        x = f(x, 2);
        switch (x) { case 1: return 1; default: return x; }
    }

Usage: mkdata.py OUT
"""
import os
import struct
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "Inputs"))
from mkfuncs import sleb  # noqa: E402
from mkif import cstr, record, uleb  # noqa: E402

INT, CHAR, UINT, S, CHAR4, SP_PTR, SP, E, INT3, F_TYPE, G_TYPE, F_PTR, INT_PTR, SHORT = range(1, 15)
F, G, TAB, MSG, PTR, EXT = range(6)


def psn(line):
    return uleb(1) + uleb(line) + uleb(1)


def type_rec(tid, code, fields):
    return record(116, uleb(tid) + bytes([code]) + fields)


def integer(tid, code, size):
    return type_rec(tid, code, bytes([0]) + uleb(size) + uleb(size) + bytes([0, 0]))


def array(tid, elem, count, size, align):
    return type_rec(tid, 18, uleb(elem) + uleb(count) + uleb(size) + uleb(align) + bytes([1, 0, 0]))


def pointer(tid, target):
    return type_rec(tid, 15, uleb(target) + uleb(32) + uleb(32))


def member(tid, mtype, name, offset, width=0):
    body = uleb(mtype) + cstr(name) + uleb(offset) + bytes([0]) + sleb(0) + bytes([0])
    body += uleb(width) + bytes([1 if width else 0, 0, 0]) + psn(2)
    return type_rec(tid, 28, body)


def function_type(tid, params):
    out = type_rec(tid, 20, uleb(INT) + bytes([0, 1, 0, 0]))
    out += type_rec(tid, 254, bytes([0]))
    for p in params:
        out += type_rec(tid, 21, uleb(p) + bytes([0]) + uleb(0) + cstr(""))
    return out + type_rec(tid, 255, bytes([0]))


def types():
    out = integer(INT, 6, 32) + integer(CHAR, 1, 8) + integer(UINT, 7, 32) + integer(SHORT, 4, 16)
    out += type_rec(S, 24, bytes([0]) + cstr("S") + bytes([1, 0]) + uleb(96) + uleb(32) +
                    bytes([1, 0, 0]) + psn(2))
    out += array(CHAR4, CHAR, 4, 32, 8)
    out += type_rec(S, 254, bytes([7]))
    out += member(S, INT, "a", 0) + member(S, CHAR4, "b", 32) + member(S, UINT, "f", 64, 3)
    out += type_rec(S, 255, bytes([7]))
    out += pointer(SP_PTR, S)
    out += type_rec(SP, 14, cstr("SP") + uleb(SP_PTR) + uleb(32) + uleb(32) + bytes([0, 0]) + psn(3))
    out += type_rec(E, 22, cstr("E") + uleb(INT) + uleb(32) + uleb(32) + bytes([0]) + psn(4))
    out += type_rec(E, 254, bytes([1]))
    out += type_rec(E, 23, cstr("A") + sleb(0) + psn(4)) + type_rec(E, 23, cstr("B") + sleb(5) + psn(4))
    out += type_rec(E, 255, bytes([1]))
    out += array(INT3, INT, 3, 96, 32)
    out += function_type(F_TYPE, [INT, INT]) + function_type(G_TYPE, [SP])
    out += pointer(F_PTR, F_TYPE) + pointer(INT_PTR, INT)
    return out


def symbol(name, size, sclass, tid, line, pragmas=(), extra=0, align=32):
    body = cstr(name) + uleb(size) + uleb(0) + bytes([sclass]) + struct.pack("<H", 0)
    body += uleb(tid) + uleb(0) + uleb(align) + bytes([len(pragmas)]) + uleb(0) + uleb(extra)
    body += psn(line)
    out = record(35, body)
    for kind, args in pragmas:
        out += record(94, uleb(kind) + uleb(len(args)) + b"".join(cstr(a) for a in args))
    return out


def node(op, tid, fields=b""):
    return record(101, bytes([op]) + uleb(tid) + fields)


def name(scope, index, tid=INT):
    return node(2, tid, uleb(scope) + uleb(index))


def icon(v, tid=INT):
    return node(4, tid, sleb(v) if tid != UINT else uleb(v))


def label(n):
    return node(1, 0, uleb(n))


def stmt(line, *nodes):
    return record(46, psn(line)) + b"".join(nodes)


def func_f():
    a, b, s = name(1, 0), name(1, 1), name(2, 2)
    body = stmt(6, node(58, INT), s, node(6, INT), a, node(11, INT), b, icon(3))
    body += stmt(7, node(109, 0), node(85, INT), s, icon(10), label(1))
    body += stmt(8, node(58, INT), s, node(11, INT), node(104, SHORT), node(8, INT), a, b,
                 icon(-4))
    body += record(42, uleb(1))
    body += stmt(9, node(36, INT), name(0, F, F_TYPE), node(21, INT), node(85, INT), s, icon(0),
                 node(22, INT), s, node(10, INT), s)
    return (record(1, psn(5) + uleb(F)) + symbol("a", 32, 9, INT, 5) + symbol("b", 32, 9, INT, 5) +
            record(5, psn(5)) + symbol("s", 32, 1, INT, 6) + record(6, psn(6)) + body +
            record(2, psn(10)))


def func_g():
    p, x = name(1, 0, SP), name(2, 1)
    body = stmt(13, node(58, INT), x, node(69, INT), p, node(26, INT, bytes([1]) + uleb(1) + uleb(S)))
    call = node(70, INT, uleb(1) + uleb(0)) + node(16, F_PTR) + name(0, F, F_TYPE)
    call += node(56, 0) + x + icon(2)
    body += stmt(14, node(58, INT), x, call)
    cases = node(56, 0) + node(47, 0) + icon(1) + label(2) + node(46, 0) + label(3)
    body += stmt(15, node(40, 0, uleb(0)), x, cases)
    body += record(42, uleb(2)) + stmt(16, node(36, INT), name(0, G, G_TYPE), icon(1))
    body += record(42, uleb(3)) + stmt(17, node(36, INT), name(0, G, G_TYPE), x)
    return (record(1, psn(12) + uleb(G)) + symbol("p", 32, 9, SP, 12) + record(5, psn(12)) +
            symbol("x", 32, 1, INT, 13) + record(6, psn(13)) + body + record(2, psn(18)))


def main():
    names = record(126, cstr("data.c"))
    globals_ = (symbol("f", 0, 2, F_TYPE, 5, extra=1) + symbol("g", 0, 2, G_TYPE, 12) +
                symbol("tab", 96, 3, INT3, 20, pragmas=[(2, [".mydata"])], align=64) +
                symbol("msg", 32, 2, CHAR4, 21, align=8) + symbol("ptr", 32, 2, INT_PTR, 22) +
                symbol("ext", 32, 5, INT, 23))
    inits = record(105, uleb(TAB)) + icon(1) + icon(2) + node(115, 0, uleb(4)) + node(112, 0)
    inits += record(105, uleb(MSG)) + node(3, CHAR4, uleb(4) + b"ab\n\0") + node(112, 0)
    inits += (record(105, uleb(PTR)) + node(6, INT_PTR) + node(16, INT_PTR) + name(0, TAB, INT3) +
              icon(4) + node(112, 0))
    options = (record(111, uleb(0) + uleb(1) + cstr("-O2")) +
               record(111, uleb(1) + uleb(1) + cstr("--opt_for_speed=2")))
    stream = func_f() + func_g() + b"\xff"

    def header(offsets):
        body = cstr("!<icode>\n") + struct.pack("<hh", -73, 400)
        body += struct.pack("<5I", *offsets) + cstr("mkdata \"test\"") + struct.pack("<I", 0)
        return bytes([8]) + uleb(len(body)) + body

    pos = len(header([0] * 5)) + len(stream)
    offsets = [0] * 5  # options, initializers, types, file names, globals
    tail = b""
    for i, section in ((0, options), (2, types()), (3, names), (4, globals_), (1, inits)):
        offsets[i] = pos + len(tail)
        tail += section + b"\xff"
    with open(sys.argv[1], "wb") as f:
        f.write(header(offsets) + stream + tail)


if __name__ == "__main__":
    main()

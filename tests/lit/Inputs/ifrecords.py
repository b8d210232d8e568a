"""Lists the records of an intermediate file's main stream and of its global
section, one a line, for checks of the writer.

With --detail it also shows what the default listing leaves out: block and
assembly records, each symbol's storage class, qualifier word, alignment and
pragmas, every operator by name with its fields, and the initializer section
(one "init NAME" line, then the nodes of its data items)."""
import struct
import sys

OPS = {58: "ASG", 109: "CBRANCH", 114: "BRANCH", 118: "URETURN"}


def uleb(b, i):
    v = shift = 0
    while True:
        c = b[i]
        i += 1
        v |= (c & 0x7F) << shift
        shift += 7
        if not c & 0x80:
            return v, i


def records(b, i):
    while b[i] != 0xFF:
        kind = b[i]
        size, i = uleb(b, i + 1)
        yield kind, b[i:i + size]
        i += size


def skip_psn(body, i):
    f, i = uleb(body, i)
    if f:
        i = uleb(body, uleb(body, i)[1])[1]
    return i


def line_of(body):
    """The line of a record's leading position, or "-" for none."""
    f, i = uleb(body, 0)
    return str(uleb(body, i)[0]) if f else "-"


# Operator names for --detail; numbers without a name print as numbers.
NAMES = {
    1: "LABEL", 2: "NAME", 3: "SCON", 4: "ICON", 5: "FCON", 6: "PLUS", 7: "PLUSASG",
    8: "MINUS", 9: "MINUSASG", 10: "UMINUS", 11: "MULT", 12: "MULTASG", 13: "UMULT",
    14: "ANDB", 15: "ANDBASG", 16: "UAND", 17: "ORB", 18: "ORBASG", 19: "XORB",
    20: "XORBASG", 21: "QUEST", 22: "COLON", 23: "ANDAND", 24: "OROR", 25: "LCON",
    26: "FIELD", 36: "RETURN", 40: "SWITCH", 46: "DEFAULT", 47: "CASE", 56: "COMMA",
    58: "ASG", 59: "COMMAOP", 60: "DIV", 61: "DIVASG", 62: "MOD", 63: "MODASG", 64: "SLL",
    65: "SLLASG", 66: "SRL", 67: "SRLASG", 68: "STDOT", 69: "STREF", 70: "CALL",
    72: "UCALL", 76: "EXCLAIM", 77: "NOTB", 78: "PLUSPLUS", 79: "MINMIN", 80: "EQ",
    81: "NEQ", 82: "LE", 83: "LT", 84: "GE", 85: "GT", 86: "ULE", 87: "ULT", 88: "UGE",
    89: "UGT", 98: "STASG", 103: "ARASG", 104: "SCONV", 105: "PCONV", 108: "ACONV",
    109: "CBRANCH", 112: "ENDINIT", 114: "BRANCH", 115: "SKIP", 118: "URETURN",
}


def sleb(b, i):
    v = shift = 0
    while True:
        c = b[i]
        i += 1
        v |= (c & 0x7F) << shift
        shift += 7
        if not c & 0x80:
            if c & 0x40 and shift < 32:
                v -= 1 << shift
            return v - (1 << 32) if v >= 1 << 31 else v, i


def cstring(body, i):
    end = body.index(0, i)
    return body[i:end].decode("latin-1"), end + 1


def symbol_detail(body):
    name, i = cstring(body, 0)
    size, i = uleb(body, i)
    _, i = uleb(body, i)  # offset
    sclass = body[i]
    qual = struct.unpack_from("<H", body, i + 1)[0]
    _, i = uleb(body, i + 3)  # type
    _, i = uleb(body, i)  # second type
    align, i = uleb(body, i)
    return "%s size=%d class=%d qual=0x%x align=%d pragmas=%d" % (
        name, size, sclass, qual, align, body[i])


def pragma_detail(body):
    kind, i = uleb(body, 0)
    count, i = uleb(body, i)
    args = []
    for _ in range(count):
        a, i = cstring(body, i)
        args.append('"%s"' % a)
    return " ".join(["pragma", str(kind)] + args)


def node_detail(body):
    op = body[0]
    _, i = uleb(body, 1)  # type
    text = NAMES.get(op, str(op))
    if op in (1, 115):
        text += " %d" % uleb(body, i)[0]
    elif op == 2:
        scope, i = uleb(body, i)
        index, i = uleb(body, i)
        text += " %s %d" % ("global" if scope == 0 else "level%d" % scope, index)
    elif op == 3:
        n, i = uleb(body, i)
        text += " %r" % body[i:i + n].decode("latin-1")
    elif op == 4:
        signed = is_signed(uleb(body, 1)[0])
        text += " %d" % (sleb(body, i)[0] if signed else uleb(body, i)[0])
    elif op in (5, 25):
        text += " " + cstring(body, i)[0]
    elif op == 26:
        text += " member %d" % uleb(body, i + 1)[0]
    elif op in (40, 70):
        text += " %d" % uleb(body, i)[0]
    return "node " + text


# Type id to (code, first type field) for is_signed, filled from the type section.
TYPES = {}


def read_types(b, offset):
    """Fills TYPES and lists each struct or union with its data members."""
    classes, members = [], {}
    for kind, body in records(b, offset):
        if kind != 116:
            continue
        tid, i = uleb(body, 0)
        code = body[i]
        ref = None
        if code in (14, 22):  # typedef, enum: a name, then the type named
            _, j = cstring(body, i + 1)
            ref = uleb(body, j)[0]
        elif code == 17:  # qualified
            ref = uleb(body, i + 1)[0]
        TYPES.setdefault(tid, (code, ref))
        if code in (24, 25):  # a class: kind, name, complete, lowered, size, alignment
            name, j = cstring(body, i + 2)
            complete = body[j]
            size, j = uleb(body, j + 2)
            align, j = uleb(body, j)
            classes.append((tid, "type %s %s size=%d align=%d%s" % (
                ("struct", "union", "class")[body[i + 1]], name, size, align,
                "" if complete else " incomplete")))
        elif code == 28:  # a member: type, name, offset, access, flags, tag, width, bit field
            _, j = uleb(body, i + 1)
            name, j = cstring(body, j)
            offset, j = uleb(body, j)
            flags, j = sleb(body, j + 1)
            width, j = uleb(body, j + 1)
            members.setdefault(tid, []).append("  member %s offset=%d%s%s" % (
                name or "-", offset, " width=%d" % width if body[j] else "",
                " flags=%d" % flags if flags else ""))
    for tid, line in classes:
        print(line)
        for m in members.get(tid, []):
            print(m)


def is_signed(tid):
    code, ref = TYPES.get(tid, (None, None))
    if code in (14, 17, 22):
        return is_signed(ref)
    return code in (1, 4, 6, 8, 50)


def main_detail(b, header):
    global_offset = struct.unpack_from("<I", header, 10 + 4 + 16)[0]
    type_offset = struct.unpack_from("<I", header, 10 + 4 + 8)[0]
    if type_offset:
        read_types(b, type_offset)
    init_offset = struct.unpack_from("<I", header, 10 + 4 + 4)[0]
    option_offset = struct.unpack_from("<I", header, 10 + 4)[0]
    file_offset = struct.unpack_from("<I", header, 10 + 4 + 12)[0]
    if file_offset:
        for n, (_, body) in enumerate(records(b, file_offset), 1):
            print("file", n, cstring(body, 0)[0])
    if option_offset:
        for _, body in records(b, option_offset):
            number, i = uleb(body, 0)
            count, i = uleb(body, i)
            opts = []
            for _ in range(count):
                o, i = cstring(body, i)
                opts.append(o)
            print("options", number, " ".join(opts))
    size, i = uleb(b, 1)
    for kind, body in records(b, i + size):
        if kind == 1:
            print("begin func", uleb(body, skip_psn(body, 0))[0])
        elif kind in (2, 3, 4, 5, 6):
            print({2: "end func", 3: "begin block", 4: "end block", 5: "end args",
                   6: "end locals"}[kind], "line", line_of(body))
        elif kind == 35:
            print("symbol", symbol_detail(body))
        elif kind == 36:
            print("assembly", cstring(body, 0)[0])
        elif kind == 42:
            print("label", uleb(body, 0)[0])
        elif kind == 46:
            f, j = uleb(body, 0)
            where = ""
            if f:
                _, j = uleb(body, j)
                where = " col %d file %d" % (uleb(body, j)[0], f)
            print("statement line", line_of(body) + where)
        elif kind == 94:
            print(pragma_detail(body))
        elif kind == 101:
            print(node_detail(body))
    print("end")
    names = []
    for kind, body in records(b, global_offset):
        if kind == 35:
            names.append(cstring(body, 0)[0])
            print("global", symbol_detail(body))
        elif kind == 94:
            print(pragma_detail(body))
    print("end")
    if init_offset:
        for kind, body in records(b, init_offset):
            if kind == 105:
                print("init", names[uleb(body, 0)[0]])
            elif kind == 101:
                print(node_detail(body))
        print("end")


def main():
    b = open(sys.argv[1], "rb").read()
    if "--detail" in sys.argv[2:]:
        size, i = uleb(b, 1)
        main_detail(b, b[i:i + size])
        return
    size, i = uleb(b, 1)
    header = b[i:i + size]
    global_offset = struct.unpack_from("<I", header, 10 + 4 + 16)[0]
    rest = records(b, i + size)
    for kind, body in rest:
        if kind == 1:
            print("begin func", uleb(body, skip_psn(body, 0))[0])
        elif kind == 2:
            print("end func line", line_of(body))
        elif kind == 5:
            print("end args line", line_of(body))
        elif kind == 6:
            print("end locals line", line_of(body))
        elif kind == 35:
            name = body[:body.index(0)].decode()
            print("symbol", name, "size=%d" % uleb(body, len(name) + 1)[0])
        elif kind == 42:
            print("label", uleb(body, 0)[0])
        elif kind == 46:
            print("statement")
        elif kind == 101:
            op = OPS.get(body[0], body[0])
            if body[0] == 1:  # a LABEL names its label number
                _, j = uleb(body, 1)
                print("node", op, uleb(body, j)[0])
            else:
                print("node", op)
    print("end")
    for kind, body in records(b, global_offset):
        print("global", body[:body.index(0)].decode())
    print("end")


main()

"""Lists the records of an intermediate file's main stream and of its global
section, one a line, for checks of the writer."""
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


def main():
    b = open(sys.argv[1], "rb").read()
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

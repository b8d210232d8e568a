"""Compares two files written by ondrel-opt byte for byte, except for the text
of the command line each records in its first comment. The two command lines
must have one length, so that nothing after the text moves.

    cmp-but-command-line.py A B
"""
import sys


def masked(path):
    with open(path, "rb") as f:
        data = f.read()
    start = data.index(b";\t")
    end = data.index(b"\0", start)
    return data[:start] + b"?" * (end - start) + data[end:]


a, b = masked(sys.argv[1]), masked(sys.argv[2])
if a != b:
    at = next((i for i in range(min(len(a), len(b))) if a[i] != b[i]), min(len(a), len(b)))
    print("%s and %s differ at byte %d (sizes %d and %d)" % (sys.argv[1], sys.argv[2], at,
                                                           len(a), len(b)))
    sys.exit(1)

#!/usr/bin/env python3
"""damage_run.py FILE WORKDIR: runs ondrel-run on FILE cut at every byte and
with every byte complemented, each with a step budget and a time limit. Any
exit status is allowed (the file may still be a valid program, or fault, or
be refused) except an internal error; a signal or a hang fails. Prints the
failures and "N runs, N failed"."""
import os
import subprocess
import sys

source, work = sys.argv[1:3]
data = open(source, "rb").read()
os.makedirs(work, exist_ok=True)
runs = failed = 0
variants = [("cut at %d" % n, data[:n]) for n in range(len(data))]
variants += [("byte %d complemented" % n, data[:n] + bytes([data[n] ^ 0xFF]) + data[n + 1:])
             for n in range(len(data))]
for what, content in variants:
    path = os.path.join(work, "damaged.if")
    with open(path, "wb") as f:
        f.write(content)
    try:
        r = subprocess.run(["ondrel-run", "--max-steps=100000", path], capture_output=True,
                           timeout=20)
        bad = r.returncode < 0 or b"INTERNAL ERROR" in r.stderr
        why = "status %d" % r.returncode
    except subprocess.TimeoutExpired:
        bad, why = True, "hang"
    runs += 1
    if bad:
        failed += 1
        print("%s: crash (%s)" % (what, why))
print("%d runs, %d failed" % (runs, failed))

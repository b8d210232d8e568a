#!/usr/bin/env python3
"""truncate_all.py PROGRAM FILE WORKDIR: runs PROGRAM on FILE cut at every byte
offset, each with a time limit. Every run must end by itself with status 0
or 1, never by a signal or a crash (2), and a run that fails must leave no
output file. Prints one line per kind of ending and "N passed, N failed"."""
import os
import subprocess
import sys

program, source, work = sys.argv[1:4]
data = open(source, "rb").read()
os.makedirs(work, exist_ok=True)
endings = {}
failed = 0
for cut in range(len(data)):
    path = os.path.join(work, f"cut{cut}.if")
    out = os.path.join(work, f"cut{cut}.opt")
    with open(path, "wb") as f:
        f.write(data[:cut])
    try:
        r = subprocess.run([program, path, out], capture_output=True, timeout=10)
        status = r.returncode
    except subprocess.TimeoutExpired:
        status = "hang"
    ok = status in (0, 1) and (status == 0 or not os.path.exists(out))
    endings[status] = endings.get(status, 0) + 1
    if not ok:
        failed += 1
        print(f"cut at {cut}: status {status}, output left: {os.path.exists(out)}")
for status, count in sorted(endings.items(), key=str):
    print(f"status {status}: {count} cuts")
print(f"{len(data) - failed} passed, {failed} failed")

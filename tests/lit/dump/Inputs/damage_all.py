#!/usr/bin/env python3
"""damage_all.py PROGRAM FILE WORKDIR: runs PROGRAM on FILE with one byte
changed to its complement, for every byte, each run with a time limit. A damaged file may still be a valid
one, so status 0 and 1 both pass; a signal, a crash (status 2) or a hang
fails. Prints the failures, one line per kind of ending and
"N passed, N failed"."""
import os
import subprocess
import sys

program, source, work = sys.argv[1:4]
data = open(source, "rb").read()
os.makedirs(work, exist_ok=True)
endings = {}
runs = failed = 0
for at in range(len(data)):
    for value in [data[at] ^ 0xFF]:
        path = os.path.join(work, f"damaged{at}_{value}.if")
        with open(path, "wb") as f:
            f.write(data[:at] + bytes([value]) + data[at + 1:])
        try:
            status = subprocess.run([program, path], capture_output=True, timeout=10).returncode
        except subprocess.TimeoutExpired:
            status = "hang"
        runs += 1
        endings[status] = endings.get(status, 0) + 1
        if status not in (0, 1):
            failed += 1
            print(f"byte {at} set to {value}: status {status}")
        else:
            os.remove(path)
for status, count in sorted(endings.items(), key=str):
    print(f"status {status}: {count} runs")
print(f"{runs - failed} passed, {failed} failed")

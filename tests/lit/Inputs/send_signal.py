#!/usr/bin/env python3
"""send_signal.py SIGNAL FIFO COMMAND...: starts COMMAND, which opens the named pipe
FIFO as its input and blocks there, sends it SIGNAL, and prints its standard
error and exit status."""
import os
import signal
import subprocess
import sys
import time

sig = getattr(signal, sys.argv[1])
fifo = sys.argv[2]
if os.path.exists(fifo):
    os.unlink(fifo)
os.mkfifo(fifo)
proc = subprocess.Popen(sys.argv[3:], stderr=subprocess.PIPE)
# The program installs its handlers before it opens the input; give it time
# to get there. It stays blocked in the open until the signal comes.
deadline = time.time() + 10
while time.time() < deadline:
    try:
        with open(f"/proc/{proc.pid}/wchan") as f:
            wchan = f.read()
        if "fifo" in wchan or "partner" in wchan:
            break
    except OSError:
        pass
    time.sleep(0.05)
time.sleep(0.2)
proc.send_signal(sig)
_, err = proc.communicate(timeout=10)
sys.stdout.write(err.decode())
print(f"exit status {proc.returncode}")

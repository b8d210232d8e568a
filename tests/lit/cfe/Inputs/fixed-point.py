"""Usage: fixed-point.py CFE OPT DUMP DIR WORK [SEEDS]

Takes each C program of DIR through the front end and the optimizer at -O0
to -O3, then the output through the optimizer at -O0 again. Both outputs must
dump, and to the same text: what the optimizer wrote is a file it has
nothing left to do on. The order of the functions is left out of the
comparison, as -O0 writes them in source order and -O2 on in call-graph
order.

SEEDS, comma-separated, adds the csmith programs of those seeds to DIR's.

Prints a FAIL line for each program and level that fails, with the first
line that differs, then a count line for each level. Exits 1 when a tool
failed; a file that is no fixed point is only counted, for the caller to
judge."""
import concurrent.futures
import os
import subprocess
import sys

LEVELS = range(4)
CSMITH_INCLUDE = "/usr/include/csmith"


def run(cmd):
    r = subprocess.run(cmd, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    return r.returncode == 0, r.stdout.decode("utf-8", "replace")


def split_dump(text):
    """The lines of a dump before its functions, and each function's lines by
    name; blank lines are left out."""
    head, funcs, name = [], {}, None
    for line in text.splitlines():
        if line.startswith("func "):
            name = line[5:].split("(")[0]
            funcs[name] = []
        if line:
            (funcs[name] if name else head).append(line)
    return head, funcs


def first_difference(a, b):
    """Where two dumps part, or None."""
    (head_a, funcs_a), (head_b, funcs_b) = split_dump(a), split_dump(b)
    pairs = [("file level", head_a, head_b)]
    pairs += [("func " + n, funcs_a[n], funcs_b.get(n, [])) for n in funcs_a]
    pairs += [("func " + n, [], funcs_b[n]) for n in funcs_b if n not in funcs_a]
    for where, x, y in pairs:
        for i in range(max(len(x), len(y))):
            one = x[i] if i < len(x) else "(end)"
            two = y[i] if i < len(y) else "(end)"
            if one != two:
                return "%s: %r became %r" % (where, one, two)
    return None


def check(tools, c, work):
    """For each level: None when it holds, else (whether a tool failed, text)."""
    cfe, opt, dump = tools
    name = os.path.splitext(os.path.basename(c))[0]
    base = os.path.join(work, name)
    include = ["-I", CSMITH_INCLUDE] if name.startswith("seed") else []
    if not run([cfe, "-w"] + include + [c, "-o", base + ".if"])[0]:
        return [(True, "ondrel-cfe failed")] * len(LEVELS)
    results = []
    for level in LEVELS:
        a = "%s.O%d.opt" % (base, level)
        b = "%s.O%d.again" % (base, level)
        if not run([opt, "-O%d" % level, base + ".if", a])[0]:
            results.append((True, "ondrel-opt failed"))
            continue
        ok, first = run([dump, a])
        if not ok:
            results.append((True, "ondrel-dump of the output failed"))
            continue
        if not run([opt, "-O0", a, b])[0]:
            results.append((True, "ondrel-opt -O0 of the output failed"))
            continue
        ok, second = run([dump, b])
        if not ok:
            results.append((True, "ondrel-dump of the second output failed"))
            continue
        where = first_difference(first, second)
        results.append((False, "not a fixed point: " + where) if where else None)
    return results


def main():
    tools, src, work = sys.argv[1:4], sys.argv[4], sys.argv[5]
    os.makedirs(work, exist_ok=True)
    programs = sorted(os.path.join(src, f) for f in os.listdir(src) if f.endswith(".c"))
    if len(sys.argv) > 6:
        gen = os.path.join(work, "csmith")
        os.makedirs(gen, exist_ok=True)
        for seed in sys.argv[6].split(","):
            path = os.path.join(gen, "seed%s.c" % seed)
            with open(path, "wb") as f:
                # csmith leaves a platform.info in its working directory.
                f.write(subprocess.run(["csmith", "--seed", seed], stdout=subprocess.PIPE,
                                       check=True, cwd=gen).stdout)
            programs.append(path)
    # Each program is a chain of processes of its own; two chains at a time
    # halve the wait.
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        results = list(pool.map(lambda f: check(tools, f, work), programs))
    tool_failed = False
    for level in LEVELS:
        failed = 0
        for program, levels in zip(programs, results):
            if levels[level]:
                tool_failed |= levels[level][0]
                failed += 1
                print("FAIL %s -O%d: %s" % (os.path.basename(program), level,
                                            levels[level][1]))
        print("-O%d: %d programs, %d failed" % (level, len(programs), failed))
    return 1 if tool_failed else 0


if __name__ == "__main__":
    sys.exit(main())

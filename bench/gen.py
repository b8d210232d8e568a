"""Generators of the scaling programs: one C source per shape and size, the
size a factor (1, 2, 4, ...) on a base unit. Each is a whole C program; the
benchmark only optimizes it.

    python3 bench/gen.py SHAPE SIZE    # prints the program
"""
import sys

# A fixed set of locals: the programs grow in statements and blocks, not in
# variables, so a time that grows faster than the size points at the code's
# length rather than at a wider dataflow problem.
NVARS = 16


def _vars():
    return "".join("    unsigned v%d = %du + seed;\n" % (i, i * 7 + 1) for i in range(NVARS))


def _sum():
    return " ^ ".join("v%d" % i for i in range(NVARS))


def _stmt(i):
    """A deterministic arithmetic statement on the locals."""
    a, b, c = i % NVARS, (i * 5 + 3) % NVARS, (i * 11 + 7) % NVARS
    ops = ["v%d = v%d + v%d * %du;" % (a, b, c, i % 13 + 1),
           "v%d = (v%d ^ v%d) >> %d;" % (a, b, c, i % 7 + 1),
           "v%d = v%d - (v%d & %du);" % (a, b, c, i % 255 + 1),
           "v%d += g[%d] + v%d;" % (a, i % 64, b),
           "g[%d] = v%d | v%d;" % (i % 64, a, b)]
    return ops[i % len(ops)]


def _program(body, funcs=""):
    return ("#include <stdio.h>\n"
            "unsigned g[64];\n" + funcs +
            "int main(void) {\n"
            "    unsigned seed = 3;\n" + body +
            "    return 0;\n}\n")


def one_function(size):
    """One function of 200 statements per size, with ifs and short loops.

    Every twentieth statement opens an if or a loop, so the blocks grow with
    the statements."""
    n = 200 * size
    lines = []
    for i in range(n):
        if i % 20 == 5:
            lines.append("    if (v%d > v%d) {" % (i % NVARS, (i + 1) % NVARS))
        elif i % 20 == 9:
            lines.append("    }")
        elif i % 40 == 30:
            lines.append("    for (unsigned k = 0; k < 4; k++) {")
        elif i % 40 == 36:
            lines.append("    }")
        lines.append("    " + _stmt(i))
    f = ("unsigned big(unsigned seed) {\n" + _vars() + "\n".join(lines) + "\n"
         "    return " + _sum() + ";\n}\n")
    return _program('    printf("%u\\n", big(seed));\n', f)


def many_functions(size):
    """40 small functions per size, each called once from main."""
    n = 40 * size
    funcs = []
    for j in range(n):
        body = "".join("    x = x * %du + y;\n    y ^= x >> %d;\n" % (j % 7 + 3, k + 1)
                       for k in range(3))
        funcs.append("static unsigned f%d(unsigned x, unsigned y) {\n%s"
                     "    if (x > y) return x - y;\n    return y + g[%d];\n}\n"
                     % (j, body, j % 64))
    calls = "".join("    s += f%d(s, %du);\n" % (j, j) for j in range(n))
    return _program("    unsigned s = seed;\n" + calls + '    printf("%u\\n", s);\n',
                    "".join(funcs))


def loop_nest(size):
    """Sixteen functions, each one loop nest twice the size deep.

    Every level has statements of its own; the copies make 1x measurable."""
    depth = 2 * size
    funcs = []
    for j in range(16):
        lines = []
        for d in range(depth):
            ind = "    " * (d + 1)
            lines.append("%sv%d += %du;" % (ind, d % NVARS, d + j))
            lines.append("%sfor (unsigned i%d = 0; i%d < 2; i%d++) {" % (ind, d, d, d))
        ind = "    " * (depth + 1)
        lines.append("%s" % ind + _stmt(j))
        for d in reversed(range(depth)):
            ind = "    " * (d + 1)
            lines.append("%s    " % ind + _stmt(d + j))
            lines.append("%s}" % ind)
        funcs.append("unsigned nest%d(unsigned seed) {\n%s%s\n    return %s;\n}\n"
                     % (j, _vars(), "\n".join(lines), _sum()))
    # Not called: a run would take 2^depth iterations.
    return _program('    printf("%u\\n", g[0] + seed);\n', "".join(funcs))


def straight_line(size):
    """One function of one long block: 400 assignments per size, no branches."""
    n = 400 * size
    f = ("unsigned block(unsigned seed) {\n" + _vars() +
         "".join("    %s\n" % _stmt(i) for i in range(n)) +
         "    return " + _sum() + ";\n}\n")
    return _program('    printf("%u\\n", block(seed));\n', f)


def switch(size):
    """One switch of 64 cases per size, in a loop over the case values."""
    n = 64 * size
    cases = "".join("        case %d: v%d = v%d * %du + %du; v%d ^= v%d; break;\n"
                    % (c * 3, c % NVARS, (c + 1) % NVARS, c % 11 + 2, c, (c + 2) % NVARS,
                       c % NVARS) for c in range(n))
    f = ("unsigned sw(unsigned seed) {\n" + _vars() +
         "    for (unsigned k = 0; k < %du; k++) {\n" % (3 * n) +
         "        switch (k) {\n" + cases +
         "        default: v0++; break;\n        }\n    }\n"
         "    return " + _sum() + ";\n}\n")
    return _program('    printf("%u\\n", sw(seed));\n', f)


SHAPES = {
    "one_function": one_function,
    "many_functions": many_functions,
    "loop_nest": loop_nest,
    "straight_line": straight_line,
    "switch": switch,
}

if __name__ == "__main__":
    sys.stdout.write(SHAPES[sys.argv[1]](int(sys.argv[2])))

/* Conway's game of life on a 16x16 torus in two-dimensional char arrays,
   double-buffered by swapping pointers to the boards: a glider, a blinker,
   and an R-pentomino run for 32 generations, printing populations, a hash
   of every eighth generation, the glider's displacement and a final picture. */
#include <stdio.h>
#include <string.h>

#define H 16
#define W 16

typedef unsigned char board[H][W];

static board a, b;

static int neighbours(board g, int y, int x) {
    int n = 0;
    for (int dy = -1; dy <= 1; dy++)
        for (int dx = -1; dx <= 1; dx++) {
            if (!dy && !dx)
                continue;
            n += g[(y + dy + H) % H][(x + dx + W) % W];
        }
    return n;
}

static void step(board from, board to) {
    for (int y = 0; y < H; y++)
        for (int x = 0; x < W; x++) {
            int n = neighbours(from, y, x);
            to[y][x] = n == 3 || (n == 2 && from[y][x]);
        }
}

static int population(board g) {
    int n = 0;
    for (int y = 0; y < H; y++)
        for (int x = 0; x < W; x++)
            n += g[y][x];
    return n;
}

static unsigned hash(board g) {
    unsigned h = 0;
    const unsigned char *p = &g[0][0];
    for (int i = 0; i < H * W; i++)
        h = (h << 1 | h >> 31) ^ p[i];
    return h;
}

static void place(board g, int y, int x, const char *const *rows, int n) {
    for (int r = 0; r < n; r++)
        for (int c = 0; rows[r][c]; c++)
            g[y + r][x + c] = rows[r][c] == '#';
}

static void bounds(board g, int *top, int *left) {
    *top = H;
    *left = W;
    for (int y = 0; y < H; y++)
        for (int x = 0; x < W; x++)
            if (g[y][x]) {
                if (y < *top)
                    *top = y;
                if (x < *left)
                    *left = x;
            }
}

static void show(board g) {
    for (int y = 0; y < H; y++) {
        char line[W + 1];
        for (int x = 0; x < W; x++)
            line[x] = g[y][x] ? '#' : '.';
        line[W] = '\0';
        puts(line);
    }
}

int main(void) {
    static const char *const glider[] = {".#.", "..#", "###"};
    static const char *const rpent[] = {".##", "##.", ".#."};
    unsigned char(*cur)[W] = a, (*next)[W] = b;

    place(cur, 1, 1, glider, 3);
    int t0, l0, t1, l1;
    bounds(cur, &t0, &l0);
    for (int g = 0; g < 8; g++) {
        step(cur, next);
        unsigned char(*tmp)[W] = cur;
        cur = next;
        next = tmp;
    }
    bounds(cur, &t1, &l1);
    printf("glider after 8: population %d moved (%d,%d)\n", population(cur), t1 - t0, l1 - l0);

    memset(a, 0, sizeof a);
    cur = a;
    next = b;
    cur[5][10] = cur[5][11] = cur[5][12] = 1; /* blinker */
    step(cur, next);
    printf("blinker vertical: %d %d %d, horizontal gone: %d\n", next[4][11], next[5][11],
           next[6][11], next[5][10] + next[5][12]);

    memset(a, 0, sizeof a);
    place(cur, 6, 6, rpent, 3);
    for (int g = 0; g <= 32; g++) {
        if (g % 8 == 0)
            printf("gen %2d: population %3d hash %08x\n", g, population(cur), hash(cur));
        step(cur, next);
        unsigned char(*tmp)[W] = cur;
        cur = next;
        next = tmp;
    }
    show(cur);
    return 0;
}

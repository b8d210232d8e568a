/* Backtracking: the N-queens problem for N = 1..9 counted with bitmasks of
   attacked columns and diagonals (recursion with unsigned masks and
   x & -x), the first solution for N = 8 printed as a board, and a subset
   sum search with pruning over a small array. */
#include <stdio.h>

static int solutions;
static int first[12];
static int have_first;

static void place(int n, int row, unsigned cols, unsigned diag1, unsigned diag2, int *queens) {
    if (row == n) {
        if (!have_first) {
            for (int i = 0; i < n; i++)
                first[i] = queens[i];
            have_first = 1;
        }
        solutions++;
        return;
    }
    unsigned all = (1u << n) - 1;
    unsigned free_cols = ~(cols | diag1 | diag2) & all;
    while (free_cols) {
        unsigned bit = free_cols & (0u - free_cols);
        free_cols ^= bit;
        int col = 0;
        while (!(bit >> col & 1))
            col++;
        queens[row] = col;
        place(n, row + 1, cols | bit, (diag1 | bit) << 1 & all, (diag2 | bit) >> 1, queens);
    }
}

static int subset_count;

static void subset_sum(const int *a, int n, int i, int target, int *chosen, int depth) {
    if (target == 0) {
        subset_count++;
        if (subset_count <= 3) {
            printf("  subset:");
            for (int k = 0; k < depth; k++)
                printf(" %d", chosen[k]);
            printf("\n");
        }
        return;
    }
    if (i == n || target < 0)
        return;
    chosen[depth] = a[i];
    subset_sum(a, n, i + 1, target - a[i], chosen, depth + 1);
    subset_sum(a, n, i + 1, target, chosen, depth);
}

int main(void) {
    int queens[12];
    for (int n = 1; n <= 9; n++) {
        solutions = 0;
        have_first = 0;
        place(n, 0, 0, 0, 0, queens);
        printf("queens(%d) = %d\n", n, solutions);
        if (n == 8)
            for (int r = 0; r < 8; r++) {
                char line[9];
                for (int c = 0; c < 8; c++)
                    line[c] = first[r] == c ? 'Q' : '.';
                line[8] = '\0';
                printf("  %s\n", line);
            }
    }
    static const int items[] = {3, 34, 4, 12, 5, 2, 7, 19, 8, 1};
    int chosen[10];
    subset_sum(items, 10, 0, 30, chosen, 0);
    printf("subsets summing to 30: %d\n", subset_count);
    return 0;
}

/* Sorting algorithms side by side: heap sort, shell sort, bottom-up merge
   sort, counting sort, selection sort and qsort with a comparator, on the
   same pseudo-random data (an xorshift generator), each checked against the
   others and summarized by a position-weighted checksum. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define N 200

static unsigned state = 2463534242u;

static unsigned xorshift32(void) {
    unsigned x = state;
    x ^= x << 13;
    x ^= x >> 17;
    x ^= x << 5;
    return state = x;
}

static void swap(int *a, int *b) {
    int t = *a;
    *a = *b;
    *b = t;
}

static void sift_down(int *a, int start, int end) {
    int root = start;
    while (2 * root + 1 <= end) {
        int child = 2 * root + 1;
        int pick = root;
        if (a[pick] < a[child])
            pick = child;
        if (child + 1 <= end && a[pick] < a[child + 1])
            pick = child + 1;
        if (pick == root)
            return;
        swap(&a[root], &a[pick]);
        root = pick;
    }
}

static void heap_sort(int *a, int n) {
    for (int start = (n - 2) / 2; start >= 0; start--)
        sift_down(a, start, n - 1);
    for (int end = n - 1; end > 0; end--) {
        swap(&a[0], &a[end]);
        sift_down(a, 0, end - 1);
    }
}

static void shell_sort(int *a, int n) {
    static const int gaps[] = {57, 23, 10, 4, 1};
    for (unsigned g = 0; g < sizeof gaps / sizeof gaps[0]; g++) {
        int gap = gaps[g];
        for (int i = gap; i < n; i++) {
            int t = a[i], j;
            for (j = i; j >= gap && a[j - gap] > t; j -= gap)
                a[j] = a[j - gap];
            a[j] = t;
        }
    }
}

static void merge_sort(int *a, int n) {
    int *tmp = malloc(n * sizeof *tmp);
    for (int width = 1; width < n; width *= 2) {
        for (int lo = 0; lo < n; lo += 2 * width) {
            int mid = lo + width < n ? lo + width : n;
            int hi = lo + 2 * width < n ? lo + 2 * width : n;
            int i = lo, j = mid, k = lo;
            while (i < mid && j < hi)
                tmp[k++] = a[i] <= a[j] ? a[i++] : a[j++];
            while (i < mid)
                tmp[k++] = a[i++];
            while (j < hi)
                tmp[k++] = a[j++];
        }
        memcpy(a, tmp, n * sizeof *a);
    }
    free(tmp);
}

static void counting_sort(int *a, int n, int range) {
    int *count = calloc(range, sizeof *count);
    for (int i = 0; i < n; i++)
        count[a[i]]++;
    int k = 0;
    for (int v = 0; v < range; v++)
        while (count[v]-- > 0)
            a[k++] = v;
    free(count);
}

static void selection_sort(int *a, int n) {
    for (int i = 0; i < n - 1; i++) {
        int min = i;
        for (int j = i + 1; j < n; j++)
            if (a[j] < a[min])
                min = j;
        if (min != i)
            swap(a + i, a + min);
    }
}

static int cmp_int(const void *x, const void *y) {
    int a = *(const int *)x, b = *(const int *)y;
    return (a > b) - (a < b);
}

static unsigned checksum(const int *a, int n) {
    unsigned h = 0;
    for (int i = 0; i < n; i++)
        h = h * 31u + (unsigned)a[i] * (unsigned)(i + 1);
    return h;
}

static int is_sorted(const int *a, int n) {
    for (int i = 1; i < n; i++)
        if (a[i - 1] > a[i])
            return 0;
    return 1;
}

int main(void) {
    int data[N], work[N], ref[N];
    for (int i = 0; i < N; i++)
        data[i] = (int)(xorshift32() % 1000u);
    memcpy(ref, data, sizeof data);
    qsort(ref, N, sizeof ref[0], cmp_int);
    printf("qsort sorted=%d sum=%u min=%d max=%d median=%d\n", is_sorted(ref, N), checksum(ref, N),
           ref[0], ref[N - 1], ref[N / 2]);

    static const struct {
        const char *name;
        int kind;
    } algos[] = {{"heap", 0}, {"shell", 1}, {"merge", 2}, {"counting", 3}, {"selection", 4}};
    for (unsigned k = 0; k < sizeof algos / sizeof algos[0]; k++) {
        memcpy(work, data, sizeof work);
        switch (algos[k].kind) {
        case 0:
            heap_sort(work, N);
            break;
        case 1:
            shell_sort(work, N);
            break;
        case 2:
            merge_sort(work, N);
            break;
        case 3:
            counting_sort(work, N, 1000);
            break;
        default:
            selection_sort(work, N);
            break;
        }
        printf("%-9s sorted=%d same=%d sum=%u\n", algos[k].name, is_sorted(work, N),
               memcmp(work, ref, sizeof ref) == 0, checksum(work, N));
    }
    /* Small and degenerate inputs. */
    int one[1] = {42}, two[2] = {2, 1}, same[5] = {7, 7, 7, 7, 7};
    heap_sort(one, 1);
    heap_sort(two, 2);
    shell_sort(same, 5);
    merge_sort(two, 2);
    printf("small: %d %d %d %d\n", one[0], two[0], two[1], same[4]);
    printf("first ten:");
    for (int i = 0; i < 10; i++)
        printf(" %d", ref[i]);
    printf("\n");
    return 0;
}

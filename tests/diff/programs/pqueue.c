/* A priority queue as a binary min-heap of structs in a growing array
   (realloc), used for Dijkstra's shortest paths on a small weighted graph
   given as an adjacency matrix, then for a k-way merge of sorted runs and
   for heap-ordered event scheduling with ties broken by sequence number. */
#include <stdio.h>
#include <stdlib.h>

struct item {
    int prio;
    int seq;
    int value;
};

struct heap {
    struct item *a;
    int n, cap;
};

static int before(const struct item *x, const struct item *y) {
    return x->prio < y->prio || (x->prio == y->prio && x->seq < y->seq);
}

static void heap_push(struct heap *h, struct item it) {
    if (h->n == h->cap) {
        h->cap = h->cap ? h->cap * 2 : 4;
        h->a = realloc(h->a, h->cap * sizeof *h->a);
    }
    int i = h->n++;
    while (i > 0) {
        int parent = (i - 1) / 2;
        if (!before(&it, &h->a[parent]))
            break;
        h->a[i] = h->a[parent];
        i = parent;
    }
    h->a[i] = it;
}

static struct item heap_pop(struct heap *h) {
    struct item top = h->a[0], last = h->a[--h->n];
    int i = 0;
    for (;;) {
        int c = 2 * i + 1;
        if (c >= h->n)
            break;
        if (c + 1 < h->n && before(&h->a[c + 1], &h->a[c]))
            c++;
        if (!before(&h->a[c], &last))
            break;
        h->a[i] = h->a[c];
        i = c;
    }
    if (h->n > 0)
        h->a[i] = last;
    return top;
}

#define V 8
#define INF 1000000

static const int graph[V][V] = {
    {0, 4, 0, 0, 0, 0, 0, 8},  {4, 0, 8, 0, 0, 0, 0, 11}, {0, 8, 0, 7, 0, 4, 0, 0},
    {0, 0, 7, 0, 9, 14, 0, 0}, {0, 0, 0, 9, 0, 10, 0, 0}, {0, 0, 4, 14, 10, 0, 2, 0},
    {0, 0, 0, 0, 0, 2, 0, 1},  {8, 11, 0, 0, 0, 0, 1, 0},
};

static void dijkstra(int src, int *dist, int *prev) {
    struct heap h = {NULL, 0, 0};
    int seq = 0;
    for (int i = 0; i < V; i++) {
        dist[i] = INF;
        prev[i] = -1;
    }
    dist[src] = 0;
    heap_push(&h, (struct item){0, seq++, src});
    while (h.n) {
        struct item it = heap_pop(&h);
        int u = it.value;
        if (it.prio > dist[u])
            continue;
        for (int v = 0; v < V; v++) {
            if (!graph[u][v])
                continue;
            int d = dist[u] + graph[u][v];
            if (d < dist[v]) {
                dist[v] = d;
                prev[v] = u;
                heap_push(&h, (struct item){d, seq++, v});
            }
        }
    }
    free(h.a);
}

int main(void) {
    int dist[V], prev[V];
    dijkstra(0, dist, prev);
    for (int v = 0; v < V; v++) {
        printf("to %d: dist %2d path", v, dist[v]);
        int path[V], len = 0;
        for (int at = v; at != -1; at = prev[at])
            path[len++] = at;
        while (len--)
            printf(" %d", path[len]);
        printf("\n");
    }

    /* k-way merge of sorted runs. */
    static const int runs[4][5] = {
        {1, 5, 9, 13, 40}, {2, 3, 30, 31, 32}, {-7, 0, 8, 8, 100}, {4, 6, 10, 12, 14}};
    int pos[4] = {0};
    struct heap h = {NULL, 0, 0};
    for (int r = 0; r < 4; r++)
        heap_push(&h, (struct item){runs[r][0], r, r});
    printf("merged:");
    while (h.n) {
        struct item it = heap_pop(&h);
        printf(" %d", it.prio);
        int r = it.value;
        if (++pos[r] < 5)
            heap_push(&h, (struct item){runs[r][pos[r]], r, r});
    }
    printf("\n");

    /* Events with equal times come out in insertion order. */
    int seq = 0;
    for (int i = 0; i < 20; i++)
        heap_push(&h, (struct item){(i * 7) % 5, seq++, i});
    printf("events:");
    while (h.n) {
        struct item it = heap_pop(&h);
        printf(" %d@%d", it.value, it.prio);
    }
    printf("\ncapacity grew to %d\n", h.cap);
    free(h.a);
    return 0;
}

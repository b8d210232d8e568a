/* Sorting: insertion sort, quicksort through qsort-style callbacks, and a
   merge sort on a linked list, each checked against the others. */
#include <stdio.h>
#include <string.h>

#define N 64

static unsigned seed = 12345u;

static unsigned next_random(void) {
    seed = seed * 1103515245u + 12345u;
    return (seed >> 16) & 0x7fff;
}

static void insertion_sort(int *a, int n) {
    for (int i = 1; i < n; i++) {
        int key = a[i];
        int j = i - 1;
        while (j >= 0 && a[j] > key) {
            a[j + 1] = a[j];
            j--;
        }
        a[j + 1] = key;
    }
}

typedef int (*compare_fn)(const void *, const void *);

static int compare_ints(const void *x, const void *y) {
    int a = *(const int *)x, b = *(const int *)y;
    return (a > b) - (a < b);
}

static void swap_bytes(char *p, char *q, size_t size) {
    while (size--) {
        char t = *p;
        *p++ = *q;
        *q++ = t;
    }
}

static void quick_sort(void *base, int n, size_t size, compare_fn cmp) {
    char *b = base;
    if (n < 2)
        return;
    char *pivot = b + (size_t)(n / 2) * size;
    swap_bytes(pivot, b + (size_t)(n - 1) * size, size);
    pivot = b + (size_t)(n - 1) * size;
    int store = 0;
    for (int i = 0; i < n - 1; i++)
        if (cmp(b + (size_t)i * size, pivot) < 0) {
            swap_bytes(b + (size_t)i * size, b + (size_t)store * size, size);
            store++;
        }
    swap_bytes(b + (size_t)store * size, pivot, size);
    quick_sort(b, store, size, cmp);
    quick_sort(b + (size_t)(store + 1) * size, n - store - 1, size, cmp);
}

struct node {
    int value;
    struct node *next;
};

static struct node *merge(struct node *a, struct node *b) {
    struct node head, *tail = &head;
    while (a && b) {
        if (a->value <= b->value) {
            tail->next = a;
            a = a->next;
        } else {
            tail->next = b;
            b = b->next;
        }
        tail = tail->next;
    }
    tail->next = a ? a : b;
    return head.next;
}

static struct node *merge_sort(struct node *list) {
    if (!list || !list->next)
        return list;
    struct node *slow = list, *fast = list->next;
    while (fast && fast->next) {
        slow = slow->next;
        fast = fast->next->next;
    }
    struct node *second = slow->next;
    slow->next = 0;
    return merge(merge_sort(list), merge_sort(second));
}

int main(void) {
    int a[N], b[N];
    struct node nodes[N];
    for (int i = 0; i < N; i++)
        a[i] = (int)(next_random() % 1000) - 500;
    memcpy(b, a, sizeof a);
    for (int i = 0; i < N; i++) {
        nodes[i].value = a[i];
        nodes[i].next = i + 1 < N ? &nodes[i + 1] : 0;
    }
    insertion_sort(a, N);
    quick_sort(b, N, sizeof b[0], compare_ints);
    struct node *list = merge_sort(&nodes[0]);
    int same = 1, i = 0;
    for (struct node *p = list; p; p = p->next, i++)
        same &= p->value == a[i] && a[i] == b[i];
    printf("sorted %d values, agree=%d, min=%d max=%d\n", N, same, a[0], a[N - 1]);
    long sum = 0;
    for (i = 0; i < N; i++)
        sum += (long)a[i] * (i + 1);
    printf("weighted sum %ld\n", sum);
    return same ? 0 : 1;
}

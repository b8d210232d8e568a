/* A binary search tree on malloc and free: insertion, lookup, deletion of
   leaves and of nodes with one and two children, in-order, pre-order and
   level-order traversals (the last with an explicit queue), height, a
   range count, a rebuild into a balanced tree from the sorted keys, and
   freeing the whole tree. */
#include <stdio.h>
#include <stdlib.h>

struct tree {
    int key;
    int count;
    struct tree *left, *right;
};

static struct tree *insert(struct tree *t, int key) {
    if (!t) {
        t = calloc(1, sizeof *t);
        t->key = key;
        t->count = 1;
        return t;
    }
    if (key < t->key)
        t->left = insert(t->left, key);
    else if (key > t->key)
        t->right = insert(t->right, key);
    else
        t->count++;
    return t;
}

static const struct tree *find(const struct tree *t, int key) {
    while (t && t->key != key)
        t = key < t->key ? t->left : t->right;
    return t;
}

static struct tree *remove_key(struct tree *t, int key) {
    if (!t)
        return NULL;
    if (key < t->key) {
        t->left = remove_key(t->left, key);
    } else if (key > t->key) {
        t->right = remove_key(t->right, key);
    } else if (!t->left || !t->right) {
        struct tree *child = t->left ? t->left : t->right;
        free(t);
        return child;
    } else {
        struct tree *succ = t->right;
        while (succ->left)
            succ = succ->left;
        t->key = succ->key;
        t->count = succ->count;
        succ->count = 1;
        t->right = remove_key(t->right, succ->key);
    }
    return t;
}

static int height(const struct tree *t) {
    if (!t)
        return 0;
    int l = height(t->left), r = height(t->right);
    return 1 + (l > r ? l : r);
}

static void in_order(const struct tree *t, int *out, int *n) {
    if (!t)
        return;
    in_order(t->left, out, n);
    out[(*n)++] = t->key;
    in_order(t->right, out, n);
}

static void pre_order(const struct tree *t) {
    if (!t)
        return;
    printf(" %d", t->key);
    pre_order(t->left);
    pre_order(t->right);
}

static void level_order(const struct tree *t) {
    const struct tree *queue[64];
    int head = 0, tail = 0;
    if (t)
        queue[tail++] = t;
    while (head < tail) {
        const struct tree *n = queue[head++];
        printf(" %d", n->key);
        if (n->left)
            queue[tail++] = n->left;
        if (n->right)
            queue[tail++] = n->right;
    }
    printf("\n");
}

static int count_range(const struct tree *t, int lo, int hi) {
    if (!t)
        return 0;
    if (t->key < lo)
        return count_range(t->right, lo, hi);
    if (t->key > hi)
        return count_range(t->left, lo, hi);
    return t->count + count_range(t->left, lo, hi) + count_range(t->right, lo, hi);
}

static struct tree *build_balanced(const int *keys, int lo, int hi) {
    if (lo > hi)
        return NULL;
    int mid = lo + (hi - lo) / 2;
    struct tree *t = calloc(1, sizeof *t);
    t->key = keys[mid];
    t->count = 1;
    t->left = build_balanced(keys, lo, mid - 1);
    t->right = build_balanced(keys, mid + 1, hi);
    return t;
}

static void destroy(struct tree *t) {
    if (!t)
        return;
    destroy(t->left);
    destroy(t->right);
    free(t);
}

int main(void) {
    struct tree *root = NULL;
    unsigned x = 7;
    for (int i = 0; i < 40; i++) {
        x = x * 1664525u + 1013904223u;
        root = insert(root, (int)(x >> 24) % 50);
    }
    int keys[64], n = 0;
    in_order(root, keys, &n);
    printf("distinct %d height %d\nin order:", n, height(root));
    for (int i = 0; i < n; i++)
        printf(" %d", keys[i]);
    printf("\npre order:");
    pre_order(root);
    printf("\nlevel order:");
    level_order(root);
    for (int k = 0; k < 50; k += 7) {
        const struct tree *f = find(root, k);
        printf("find %2d: %s", k, f ? "yes" : "no");
        if (f)
            printf(" count %d", f->count);
        printf("\n");
    }
    printf("in [10,30]: %d\n", count_range(root, 10, 30));
    int doomed[] = {keys[0], root->key, keys[n / 2], keys[n - 1], 1000};
    for (int i = 0; i < 5; i++) {
        root = remove_key(root, doomed[i]);
        printf("removed %d: height %d root %d\n", doomed[i], height(root), root->key);
    }
    n = 0;
    in_order(root, keys, &n);
    struct tree *balanced = build_balanced(keys, 0, n - 1);
    printf("balanced: %d keys height %d level order:", n, height(balanced));
    level_order(balanced);
    destroy(root);
    destroy(balanced);
    return 0;
}

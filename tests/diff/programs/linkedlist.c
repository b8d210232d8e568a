/* Linked lists on malloc and free: a singly linked list built at the head
   and the tail, reversed in place, sorted by merge sort, filtered with a
   pointer to pointer, and a doubly linked circular list with a sentinel used
   as a deque; every node freed at the end. */
#include <stdio.h>
#include <stdlib.h>

struct node {
    int value;
    struct node *next;
};

static struct node *push(struct node *head, int v) {
    struct node *n = malloc(sizeof *n);
    n->value = v;
    n->next = head;
    return n;
}

static void append(struct node **tail_link, int v) {
    while (*tail_link)
        tail_link = &(*tail_link)->next;
    *tail_link = push(NULL, v);
}

static struct node *reverse(struct node *head) {
    struct node *prev = NULL;
    while (head) {
        struct node *next = head->next;
        head->next = prev;
        prev = head;
        head = next;
    }
    return prev;
}

static struct node *merge(struct node *a, struct node *b) {
    struct node dummy, *tail = &dummy;
    dummy.next = NULL;
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
    return dummy.next;
}

static struct node *sort(struct node *head) {
    if (!head || !head->next)
        return head;
    struct node *slow = head, *fast = head->next;
    while (fast && fast->next) {
        slow = slow->next;
        fast = fast->next->next;
    }
    struct node *second = slow->next;
    slow->next = NULL;
    return merge(sort(head), sort(second));
}

static int remove_if(struct node **link, int (*pred)(int)) {
    int removed = 0;
    while (*link) {
        if (pred((*link)->value)) {
            struct node *dead = *link;
            *link = dead->next;
            free(dead);
            removed++;
        } else {
            link = &(*link)->next;
        }
    }
    return removed;
}

static int is_multiple_of_3(int v) { return v % 3 == 0; }

static void print(const char *title, const struct node *n) {
    printf("%s:", title);
    for (; n; n = n->next)
        printf(" %d", n->value);
    printf("\n");
}

static void free_list(struct node *n) {
    while (n) {
        struct node *next = n->next;
        free(n);
        n = next;
    }
}

struct dnode {
    struct dnode *prev, *next;
    long key;
};

static void insert_after(struct dnode *at, long key) {
    struct dnode *n = malloc(sizeof *n);
    n->key = key;
    n->prev = at;
    n->next = at->next;
    at->next->prev = n;
    at->next = n;
}

static long unlink_node(struct dnode *n) {
    long k = n->key;
    n->prev->next = n->next;
    n->next->prev = n->prev;
    free(n);
    return k;
}

int main(void) {
    struct node *list = NULL;
    for (int i = 0; i < 12; i++)
        list = push(list, (i * 7 + 3) % 20);
    append(&list, 99);
    append(&list, -4);
    print("built", list);
    list = reverse(list);
    print("reversed", list);
    list = sort(list);
    print("sorted", list);
    int removed = remove_if(&list, is_multiple_of_3);
    print("without multiples of 3", list);
    int len = 0;
    long sum = 0;
    for (struct node *n = list; n; n = n->next, len++)
        sum += n->value;
    printf("removed %d, length %d, sum %ld\n", removed, len, sum);
    free_list(list);

    struct dnode sentinel = {&sentinel, &sentinel, 0};
    for (long k = 1; k <= 6; k++) {
        if (k % 2)
            insert_after(&sentinel, k * 100); /* front */
        else
            insert_after(sentinel.prev, k); /* back */
    }
    printf("deque forward:");
    for (struct dnode *n = sentinel.next; n != &sentinel; n = n->next)
        printf(" %ld", n->key);
    printf("\ndeque backward:");
    for (struct dnode *n = sentinel.prev; n != &sentinel; n = n->prev)
        printf(" %ld", n->key);
    printf("\n");
    long front = unlink_node(sentinel.next), back = unlink_node(sentinel.prev);
    printf("popped front %ld back %ld\n", front, back);
    while (sentinel.next != &sentinel)
        printf("drain %ld\n", unlink_node(sentinel.next));
    return 0;
}

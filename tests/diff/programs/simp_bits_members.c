/* Member accesses at constant offsets from a pointer: plain members become
   loads at an address, but a bit field shares its word with its neighbours
   and must be read and written as the field alone. Also member addresses,
   constant addresses, the member of a struct assignment, packed members,
   members of nested structs and arrays of structs, and reads through the
   address of an object. */
#include <stddef.h>
#include <stdio.h>

struct rec {
    unsigned char tag;
    unsigned kind : 3;
    signed level : 5;
    unsigned wide : 20;
    int value;
    short pair[2];
};

struct outer {
    int head;
    struct rec inner;
    struct rec list[3];
};

struct __attribute__((packed)) tight {
    char c;
    int i;
    short s;
};

static unsigned mix;
static void out(const char *what, long v) {
    mix = mix * 33u + (unsigned)v;
    printf("%s %ld\n", what, v);
}

static void fill(struct rec *r, int seed) {
    r->tag = (unsigned char)(seed * 37);
    r->kind = (unsigned)seed;
    r->level = seed - 9;
    r->wide = (unsigned)seed * 40503u;
    r->value = seed * 1000 - 7;
    r->pair[0] = (short)(seed << 9);
    r->pair[1] = (short)-seed;
}

/* Neighbouring fields in one word: each read must see its own bits only. */
static void fields(struct rec *p) {
    out("kind+1", (p + 1)->kind);
    out("level+2", (p + 2)->level);
    out("wide+1", (*(p + 1)).wide);
    out("kind[2]", p[2].kind & 7);
    out("level[1]", p[1].level & 0x3f);
    (p + 2)->kind = 9;
    (p + 1)->level = -3;
    (*(p + 2)).wide = 0xfffff;
    out("after", (long)(p + 2)->kind * 1000 + (p + 1)->level * 10 + (p + 2)->tag);
    out("wide-after", (p + 2)->wide + (p + 2)->value);
}

static void plain(struct rec *p, struct outer *o) {
    out("value+1", (p + 1)->value);
    out("tag+2", (*(p + 2)).tag);
    out("pair+1", (p + 1)->pair[1]);
    out("inner", o->inner.value + o->list[2].value + (o + 0)->list[1].pair[0]);
    out("nested-field", o->list[1].level + o->inner.kind);
    int *vp = &(p + 2)->value;
    short *sp = (p + 1)->pair;
    out("addr", *vp + sp[1]);
    out("addr-diff", (char *)&o->list[2].value - (char *)o);
    out("offsetof", (long)offsetof(struct outer, list[1].pair[1]));
    out("member-addr", (long)((char *)&((struct outer *)0)->inner.value - (char *)0));
}

static void through_address(struct rec *p) {
    struct rec local = *p;
    int x = 41;
    out("star-amp", *&x + (*&local).value + (&local)->tag);
    out("amp-star", (&*p)->value + *&*&x);
    out("string", "member"[(p->kind) % 6] + *("abc" + 1));
}

static struct rec global_rec;
static void assignment(struct rec *p) {
    struct rec a;
    out("asg-name", (a = p[1]).value);
    out("asg-ptr", (p[0] = a).level);
    out("asg-global", (global_rec = p[2]).wide);
    out("asg-chain", (*(p + 1) = global_rec).kind + a.tag);
}

static void packed(void) {
    struct tight t[2] = {{1, 0x12345678, -2}, {3, -5, 7}};
    struct tight *q = t;
    out("packed-i", (q + 1)->i + q->i);
    out("packed-s", (*(q + 1)).s - q->s);
    int *ip = &(q + 1)->i;
    (void)ip;
    out("packed-size", (long)sizeof t);
}

int main(void) {
    struct rec recs[3];
    struct outer o;
    for (int i = 0; i < 3; i++) {
        fill(&recs[i], i * 5 + 3);
        fill(&o.list[i], i + 11);
    }
    o.head = 5;
    fill(&o.inner, 17);
    fields(recs);
    plain(recs, &o);
    through_address(recs + 1);
    assignment(recs);
    packed();
    printf("mix %u\n", mix);
    return 0;
}

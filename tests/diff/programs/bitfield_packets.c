/* Bit-fields as protocol headers: signed and unsigned fields of widths 1 to
   24 that cross byte boundaries, zero-width fields forcing alignment, an
   unsigned char bit-field, fields read, written, incremented and compound-
   assigned (wrapping to their width), signed fields sign-extending, fields
   of a full word and of long long type, a header serialized to bytes by
   shifting and parsed back, and bit-fields in a union with the raw word. */
#include <stdio.h>
#include <string.h>

struct ipv4 {
    unsigned version : 4;
    unsigned ihl : 4;
    unsigned dscp : 6;
    unsigned ecn : 2;
    unsigned length : 16;
    unsigned id : 16;
    unsigned flags : 3;
    unsigned frag_offset : 13;
    unsigned ttl : 8;
    unsigned protocol : 8;
    unsigned checksum : 16;
};

struct odd {
    signed a : 3;
    unsigned b : 7; /* crosses into the second byte */
    signed c : 11;  /* crosses into the third byte */
    unsigned : 0;   /* next field starts a new unit */
    unsigned d : 24;
    signed e : 5;
    unsigned char f : 2;
    _Bool g : 1;
};

/* Fields of a full word and of long long type (as GCC and Clang allow). */
struct wide {
    unsigned full : 32;
    unsigned long long big : 40;
    signed long long sbig : 20;
    unsigned char c : 8;
};

static struct wide wide_init = {0xffffffffu, 0xabcdef1234ull, -5, 200};

union raw {
    unsigned word;
    struct {
        unsigned low : 12;
        signed mid : 12;
        unsigned high : 8;
    } f;
};

static unsigned ones_complement_sum(const unsigned char *p, int n) {
    unsigned sum = 0;
    for (int i = 0; i + 1 < n; i += 2)
        sum += (unsigned)p[i] << 8 | p[i + 1];
    while (sum >> 16)
        sum = (sum & 0xffff) + (sum >> 16);
    return ~sum & 0xffff;
}

static void serialize(const struct ipv4 *h, unsigned char *out) {
    out[0] = (unsigned char)(h->version << 4 | h->ihl);
    out[1] = (unsigned char)(h->dscp << 2 | h->ecn);
    out[2] = (unsigned char)(h->length >> 8);
    out[3] = (unsigned char)h->length;
    out[4] = (unsigned char)(h->id >> 8);
    out[5] = (unsigned char)h->id;
    out[6] = (unsigned char)(h->flags << 5 | h->frag_offset >> 8);
    out[7] = (unsigned char)h->frag_offset;
    out[8] = (unsigned char)h->ttl;
    out[9] = (unsigned char)h->protocol;
    out[10] = (unsigned char)(h->checksum >> 8);
    out[11] = (unsigned char)h->checksum;
}

static void parse(const unsigned char *in, struct ipv4 *h) {
    h->version = in[0] >> 4;
    h->ihl = in[0] & 15;
    h->dscp = in[1] >> 2;
    h->ecn = in[1];
    h->length = in[2] << 8 | in[3];
    h->id = in[4] << 8 | in[5];
    h->flags = in[6] >> 5;
    h->frag_offset = (in[6] & 31) << 8 | in[7];
    h->ttl = in[8];
    h->protocol = in[9];
    h->checksum = in[10] << 8 | in[11];
}

int main(void) {
    struct ipv4 h;
    memset(&h, 0, sizeof h);
    h.version = 4;
    h.ihl = 5;
    h.dscp = 46;
    int seven = 7;
    h.ecn = seven; /* wraps to 3 */
    h.length = 1500;
    h.id = 0xbeef;
    h.flags = 2;
    h.frag_offset = 8191;
    h.ttl = 64;
    h.protocol = 17;
    unsigned char bytes[12];
    serialize(&h, bytes);
    h.checksum = ones_complement_sum(bytes, 12);
    serialize(&h, bytes);
    printf("header:");
    for (int i = 0; i < 12; i++)
        printf(" %02x", bytes[i]);
    printf("\nverify %04x size %u\n", ones_complement_sum(bytes, 12), (unsigned)sizeof h);
    struct ipv4 back;
    memset(&back, 0, sizeof back);
    parse(bytes, &back);
    printf(
        "parsed: v%u ihl %u dscp %u ecn %u len %u id %x flags %u frag %u ttl %u proto %u sum %x\n",
        back.version, back.ihl, back.dscp, back.ecn, back.length, back.id, back.flags,
        back.frag_offset, back.ttl, back.protocol, back.checksum);
    back.ttl--;
    back.ttl -= 70; /* wraps modulo 256 */
    back.frag_offset += 2;
    back.length *= 50;
    back.flags ^= 5;
    back.id >>= 4;
    printf("modified: ttl %u frag %u len %u flags %u id %x\n", back.ttl, back.frag_offset,
           back.length, back.flags, back.id);

    struct odd o;
    memset(&o, 0, sizeof o);
    o.a = -4;
    o.b = 100;
    o.c = -1000;
    o.d = 0xabcdef;
    o.e = -16;
    o.f = 3;
    o.g = 1;
    printf("odd: %d %u %d %x %d %u %d size %u\n", o.a, o.b, o.c, o.d, o.e, o.f, o.g,
           (unsigned)sizeof o);
    o.a += 5;    /* 1 */
    o.b += 30;   /* 130 -> 2 */
    o.c -= 1100; /* -2100 -> wraps in 11 bits (implementation-defined) */
    o.e++;
    o.f++;
    o.g = 5;
    printf("odd after: %d %u %d %d %u %d\n", o.a, o.b, o.c, o.e, o.f, o.g);
    unsigned char image[sizeof o];
    memcpy(image, &o, sizeof o);
    printf("odd bytes:");
    for (unsigned i = 0; i < 8 && i < sizeof o; i++)
        printf(" %02x", image[i]);
    printf("\n");

    union raw r;
    r.word = 0x12fff345u;
    printf("raw: low %03x mid %d high %02x\n", r.f.low, r.f.mid, r.f.high);
    r.f.mid = -2;
    r.f.low = 0xabc;
    printf("raw word %08x\n", r.word);
    struct wide w = wide_init;
    w.big += 0x10000000000ull - 1; /* wraps in 40 bits */
    w.sbig *= 3;
    w.full++;
    w.c += 100;
    printf("wide: %x %llx %lld %u -> %x %llx %lld %u size %u\n", wide_init.full,
           (unsigned long long)wide_init.big, (long long)wide_init.sbig, wide_init.c, w.full,
           (unsigned long long)w.big, (long long)w.sbig, w.c, (unsigned)sizeof w);
    int sum = 0;
    for (int i = -8; i < 8; i++) {
        struct odd t = {0};
        t.a = i; /* out-of-range values wrap (implementation-defined) */
        sum += t.a * (i + 9);
    }
    printf("wrap sum %d\n", sum);
    return 0;
}

/* SHA-256 over messages of several lengths (empty, "abc", the two-block
   test vector, 1000 bytes and lengths around the padding boundary),
   exercising 32-bit rotations, shifts, unsigned wrap-around addition,
   big-endian packing of words and a 64-bit bit count, checked against
   known digests. */
#include <stdio.h>
#include <string.h>

static const unsigned k[64] = {
    0x428a2f98u, 0x71374491u, 0xb5c0fbcfu, 0xe9b5dba5u, 0x3956c25bu, 0x59f111f1u, 0x923f82a4u,
    0xab1c5ed5u, 0xd807aa98u, 0x12835b01u, 0x243185beu, 0x550c7dc3u, 0x72be5d74u, 0x80deb1feu,
    0x9bdc06a7u, 0xc19bf174u, 0xe49b69c1u, 0xefbe4786u, 0x0fc19dc6u, 0x240ca1ccu, 0x2de92c6fu,
    0x4a7484aau, 0x5cb0a9dcu, 0x76f988dau, 0x983e5152u, 0xa831c66du, 0xb00327c8u, 0xbf597fc7u,
    0xc6e00bf3u, 0xd5a79147u, 0x06ca6351u, 0x14292967u, 0x27b70a85u, 0x2e1b2138u, 0x4d2c6dfcu,
    0x53380d13u, 0x650a7354u, 0x766a0abbu, 0x81c2c92eu, 0x92722c85u, 0xa2bfe8a1u, 0xa81a664bu,
    0xc24b8b70u, 0xc76c51a3u, 0xd192e819u, 0xd6990624u, 0xf40e3585u, 0x106aa070u, 0x19a4c116u,
    0x1e376c08u, 0x2748774cu, 0x34b0bcb5u, 0x391c0cb3u, 0x4ed8aa4au, 0x5b9cca4fu, 0x682e6ff3u,
    0x748f82eeu, 0x78a5636fu, 0x84c87814u, 0x8cc70208u, 0x90befffau, 0xa4506cebu, 0xbef9a3f7u,
    0xc67178f2u};

struct sha256 {
    unsigned h[8];
    unsigned char block[64];
    unsigned used;
    unsigned long long bits;
};

static unsigned rotr(unsigned x, int n) { return x >> n | x << (32 - n); }

static void compress(struct sha256 *s) {
    unsigned w[64];
    for (int i = 0; i < 16; i++)
        w[i] = (unsigned)s->block[4 * i] << 24 | (unsigned)s->block[4 * i + 1] << 16 |
               (unsigned)s->block[4 * i + 2] << 8 | s->block[4 * i + 3];
    for (int i = 16; i < 64; i++) {
        unsigned s0 = rotr(w[i - 15], 7) ^ rotr(w[i - 15], 18) ^ (w[i - 15] >> 3);
        unsigned s1 = rotr(w[i - 2], 17) ^ rotr(w[i - 2], 19) ^ (w[i - 2] >> 10);
        w[i] = w[i - 16] + s0 + w[i - 7] + s1;
    }
    unsigned a = s->h[0], b = s->h[1], c = s->h[2], d = s->h[3];
    unsigned e = s->h[4], f = s->h[5], g = s->h[6], h = s->h[7];
    for (int i = 0; i < 64; i++) {
        unsigned t1 =
            h + (rotr(e, 6) ^ rotr(e, 11) ^ rotr(e, 25)) + ((e & f) ^ (~e & g)) + k[i] + w[i];
        unsigned t2 = (rotr(a, 2) ^ rotr(a, 13) ^ rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    s->h[0] += a;
    s->h[1] += b;
    s->h[2] += c;
    s->h[3] += d;
    s->h[4] += e;
    s->h[5] += f;
    s->h[6] += g;
    s->h[7] += h;
}

static void init(struct sha256 *s) {
    static const unsigned iv[8] = {0x6a09e667u, 0xbb67ae85u, 0x3c6ef372u, 0xa54ff53au,
                                   0x510e527fu, 0x9b05688cu, 0x1f83d9abu, 0x5be0cd19u};
    memcpy(s->h, iv, sizeof iv);
    s->used = 0;
    s->bits = 0;
}

static void update(struct sha256 *s, const unsigned char *p, size_t n) {
    while (n--) {
        s->block[s->used++] = *p++;
        s->bits += 8;
        if (s->used == 64) {
            compress(s);
            s->used = 0;
        }
    }
}

static void finish(struct sha256 *s, char *hex) {
    unsigned long long bits = s->bits;
    unsigned char pad = 0x80;
    update(s, &pad, 1);
    pad = 0;
    while (s->used != 56)
        update(s, &pad, 1);
    unsigned char len[8];
    for (int i = 0; i < 8; i++)
        len[i] = (unsigned char)(bits >> (56 - 8 * i));
    update(s, len, 8);
    for (int i = 0; i < 8; i++)
        sprintf(hex + 8 * i, "%08x", s->h[i]);
}

static void digest(const char *label, const void *data, size_t n, const char *expect) {
    struct sha256 s;
    char hex[65];
    init(&s);
    update(&s, data, n);
    finish(&s, hex);
    printf("%-10s %s %s\n", label, hex, expect ? (strcmp(hex, expect) ? "MISMATCH" : "ok") : "");
}

int main(void) {
    digest("empty", "", 0, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    digest("abc", "abc", 3, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    const char *two = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
    digest("two-block", two, strlen(two),
           "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    static unsigned char bytes[1000];
    for (int i = 0; i < 1000; i++)
        bytes[i] = (unsigned char)(i * 7 + (i >> 3));
    digest("1000 bytes", bytes, sizeof bytes, NULL);
    for (size_t n = 54; n <= 57; n++)
        digest("boundary", bytes, n, NULL);
    return 0;
}

/* Compression round trips: PackBits-style run-length coding and an LZ77
   coder with a sliding window (offset/length pairs and literals in a
   flag-byte format), each decoding back to the input; sizes and a checksum
   of the compressed bytes are printed. Buffers are unsigned char arrays and
   the code leans on memcmp, memmove and pointer arithmetic. */
#include <stdio.h>
#include <string.h>

static int rle_encode(const unsigned char *in, int n, unsigned char *out) {
    int o = 0, i = 0;
    while (i < n) {
        int run = 1;
        while (i + run < n && run < 128 && in[i + run] == in[i])
            run++;
        if (run >= 3) {
            out[o++] = (unsigned char)(257 - run); /* -(run - 1) as a byte */
            out[o++] = in[i];
            i += run;
            continue;
        }
        int start = i, lit = 0;
        while (i < n && lit < 128) {
            if (i + 2 < n && in[i] == in[i + 1] && in[i] == in[i + 2])
                break;
            i++;
            lit++;
        }
        out[o++] = (unsigned char)(lit - 1);
        memcpy(out + o, in + start, lit);
        o += lit;
    }
    return o;
}

static int rle_decode(const unsigned char *in, int n, unsigned char *out) {
    int o = 0;
    for (const unsigned char *p = in; p < in + n;) {
        signed char h = (signed char)*p++;
        if (h >= 0) {
            memcpy(out + o, p, h + 1);
            o += h + 1;
            p += h + 1;
        } else {
            memset(out + o, *p++, 1 - h);
            o += 1 - h;
        }
    }
    return o;
}

#define WINDOW 255
#define MIN_MATCH 3
#define MAX_MATCH 18

/* Groups of eight items behind a flag byte: bit set = (offset, length-3 | ...). */
static int lz_encode(const unsigned char *in, int n, unsigned char *out) {
    int o = 0, i = 0;
    while (i < n) {
        int flag_at = o++;
        unsigned char flags = 0;
        for (int bit = 0; bit < 8 && i < n; bit++) {
            int best_len = 0, best_off = 0;
            int from = i > WINDOW ? i - WINDOW : 0;
            for (int j = from; j < i; j++) {
                int len = 0;
                while (len < MAX_MATCH && i + len < n && in[j + len] == in[i + len])
                    len++;
                if (len > best_len) {
                    best_len = len;
                    best_off = i - j;
                }
            }
            if (best_len >= MIN_MATCH) {
                flags |= (unsigned char)(1u << bit);
                out[o++] = (unsigned char)best_off;
                out[o++] = (unsigned char)(best_len - MIN_MATCH);
                i += best_len;
            } else {
                out[o++] = in[i++];
            }
        }
        out[flag_at] = flags;
    }
    return o;
}

static int lz_decode(const unsigned char *in, int n, unsigned char *out) {
    int o = 0, i = 0;
    while (i < n) {
        unsigned flags = in[i++];
        for (int bit = 0; bit < 8 && i < n; bit++, flags >>= 1) {
            if (flags & 1) {
                int off = in[i], len = in[i + 1] + MIN_MATCH;
                i += 2;
                /* Overlapping copies repeat the pattern: byte by byte. */
                for (int k = 0; k < len; k++, o++)
                    out[o] = out[o - off];
            } else {
                out[o++] = in[i++];
            }
        }
    }
    return o;
}

static unsigned adler(const unsigned char *p, int n) {
    unsigned a = 1, b = 0;
    while (n--) {
        a = (a + *p++) % 65521u;
        b = (b + a) % 65521u;
    }
    return b << 16 | a;
}

static void trial(const char *name, const unsigned char *data, int n) {
    static unsigned char packed[1024], unpacked[1024];
    int p = rle_encode(data, n, packed);
    int u = rle_decode(packed, p, unpacked);
    printf("%-8s n=%3d rle=%3d (%08x) ok=%d", name, n, p, adler(packed, p),
           u == n && memcmp(data, unpacked, n) == 0);
    memset(unpacked, 0, sizeof unpacked);
    p = lz_encode(data, n, packed);
    u = lz_decode(packed, p, unpacked);
    printf("  lz=%3d (%08x) ok=%d\n", p, adler(packed, p),
           u == n && memcmp(data, unpacked, n) == 0);
}

int main(void) {
    static unsigned char buf[400];
    const char *text = "abracadabra abracadabra abracadabra, said the magician to the magician";
    trial("text", (const unsigned char *)text, (int)strlen(text));
    memset(buf, 'z', 200);
    trial("runs", buf, 200);
    for (int i = 0; i < 300; i++)
        buf[i] = (unsigned char)(i * i * 31 + i / 7);
    trial("noise", buf, 300);
    for (int i = 0; i < 300; i++)
        buf[i] = (unsigned char)((i / 10) % 3 ? 'a' + i % 4 : '-');
    trial("mixed", buf, 300);
    trial("empty", buf, 0);
    trial("one", (const unsigned char *)"x", 1);
    /* memmove on overlapping ranges inside one buffer. */
    memcpy(buf, "0123456789", 10);
    memmove(buf + 2, buf, 6);
    memmove(buf + 10, buf + 11, 0);
    printf("memmove right: %.10s\n", (const char *)buf);
    memmove(buf, buf + 3, 7);
    printf("memmove left: %.10s\n", (const char *)buf);
    return 0;
}

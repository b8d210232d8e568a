/* Base64 encoding and decoding with a lookup table and a reverse table
   built at run time, padding for every remainder, rejection of bad input,
   and round trips over binary data produced by an LCG; also hexadecimal
   dumps of the decoded bytes. */
#include <stdio.h>
#include <string.h>

static const char alphabet[65] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static signed char reverse[256];

static void init_reverse(void) {
    memset(reverse, -1, sizeof reverse);
    for (int i = 0; i < 64; i++)
        reverse[(unsigned char)alphabet[i]] = (signed char)i;
}

static size_t encode(const unsigned char *in, size_t n, char *out) {
    size_t o = 0, i;
    for (i = 0; i + 2 < n; i += 3) {
        unsigned v = (unsigned)in[i] << 16 | (unsigned)in[i + 1] << 8 | in[i + 2];
        out[o++] = alphabet[v >> 18];
        out[o++] = alphabet[(v >> 12) & 63];
        out[o++] = alphabet[(v >> 6) & 63];
        out[o++] = alphabet[v & 63];
    }
    if (i < n) {
        unsigned v = (unsigned)in[i] << 16;
        if (i + 1 < n)
            v |= (unsigned)in[i + 1] << 8;
        out[o++] = alphabet[v >> 18];
        out[o++] = alphabet[(v >> 12) & 63];
        out[o++] = i + 1 < n ? alphabet[(v >> 6) & 63] : '=';
        out[o++] = '=';
    }
    out[o] = '\0';
    return o;
}

/* Returns the number of bytes, or -1 for malformed input. */
static int decode(const char *in, unsigned char *out) {
    size_t n = strlen(in);
    if (n % 4)
        return -1;
    int o = 0;
    for (size_t i = 0; i < n; i += 4) {
        int pad = 0;
        unsigned v = 0;
        for (int k = 0; k < 4; k++) {
            unsigned char c = (unsigned char)in[i + k];
            int d;
            if (c == '=' && i + 4 == n && k >= 2) {
                pad++;
                d = 0;
            } else {
                if (pad)
                    return -1;
                d = reverse[c];
                if (d < 0)
                    return -1;
            }
            v = v << 6 | (unsigned)d;
        }
        out[o++] = (unsigned char)(v >> 16);
        if (pad < 2)
            out[o++] = (unsigned char)(v >> 8);
        if (pad < 1)
            out[o++] = (unsigned char)v;
    }
    return o;
}

int main(void) {
    init_reverse();
    static const char *texts[] = {"",     "f",     "fo",     "foo",
                                  "foob", "fooba", "foobar", "Many hands make light work."};
    char enc[256];
    unsigned char dec[256];
    for (int i = 0; i < 8; i++) {
        size_t len = encode((const unsigned char *)texts[i], strlen(texts[i]), enc);
        int back = decode(enc, dec);
        printf("\"%s\" -> \"%s\" (%u) -> %d bytes, same=%d\n", texts[i], enc, (unsigned)len, back,
               back == (int)strlen(texts[i]) && memcmp(dec, texts[i], back) == 0);
    }
    unsigned seed = 99;
    unsigned char bin[100];
    for (int n = 95; n <= 100; n++) {
        for (int i = 0; i < n; i++) {
            seed = seed * 69069u + 1u;
            bin[i] = (unsigned char)(seed >> 24);
        }
        size_t len = encode(bin, (size_t)n, enc);
        int back = decode(enc, dec);
        printf("binary %d: %u chars, tail %s, round trip %d\n", n, (unsigned)len, enc + len - 8,
               back == n && memcmp(bin, dec, (size_t)n) == 0);
    }
    static const char *bad[] = {"abc", "ab=c", "a===", "ab!d", "====", "QQ==", "QUI=", "QUJD"};
    for (int i = 0; i < 8; i++) {
        int r = decode(bad[i], dec);
        printf("decode(\"%s\") = %d", bad[i], r);
        for (int k = 0; k < r; k++)
            printf(" %02x", dec[k]);
        printf("\n");
    }
    return 0;
}

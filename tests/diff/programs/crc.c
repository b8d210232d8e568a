/* CRC-32 (table driven and bitwise), CRC-16/CCITT and Adler-32 of a few
   strings; the two CRC-32 forms must agree. */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

static uint32_t crc_table[256];

static void make_table(void) {
    for (uint32_t n = 0; n < 256; n++) {
        uint32_t c = n;
        for (int k = 0; k < 8; k++)
            c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        crc_table[n] = c;
    }
}

static uint32_t crc32_table(const unsigned char *p, size_t len) {
    uint32_t crc = 0xFFFFFFFFu;
    while (len--)
        crc = crc_table[(crc ^ *p++) & 0xFF] ^ (crc >> 8);
    return crc ^ 0xFFFFFFFFu;
}

static uint32_t crc32_bitwise(const unsigned char *p, size_t len) {
    uint32_t crc = ~0u;
    for (size_t i = 0; i < len; i++) {
        crc ^= p[i];
        for (int k = 0; k < 8; k++) {
            uint32_t mask = -(crc & 1);
            crc = (crc >> 1) ^ (0xEDB88320u & mask);
        }
    }
    return ~crc;
}

static uint16_t crc16_ccitt(const unsigned char *p, size_t len) {
    uint16_t crc = 0xFFFF;
    while (len-- > 0) {
        crc ^= (uint16_t)(*p++ << 8);
        for (int k = 0; k < 8; k++)
            crc = crc & 0x8000 ? (uint16_t)((crc << 1) ^ 0x1021) : (uint16_t)(crc << 1);
    }
    return crc;
}

static uint32_t adler32(const unsigned char *p, size_t len) {
    uint32_t a = 1, b = 0;
    for (size_t i = 0; i < len; i++) {
        a = (a + p[i]) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

static const char *const inputs[] = {
    "", "a", "abc", "123456789", "The quick brown fox jumps over the lazy dog",
};

int main(void) {
    int bad = 0;
    make_table();
    for (unsigned i = 0; i < sizeof inputs / sizeof inputs[0]; i++) {
        const unsigned char *s = (const unsigned char *)inputs[i];
        size_t n = strlen(inputs[i]);
        uint32_t t = crc32_table(s, n), b = crc32_bitwise(s, n);
        bad += t != b;
        printf("%-12.12s crc32=%08x crc16=%04x adler=%08x\n", inputs[i], (unsigned)t,
               (unsigned)crc16_ccitt(s, n), (unsigned)adler32(s, n));
    }
    return bad;
}

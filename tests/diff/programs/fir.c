/* FIR filtering: a 16-tap low-pass filter in Q15 fixed point with a
   circular delay line, 32-bit accumulation, rounding and saturation to
   16 bits, next to the same filter in float and double, on a synthetic
   signal of square and triangle waves. */
#include <stdio.h>

#define TAPS 16
#define SAMPLES 96

static const short coeffs_q15[TAPS] = {-120, -310, -280, 420,  1850, 3900, 5600, 6330,
                                       6330, 5600, 3900, 1850, 420,  -280, -310, -120};

struct fir_q15 {
    short delay[TAPS];
    unsigned pos;
};

static short saturate16(int v) {
    if (v > 32767)
        return 32767;
    if (v < -32768)
        return -32768;
    return (short)v;
}

static short fir_q15_step(struct fir_q15 *f, short in) {
    f->delay[f->pos] = in;
    int acc = 1 << 14; /* rounding */
    unsigned idx = f->pos;
    for (int k = 0; k < TAPS; k++) {
        acc += coeffs_q15[k] * f->delay[idx];
        idx = idx == 0 ? TAPS - 1 : idx - 1;
    }
    f->pos = (f->pos + 1) % TAPS;
    return saturate16(acc >> 15);
}

static float fir_float(const float *x, int n, int i) {
    float acc = 0.0f;
    for (int k = 0; k < TAPS; k++)
        if (i - k >= 0 && i - k < n)
            acc += (coeffs_q15[k] / 32768.0f) * x[i - k];
    return acc;
}

static double fir_double(const double *x, int n, int i) {
    double acc = 0.0;
    for (int k = 0; k < TAPS; k++)
        if (i - k >= 0 && i - k < n)
            acc += (coeffs_q15[k] / 32768.0) * x[i - k];
    return acc;
}

int main(void) {
    short in[SAMPLES], out[SAMPLES];
    float xf[SAMPLES];
    double xd[SAMPLES];
    for (int i = 0; i < SAMPLES; i++) {
        int square = (i / 8) % 2 ? 30000 : -30000;
        int tri = (i % 24) < 12 ? (i % 24) * 1000 : (24 - i % 24) * 1000;
        in[i] = saturate16(square + tri);
        xf[i] = in[i];
        xd[i] = in[i];
    }
    struct fir_q15 f = {{0}, 0};
    long long energy = 0;
    int clipped = 0;
    for (int i = 0; i < SAMPLES; i++) {
        out[i] = fir_q15_step(&f, in[i]);
        energy += (long long)out[i] * out[i];
        if (out[i] == 32767 || out[i] == -32768)
            clipped++;
    }
    printf("energy=%lld clipped=%d\n", energy, clipped);
    int sum_gain = 0;
    for (int k = 0; k < TAPS; k++)
        sum_gain += coeffs_q15[k];
    printf("dc gain q15=%d (%.6f)\n", sum_gain, sum_gain / 32768.0);
    int max_err = 0;
    for (int i = 0; i < SAMPLES; i += 6) {
        float yf = fir_float(xf, SAMPLES, i);
        double yd = fir_double(xd, SAMPLES, i);
        int err = out[i] - (int)(yd >= 0 ? yd + 0.5 : yd - 0.5);
        if (err < 0)
            err = -err;
        if (err > max_err)
            max_err = err;
        printf("%3d in=%6d q15=%6d float=%11.3f double=%13.5f\n", i, in[i], out[i], yf, yd);
    }
    printf("max q15 error vs double: %d\n", max_err);
    return 0;
}

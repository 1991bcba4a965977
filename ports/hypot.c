/* hypot as the C library of Linux rounds it on a PC: the square root of the sum of squares,
   corrected once (C. F. Borges, An improved algorithm for hypot(a,b), ACM Transactions on
   Mathematical Software 47, 2021). That of musl, of Windows and of processors that multiply and add
   in one step differs in the last digit. The eigenanalyses of GSL call it, and all machines are to
   give the same digits. */

#include <math.h>

/* x >= y > 0, whose squares neither overflow nor vanish. */
static double Corrected(double x, double y) {
    double h = sqrt(x * x + y * y);
    double t1, t2;
    if (h <= 2 * y) {
        const double delta = h - y;
        t1 = x * (2 * delta - x);
        t2 = (delta - 2 * (x - y)) * delta;
    } else {
        const double delta = h - x;
        t1 = 2 * delta * (x - 2 * y);
        t2 = (4 * delta - y) * y + delta * delta;
    }
    h -= (t1 + t2) / (2 * h);
    return h;
}

double hypot(double a, double b) {
    if (isinf(a) || isinf(b)) return INFINITY;
    if (isnan(a) || isnan(b)) return NAN;
    const double x = fmax(fabs(a), fabs(b));
    const double y = fmin(fabs(a), fabs(b));
    const double large = 0x1p511, tiny = 0x1p-459, scale = 0x1p-600, negligible = 0x1p-54;
    if (x > large) {
        if (y <= x * negligible) return x + y;
        return Corrected(x * scale, y * scale) / scale;
    }
    if (y < tiny) {
        if (x >= y / negligible) return x + y;
        return y == 0 ? x : Corrected(x / scale, y / scale) * scale;
    }
    if (y <= x * negligible) return x + y;
    return Corrected(x, y);
}

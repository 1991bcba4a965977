#include "nrutilMX/nrutilMX.h"

namespace {

template <class T>
void Ranks(unsigned long n, T* w, T* s) {
    *s = 0;
    unsigned long end = 0;  // one past the tie group that starts at j
    for (unsigned long j = 1; j <= n; j = end) {
        end = j + 1;
        while (end <= n && w[end] == w[j]) end++;
        const T rank = static_cast<T>(0.5 * static_cast<double>(j + end - 1));
        for (unsigned long k = j; k < end; k++) w[k] = rank;
        const T tied = static_cast<T>(end - j);
        *s += tied * tied * tied - tied;
    }
}

}  // namespace

void crank(unsigned long n, float* w, float* s) {
    Ranks(n, w, s);
}
void crank(unsigned long n, double* w, double* s) {
    Ranks(n, w, s);
}

#include <memory>
#include <new>
#include <utility>

#include "nrutilMX/nrutilMX.h"

namespace {

constexpr unsigned long kShort = 7;   // pieces of at most this length are sorted by insertion
constexpr unsigned long kStack = 50;  // entries of the stack of pieces, two for each

template <class T>
struct Pairs {
    T* arr;
    T* brr;

    void Swap(unsigned long i, unsigned long j) const {
        std::swap(arr[i], arr[j]);
        std::swap(brr[i], brr[j]);
    }
};

template <class T>
void InsertionSort(Pairs<T> pairs, unsigned long l, unsigned long ir) {
    const auto [arr, brr] = pairs;
    for (unsigned long j = l + 1; j <= ir; j++) {
        const T a = arr[j];
        const T b = brr[j];
        unsigned long i = j;
        for (; i > l && !(arr[i - 1] <= a); i--) {
            arr[i] = arr[i - 1];
            brr[i] = brr[i - 1];
        }
        arr[i] = a;
        brr[i] = b;
    }
}

/// Parts l..ir around the median of arr[l], arr[l+1], arr[ir], with the middle element brought to
/// l+1 before. Returns where the two pieces meet: l..left-1 and right..ir remain to be sorted.
///
/// The scans need no bounds, with NaN neither: a comparison that fails stops them, and neither is
/// arr[ir] ever less than the pivot nor arr[l+1], the pivot, greater than itself.
template <class T>
std::pair<unsigned long, unsigned long> Partition(Pairs<T> pairs, unsigned long l,
                                                  unsigned long ir) {
    const auto [arr, brr] = pairs;
    pairs.Swap((l + ir) >> 1, l + 1);
    if (arr[l] > arr[ir]) pairs.Swap(l, ir);
    if (arr[l + 1] > arr[ir]) pairs.Swap(l + 1, ir);
    if (arr[l] > arr[l + 1]) pairs.Swap(l, l + 1);
    const T a = arr[l + 1];
    const T b = brr[l + 1];
    unsigned long i = l + 1;
    unsigned long j = ir;
    for (;;) {
        do i++;
        while (arr[i] < a);
        do j--;
        while (arr[j] > a);
        if (j < i) break;
        pairs.Swap(i, j);
    }
    arr[l + 1] = arr[j];
    arr[j] = a;
    brr[l + 1] = brr[j];
    brr[j] = b;
    return {j, i};
}

template <class T>
void SortPairs(unsigned long n, Pairs<T> pairs) {
    if (n < 2) return;
    const std::unique_ptr<unsigned long[]> stack(new (std::nothrow) unsigned long[kStack + 1]);
    if (stack == nullptr) nrerror("allocation failure in ivector()");
    unsigned long top = 0;
    unsigned long l = 1;
    unsigned long ir = n;
    for (;;) {
        if (ir - l < kShort) {
            InsertionSort(pairs, l, ir);
            if (top == 0) return;
            ir = stack[top];
            l = stack[top - 1];
            top -= 2;
            continue;
        }
        const auto [left, right] = Partition(pairs, l, ir);
        top += 2;
        if (top > kStack) nrerror("NSTACK too small in sort2.");
        if (ir - right + 1 >= left - l) {  // the longer piece waits
            stack[top] = ir;
            stack[top - 1] = right;
            ir = left - 1;
        } else {
            stack[top] = left - 1;
            stack[top - 1] = l;
            l = right;
        }
    }
}

}  // namespace

void sort2(unsigned long n, float* arr, float* brr) {
    SortPairs<float>(n, {arr, brr});
}
void sort2(unsigned long n, double* arr, double* brr) {
    SortPairs<double>(n, {arr, brr});
}

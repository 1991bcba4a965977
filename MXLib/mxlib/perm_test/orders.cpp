#include "mxlib/perm_test/orders.h"

bool IsLargeTable(int n) {
    constexpr std::ptrdiff_t kLarge = 1 << 19;  // cells, 4 MB
    return static_cast<std::ptrdiff_t>(n) * n > kLarge;
}

int OrdersTogether(int n) {
    return IsLargeTable(n) ? 8 : 2;
}

Orders MakeOrders(int n) {
    const int most = OrdersTogether(n);
    return {n, 0, nullptr, ScopedMatrix<int>(most, n), ScopedMatrix<int>(most, n)};
}

void TakeOrders(int count, const int* const* lists, Orders* orders) {
    orders->count = count;
    orders->lists = lists;
    for (int k = 0; k < count; k++)
        for (int i = 0; i < orders->n; i++) {
            const int otu = lists[k][i] - 1;
            orders->otuOf[k][i] = otu;
            orders->placeOf[k][otu] = i;
        }
}

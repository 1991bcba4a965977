#include "mxlib/perm_test/row_sums.h"

#include <algorithm>

namespace {

int OrdersInOnePass(std::ptrdiff_t entries) {
    constexpr std::ptrdiff_t kMostPlaces = 1 << 21;  // of one order or more
    constexpr std::ptrdiff_t kMostOrders = 8;
    return static_cast<int>(std::clamp<std::ptrdiff_t>(
        kMostPlaces / std::max<std::ptrdiff_t>(entries, 1), 1, kMostOrders));
}

/// The terms of W entries of one row side by side, from the longest to the shortest.
template <int W>
void AddTerms(const EntryOfRow* entries, const int* at, const double* p, const double* row,
              double* terms) {
    const int* otu[W];
    const double* proportion[W];
    double later[W] = {};
    for (int t = 0; t < W; t++) {
        const std::ptrdiff_t first = entries[t].entry + entries[t].behind;
        otu[t] = at + first;
        proportion[t] = p + first;
    }
    const int common = entries[W - 1].length;
    for (int l = 0; l < common; l++)
        for (int t = 0; t < W; t++) later[t] += proportion[t][l] * row[otu[t][l]];
    for (int t = 0; t < W; t++) {
        for (int l = common; l < entries[t].length; l++)
            later[t] += proportion[t][l] * row[otu[t][l]];
        const std::ptrdiff_t e = entries[t].entry;
        for (std::ptrdiff_t u = e + 1; u < e + entries[t].behind; u++)
            later[t] += p[u] * row[at[u]];
        terms[e] = p[e] * (2.0 * later[t] + p[e] * row[at[e]]);
    }
}

/// A row is read from end to end sooner or later.
void Prefetch(int n, const double* row) {
    constexpr int kPerLine = 8;
    for (int j = 0; j < n; j += kPerLine) __builtin_prefetch(row + j);
}

/// The terms of all entries in the orders from first to end - 1.
void MakeTerms(const SparseCells& proportions, const double* table, const Orders& orders, int first,
               int end, const EntriesByRow& rows, RowTerms* room) {
    constexpr int kTogether = 4;
    const int n = orders.n;
    for (int otu = 0; otu < n; otu++) {
        const double* row = table + static_cast<std::ptrdiff_t>(otu) * n;
        if (otu + 1 < n) Prefetch(n, row + n);
        for (int k = first; k < end; k++) {
            const int place = orders.placeOf[k][otu];
            const int* at = room->at[k - first];
            double* terms = room->terms[k - first];
            std::ptrdiff_t e = rows.start[place];
            for (; e + kTogether <= rows.start[place + 1]; e += kTogether)
                AddTerms<kTogether>(rows.entries + e, at, proportions.value, row, terms);
            for (; e < rows.start[place + 1]; e++)
                AddTerms<1>(rows.entries + e, at, proportions.value, row, terms);
        }
    }
}

EntryOfRow EntryAt(std::ptrdiff_t entry, std::ptrdiff_t start, std::ptrdiff_t end) {
    const std::ptrdiff_t block = (entry - start) / kBlockOfSum * kBlockOfSum + start;
    const std::ptrdiff_t behind = block + kBlockOfSum <= end ? block + kBlockOfSum : entry + 1;
    return {entry, static_cast<int>(behind - entry), static_cast<int>(end - behind)};
}

}  // namespace

double CountPairs(int nCommunities, const SparseCells& cells) {
    double pairs = 0.0;
    for (int i = 0; i < nCommunities; i++) {
        const auto size = static_cast<double>(cells.start[i + 1] - cells.start[i]);
        pairs += size * (size - 1.0) / 2.0;
    }
    return pairs;
}

EntriesByRow MakeEntriesByRow(int nCommunities, int nOTUs, const SparseCells& cells) {
    const std::ptrdiff_t count = cells.start[nCommunities];
    EntriesByRow rows{OrdersInOnePass(count), ScopedVector<std::ptrdiff_t>(nOTUs + 1),
                      ScopedVector<EntryOfRow>(count)};
    for (std::ptrdiff_t e = 0; e < count; e++) rows.start[cells.otu[e] + 1]++;
    for (int k = 0; k < nOTUs; k++) rows.start[k + 1] += rows.start[k];
    ScopedVector<std::ptrdiff_t> next(nOTUs);
    std::copy_n(rows.start.get(), nOTUs, next.get());
    for (int i = 0; i < nCommunities; i++)
        for (std::ptrdiff_t e = cells.start[i]; e < cells.start[i + 1]; e++)
            rows.entries[next[cells.otu[e]]++] = EntryAt(e, cells.start[i], cells.start[i + 1]);
    for (int k = 0; k < nOTUs; k++)
        std::sort(rows.entries + rows.start[k], rows.entries + rows.start[k + 1],
                  [](const EntryOfRow& a, const EntryOfRow& b) { return a.length > b.length; });
    return rows;
}

RowTerms MakeRowTerms(int nOTUs, const EntriesByRow& rows) {
    const std::ptrdiff_t count = rows.start[nOTUs];
    return {ScopedMatrix<int>(rows.together, count), ScopedMatrix<double>(rows.together, count)};
}

void SumByRows(int nCommunities, const SparseCells& proportions, const double* table,
               const Orders& orders, const EntriesByRow& rows, RowTerms* room,
               Matrix<double> entropies) {
    for (int first = 0; first < orders.count; first += rows.together) {
        const int end = std::min(first + rows.together, orders.count);
        for (int k = first; k < end; k++)
            for (std::ptrdiff_t e = 0; e < proportions.start[nCommunities]; e++)
                room->at[k - first][e] = orders.otuOf[k][proportions.otu[e]];
        MakeTerms(proportions, table, orders, first, end, rows, room);
        for (int k = first; k < end; k++)
            for (int i = 0; i < nCommunities; i++) {
                double sum = 0.0;
                for (std::ptrdiff_t e = proportions.start[i]; e < proportions.start[i + 1]; e++)
                    sum += room->terms[k - first][e];
                entropies[k][i] = sum;
            }
    }
}

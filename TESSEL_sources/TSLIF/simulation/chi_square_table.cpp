#include "TSLIF/simulation/chi_square_table.h"

#include <gsl/gsl_cdf.h>

#include <algorithm>
#include <cmath>

namespace {

/// The arguments follow from each other by addition, and so do their digits.
double Argument(int place, ChiSquareTable* table) {
    for (; table->placed <= place; table->placed++)
        table->argument[table->placed] =
            table->placed == 0 ? 0.0 : table->argument[table->placed - 1] + table->step;
    return table->argument[place];
}

}  // namespace

void RenewTable(double largest, int freedom, ChiSquareTable* table) {
    table->end = 5 * largest;
    table->step = table->end / kChiSquareEntries;
    table->freedom = freedom;
    table->placed = 0;
    std::fill(table->known.get(), table->known.get() + kChiSquareEntries, false);
}

double LogTail(double distance, ChiSquareTable* table) {
    const double place = distance / table->step;  // not negative: the cast takes its floor
    const int k = place < kChiSquareEntries ? static_cast<int>(place) : kChiSquareEntries - 1;
    if (!table->known[k]) {
        table->logTail[k] = std::log(gsl_cdf_chisq_Q(Argument(k, table), table->freedom));
        table->known[k] = true;
    }
    return table->logTail[k];
}

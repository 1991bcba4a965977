#include "TSLIF/simulation/world.h"

#include <algorithm>
#include <climits>

namespace {

template <class T>
ScopedMatrix<T> Correlations(const TableSource& source, int variables) {
    const int n = source.fromCorrelations ? variables : 0;
    return Table<T>(n, n);
}

/// A product beyond the range of int is its end: such sites never fill.
int TargetAbundance(const SimulationAnswers& answers) {
    const long long target = static_cast<long long>(answers.maxIndividuals) * answers.nSites;
    return static_cast<int>(std::min<long long>(target, INT_MAX));
}

}  // namespace

World::World(SimulationAnswers* a)
    : answers(*a),
      B(Table<float>(a->nOTUs, a->nTraits)),
      BTransposed(Table<float>(a->nTraits, a->nOTUs)),
      traitMean(a->nTraits),
      traitSd(a->nTraits),
      traitMin(a->nTraits),
      traitMax(a->nTraits),
      traitCorrelations(Correlations<float>(a->traits, a->nTraits)),
      traitFlags(a->nTraits),
      E(Table<double>(a->nPredictors, a->nSites)),
      EInitial(Table<double>(a->nPredictors, a->nSites)),
      factorCorrelations(Correlations<double>(a->environment, a->nFactors)),
      responses(Table<double>(a->nTraits, a->nPredictors)),
      effects(Table<double>(a->nFactors, a->nTraits)),
      target(TargetAbundance(*a)),
      W(Table<double>(a->nSites + 1, a->nOTUs)),
      abundance(a->nSites),
      shares(Table<double>(a->nSites, a->nOTUs)),
      expected(Table<double>(a->nTraits, a->nSites)),
      means(Table<double>(a->nTraits, a->nSites)),
      beyond(Table<double>(a->nTraits, a->nSites)),
      richness(a->nSites),
      extinctions(a->nSites),
      colonizations(a->nSites) {}

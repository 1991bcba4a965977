#include "TSLCHORD/trait_screen.h"

#include "TSLGLOB/settings.h"
#include "mxlibRes/congruence.h"

template <class Real>
std::unique_ptr<SubsetScreen> ScreenTraits(std::span<const Table> fixed, int option,
                                           bool isNarrowed, SubsetTables<Real>* t) {
    const ScreenedTraits<Real> traits{ncsm, nch, t->shared->normalised, weight, nMaxTraitsChRank};
    if (opt_ro != kMantel) {
        const ComparedTable<Real>& with = Of(fixed[0], t);
        return ScreenCongruence<Real>(opt_ro, traits, with.columns, with.values, isNarrowed);
    }
    const MantelSide* sides[2] = {};
    for (size_t s = 0; s < fixed.size(); s++) {
        const Resemblance& resemblance = ResemblanceBy(fixed[s], 0, t);
        if (resemblance.isNew) return nullptr;
        sides[s] = &resemblance.side;
    }
    return ScreenCorrelation<Real>(option, traits, {sides, fixed.size()}, isNarrowed);
}

template std::unique_ptr<SubsetScreen> ScreenTraits<float>(std::span<const Table>, int, bool,
                                                           SubsetTables<float>*);
template std::unique_ptr<SubsetScreen> ScreenTraits<double>(std::span<const Table>, int, bool,
                                                            SubsetTables<double>*);

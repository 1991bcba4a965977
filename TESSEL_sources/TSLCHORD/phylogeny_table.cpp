#include "TSLCHORD/phylogeny_table.h"

#include "TSLGLOB/settings.h"
#include "TSLRESE/scaling_up_matrices.h"
#include "mxlib/belonging.h"
#include "mxlibRes/products.h"

template <class Real>
void TakePhylogeny(SubsetTables<Real>* t) {
    ComparePhylogeneticVariables();
    ScopedMatrix<Real> resemblance(tcst, tcst);
    ScopedMatrix<Real> Q(tcst, nTaxa);
    for (int i = 0; i < tcst; i++)
        for (int j = 0; j < tcst; j++) resemblance[i][j] = static_cast<Real>(phylogenyRese[i][j]);
    if (fuzzyPhyl == 1)
        FuzzyBelonging(tcst, nTaxa, resemblance, partition_OTUs_Phyl, Q,
                       PhylogenyIsDissimilarity());
    else
        CrispBelonging(tcst, nTaxa, partition_OTUs_Phyl, Q);
    ComparedTable<Real>& P = Of(Table::P, t);
    MatrixProd(ncsm, tcst, tcst, nTaxa, t->shared->W, Q, P.rows);
    CompareCommunities(Table::P, rese_opt, t);
    if (t->structures.stream != nullptr)
        PrintPhylogenyOfSearch<Real>(t->structures.stream, Q, P.values,
                                     ResemblanceMatrix<Real>(Table::P, t));
}

template void TakePhylogeny<float>(SubsetTables<float>*);
template void TakePhylogeny<double>(SubsetTables<double>*);

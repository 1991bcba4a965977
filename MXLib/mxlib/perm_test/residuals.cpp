#include "mxlib/perm_test/residuals.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "mxlibRes/congruence.h"
#include "mxlibRes/turned_side.h"

namespace {

constexpr int kCorrelations = 2;  // components of standardised covariables

Side MakeSide(const TestRecord& in, Letter letter) {
    return Side(new CongruenceSide<double>(
        MakeCongruenceSide<double>(in.opt_ro, in.nCommunities, ColumnsOf(in, letter))));
}

bool IsOfPhylogeny(Block block) {
    return block == kBlockP || block == kBlockF;
}

int WidestOf(const TestRecord& in, std::initializer_list<Letter> letters) {
    int widest = 1;
    for (const Letter letter : letters) widest = std::max(widest, ColumnsOf(in, letter));
    return widest;
}

int CovariableColumns(const TestRecord& in, Covariables removed) {
    int columns = 0;
    for (const Letter letter : kCovariableLetters[removed])
        if (letter != kE) columns += ColumnsOf(in, letter);
    return columns;
}

void MakeRoomForPartials(const TestRecord& in, int widest, MatrixPairs* m) {
    for (const PartialOfMatrices& partial : kPartialsOfMatrices) {
        if (IsOfPhylogeny(partial.block) && !in.includePhylogeny) continue;
        std::unique_ptr<ComponentFactors>& factors = m->factors[partial.removed];
        if (!factors)
            factors.reset(new ComponentFactors(MakeComponentFactors(
                in.nCommunities, CovariableColumns(in, partial.removed), widest)));
        for (const Letter letter : {partial.a, partial.b}) {
            Side& side = m->residuals[partial.removed][letter];
            if (!side) side = MakeSide(in, letter);
        }
    }
}

void FindFactors(const TestRecord& in, const Arrangement& now, Covariables removed,
                 MatrixPairs* m) {
    ComponentFactors* factors = m->factors[removed].get();
    StartCovariables(factors);
    for (const Letter letter : kCovariableLetters[removed])
        if (letter != kE)
            AddCovariables(ColumnsOf(in, letter), MatrixOf(in, now, letter),
                           letter == kT ? in.traitsInUse : nullptr, factors);
    FindComponents(kCorrelations, in.overfitFactorPCARegr, factors);
    m->hasFactors[removed] = true;
}

const CongruenceSide<double>& ResidualsOf(const TestRecord& in, const Arrangement& now,
                                          Letter letter, Covariables removed, MatrixPairs* m) {
    CongruenceSide<double>* side = m->residuals[removed][letter].get();
    if (m->hasResiduals[removed][letter]) return *side;
    if (!m->hasFactors[removed]) FindFactors(in, now, removed, m);
    ComponentResiduals(ColumnsOf(in, letter), MatrixOf(in, now, letter), m->room,
                       m->factors[removed].get());
    SetCongruenceSide<double>(m->room, side);
    m->hasResiduals[removed][letter] = true;
    return *side;
}

void MakeFixed(const TestRecord& in, MatrixPairs* m) {
    for (const Letter letter : {kE, kZ, kY}) m->sides[letter] = MakeSide(in, letter);
    SetCongruenceSide<double>(in.E, m->sides[kE].get());
    SetCongruenceSide<double>(in.Z, m->sides[kZ].get());
    SetCongruenceSide<double>(in.Y, m->sides[kY].get());
    for (const Letter letter : {kZ, kY}) {
        Side& side = m->sides[letter];
        side = std::make_shared<CongruenceSide<double>>(TurnWideSide(std::move(*side)));
        m->squares[letter] = SquaresOf(*side);
    }
}

void TakeFixed(const MatrixPairs& first, MatrixPairs* m) {
    for (const Letter letter : {kE, kZ, kY}) m->sides[letter] = first.sides[letter];
    m->squares = first.squares;
}

/// Z and Y are wide, and the same in every arrangement: their residuals are made only where the
/// shorter way fails.
double Partial(const TestRecord& in, const Arrangement& now, const PartialOfMatrices& partial,
               MatrixPairs* m) {
    const CongruenceSide<double>& a = ResidualsOf(in, now, partial.a, partial.removed, m);
    if (partial.b == kZ || partial.b == kY) {
        const double shorter =
            CongruenceOfResiduals(a, *m->sides[partial.b], m->squares[partial.b],
                                  *m->factors[partial.removed], &m->projection, &m->scratch);
        if (!std::isnan(shorter)) return shorter;
    }
    return Congruence(a, ResidualsOf(in, now, partial.b, partial.removed, m), &m->scratch);
}

}  // namespace

MatrixPairs MakeMatrixPairs(const TestRecord& in, bool allPairs, const MatrixPairs* first) {
    const int widest = WidestOf(in, {kE, kZ, kT, kX, kP});
    const int widestVarying = WidestOf(in, {kT, kX, kP});
    MatrixPairs m{{},
                  {},
                  {},
                  {},
                  {},
                  ScopedMatrix<double>(in.nCommunities, widest),
                  MakeCongruenceScratch<double>(in.opt_ro, in.nCommunities, widest, widestVarying),
                  MakeProjection(in.opt_ro, in.nCommunities, in.nTraits, in.nOTUs, in.nTypes),
                  {},
                  allPairs};
    if (first == nullptr)
        MakeFixed(in, &m);
    else
        TakeFixed(*first, &m);
    for (const Letter letter : {kT, kX, kP, kR, kF}) m.sides[letter] = MakeSide(in, letter);
    MakeRoomForPartials(in, widest, &m);
    return m;
}

void StartArrangement(MatrixPairs* m) {
    m->hasFactors.fill(false);
    for (auto& ofCovariables : m->hasResiduals) ofCovariables.fill(false);
}

void MatrixBlock(const TestRecord& in, const Arrangement& now, Block block, MatrixPairs* m,
                 Statistics* s) {
    const Letter made = MadeIn(block);
    SetCongruenceSide<double>(MatrixOf(in, now, made), m->sides[made].get());
    for (const PairStatistic& pair : kPairStatistics)
        if (pair.block == block && (m->allPairs || !pair.servesOthersOnly))
            (*s)[pair.result] = Congruence(*m->sides[pair.a], *m->sides[pair.b], &m->scratch);
    for (const PartialOfMatrices& partial : kPartialsOfMatrices)
        if (partial.block == block) (*s)[partial.result] = Partial(in, now, partial, m);
}

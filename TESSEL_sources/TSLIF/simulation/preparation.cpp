#include "TSLIF/simulation/preparation.h"

#include <algorithm>

#include "TSLGLOB/settings.h"
#include "mxlib/correlated_data.h"
#include "mxlib/random_lists.h"
#include "mxlibDim/reading.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

/// False when the file ends before its time; the reader has closed it then.
template <class T>
bool ReadTable(RawFile& file, int rows, int cols, Matrix<T> table) {
    for (int i = 0; i < rows; i++)
        for (int j = 0; j < cols; j++) {
            double number = 0.0;
            if (!ScanNumberOrEnd(file.stream, file.name, nullptr, 0.0, 0.0, &number)) {
                file.stream = nullptr;
                return false;
            }
            table[i][j] = static_cast<T>(number);
        }
    CloseRawFile(file);
    return true;
}

/// The values of a table, or the correlations between its variables.
template <class T>
bool ReadSource(TableSource& source, int rows, int cols, Matrix<T> values, int variables,
                Matrix<T> correlations) {
    return source.fromCorrelations ? ReadTable<T>(source.file, variables, variables, correlations)
                                   : ReadTable<T>(source.file, rows, cols, values);
}

void FlagTraits(World& world) {
    const SimulationAnswers& a = world.answers;
    for (int t = 0; t < a.nTraits; t++) {
        const double* row = world.responses[t];
        const auto responds = [](double parameter) { return parameter != 0; };
        world.traitFlags[t] = std::any_of(row, row + a.nPredictors, responds) ? 1 : 0;
        world.nTraitsFlagged += world.traitFlags[t];
    }
}

void StandardizeTraits(World& world) {
    const int N = world.answers.nOTUs;
    const int T = world.answers.nTraits;
    TransposeMatrix(N, T, world.B, world.BTransposed);
    for (int t = 0; t < T; t++)
        MeanStDev(N, world.BTransposed[t], &world.traitMean[t], &world.traitSd[t]);
    ZStandardizationColsMV(N, T, world.B, world.B);
    TransposeMatrix(N, T, world.B, world.BTransposed);
    for (int t = 0; t < T; t++) {
        world.traitMin[t] = static_cast<double>(minVector(N, world.BTransposed[t]));
        world.traitMax[t] = static_cast<double>(maxVector(N, world.BTransposed[t]));
    }
}

void StandardizeFactors(World& world) {
    ZStandardizationRowsMV(world.answers.nFactors, world.answers.nSites, world.E, world.E);
    FormInteractions(world, 0, world.answers.nSites);
}

void DrawFactors(World& world) {
    const SimulationAnswers& a = world.answers;
    ScopedMatrix<double> drawn(a.nSites, a.nFactors);
    CorrToData_New(a.nSites, a.nFactors, world.factorCorrelations, drawn,
                   a.environment.distribution);
    TransposeMatrix(a.nSites, a.nFactors, drawn, world.E);
    StandardizeFactors(world);
}

void EmptySites(World& world) {
    const int S = world.answers.nSites;
    const int N = world.answers.nOTUs;
    for (int s = 0; s <= S; s++) std::fill(world.W[s], world.W[s] + N, 0.0);
    for (int s = 0; s < S; s++) std::fill(world.shares[s], world.shares[s] + N, 0.0);
    for (int* counts : {world.abundance.get(), world.richness.get(), world.extinctions.get(),
                        world.colonizations.get()})
        std::fill(counts, counts + S, 0);
    world.total = 0;
}

}  // namespace

bool ReadWorld(World& world) {
    SimulationAnswers& a = world.answers;
    if (!ReadSource<float>(a.traits, a.nOTUs, a.nTraits, world.B, a.nTraits,
                           world.traitCorrelations))
        return false;
    if (!ReadSource<double>(a.environment, a.nFactors, a.nSites, world.E, a.nFactors,
                            world.factorCorrelations))
        return false;
    if (!ReadTable<double>(a.responses, a.nTraits, a.nPredictors, world.responses)) return false;
    if (!ReadTable<double>(a.effects, a.nFactors, a.nTraits, world.effects)) return false;
    FlagTraits(world);
    return true;
}

void PrepareTraits(World& world) {
    if (!world.answers.traits.fromCorrelations) StandardizeTraits(world);
}

void PrepareEnvironment(World& world) {
    if (world.answers.environment.fromCorrelations) return;
    StandardizeFactors(world);
    CopyMatrix(world.answers.nPredictors, world.answers.nSites, world.E, world.EInitial);
}

void StartStream(World& world) {
    InitRandomStream(rseed, static_cast<std::uint32_t>(world.dataSet));
    world.onset = 0;
    for (int t = 0; t < world.answers.nTraits; t++)
        std::fill(world.beyond[t], world.beyond[t] + world.answers.nSites, 0.0);
}

void RenewTraits(World& world) {
    const SimulationAnswers& a = world.answers;
    if (!a.traits.fromCorrelations) return;
    CorrToData_New(a.nOTUs, a.nTraits, world.traitCorrelations, world.B, a.traits.distribution);
    StandardizeTraits(world);
}

void RenewSites(World& world) {
    if (world.answers.environment.fromCorrelations)
        DrawFactors(world);
    else
        CopyMatrix(world.answers.nPredictors, world.answers.nSites, world.EInitial, world.E);
    EmptySites(world);
}

void FormInteractions(World& world, int from, int to) {
    if (!HasInteractionRows(world.answers)) return;
    const int F = world.answers.nFactors;
    for (int i = 0; i < F - 1; i++)
        for (int s = from; s < to; s++) world.E[F + i][s] = world.E[i][s] * world.E[F - 1][s];
}

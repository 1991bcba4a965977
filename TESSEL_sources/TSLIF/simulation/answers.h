#pragma once
/// \file
/// What the user tells the simulation of community assembly.

#include <vector>

#include "TSLIFFMT/raw_files.h"

/// A table that comes as its values or is drawn from a correlation matrix.
struct TableSource {
    bool fromCorrelations = false;
    int distribution = 0;  ///< 'u' or 'n', as typed
    RawFile file;          ///< of either
};

struct SimulationAnswers {
    int nSites = 0;
    int nOTUs = 0;
    int nTraits = 0;
    int nFactors = 0;
    int nPredictors = 0;  ///< the factors and, with interactions, their pairs
    TableSource traits;
    TableSource environment;
    bool interactions = false;
    RawFile responses;
    RawFile effects;
    int maxIndividuals = 0;      ///< average per community
    double threshold = 0;        ///< proportion of individuals or iterations where recording starts
    double dispersalWeight = 0;  ///< weight for local dispersal
    double densityWeight = 0;    ///< an exact 0 becomes 1e-19 in the first step
    int maxIterations = 0;

    bool evaluates = false;  ///< analyse the data sets and report rates of rejection
    int nDataSets = 1;
    std::vector<int> predictorsInUse;  ///< 1 for each predictor in the analysed matrix E
    double alpha = 0;
    bool savesSteps = false;  ///< write the files of every step

    /// Each data set has the generator of its number (InitRandomStream) and does not depend on
    /// those before it.
    bool streams = false;
    /// Of so many parts of the evaluation, under streams, the one to run: every parts-th data set
    /// from the data set `part` on.
    int part = 1;
    int parts = 1;
};

/// How many data sets the run has: those of its part.
inline int DataSetsOfRun(const SimulationAnswers& answers) {
    return (answers.nDataSets - answers.part) / answers.parts + 1;
}

/// The number of the run's data set k, from 0.
inline int DataSetOfRun(const SimulationAnswers& answers, int k) {
    return answers.part + k * answers.parts;
}

/// Number of predictors of the factors and interactions.
int CountPredictors(const SimulationAnswers& answers);

/// Whether the predictors have rows of interactions.
inline bool HasInteractionRows(const SimulationAnswers& answers) {
    return answers.interactions && answers.nFactors >= 2;
}

/// Asks for the world: its sizes, tables and rules.
void AskWorld(SimulationAnswers* answers);

/// Asks how often to run, with which analysis and seed. The data set's counts and trait arrays
/// (TSLGLOB/dataset.h) must stand for SettingsHierarchy.
void AskRun(SimulationAnswers* answers);

/// Calls `print(i, j)` for each pair of factors, counted from 1.
template <class Print>
void ForEachPair(const SimulationAnswers& answers, Print print) {
    if (!HasInteractionRows(answers)) return;
    for (int i = 1; i < answers.nFactors; i++)
        for (int j = i + 1; j <= answers.nFactors; j++) print(i, j);
}

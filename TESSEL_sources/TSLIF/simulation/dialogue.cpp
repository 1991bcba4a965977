#include <climits>
#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/settings_dialogue.h"
#include "TSLIF/simulation/answers.h"
#include "TSLIF2/console.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"

namespace {

/// What the dialogue asks about a table; sizes go into the texts as %d.
struct TableQuestions {
    const char* kind;
    const char* kinds;  ///< accepted letters
    const char* valuesFile;
    const char* correlationsFile;
    const char* distribution;
};

constexpr TableQuestions kTraitQuestions = {
    "Input is a %d OTUs x %d traits matrix (t) or a trait x traits correlation matrix (c)? t/c ",
    "t c", "Name of the file with trait data matrix (%d OTUs x %d traits): ",
    "Name of the file with full trait correlation matrix (%d traits x %d traits): ",
    "Generate OTUs x traits matrix with uniform (u) or normal (n) distribution of values in each "
    "trait? u/n "};

constexpr TableQuestions kEnvironmentQuestions = {
    "Specify the environmental data as a %d factors x %d sites matrix (e) or generate the data "
    "based on a factor x factor correlation matrix (c)? e/c ",
    "e c",
    "Name of the file with matrix of %d factors x %d sites with initial ecosystem conditions: ",
    "Name of the file with full factor correlation matrix (%d factors x %d factors): ",
    "Generate factors x sites matrix with uniform (u) or normal (n) distribution of values in each "
    "factor? u/n "};

constexpr const char* kResponseQuestion =
    "Name of the file with matrix of parameters for linear models of community responses to "
    "ecosystem conditions (%d traits by %d ecosystem predictor variables): ";
constexpr const char* kResponseWithPairsQuestion =
    "Name of the file with matrix of parameters for linear models of community responses to "
    "ecosystem conditions (%d traits by %d ecosystem predictor variables and their double "
    "interactions): ";
constexpr const char* kEffectQuestion =
    "Name of the file with matrix of parameters for linear models of community effects on "
    "ecosystem conditions (%d ecosystem variables by %d predictor traits): ";

constexpr const char* kIndividualsQuestion =
    "Specify the maximum average number of individuals per community: ";
constexpr const char* kThresholdQuestion =
    "Specify the threshold (proportion) of the maximum average number of individuals per community "
    "after which OTU richness and number of OTU colonizations and extinctions are recorded: ";
constexpr const char* kDispersalQuestion =
    "Specify the weight for local dispersal (or clonality) (0-1): ";
constexpr const char* kDensityQuestion =
    "Specify the weight for density dependent survival or mortality (0-1): ";

double AskProportion(const char* question) {
    std::fputs(question, out);
    return ReadNumberIn("%lf\n", "-", 0.0, 1.0);
}

int AskLetter(const char* question, const char* accepted) {
    std::fputs(question, out);
    return ReadCharIn(accepted);
}

void AskFile(const char* question, int rows, int cols, RawFile& file) {
    std::fprintf(out, question, rows, cols);
    AskForRawFile(file);
}

/// The table has rows x cols values, or correlations between `variables`.
void AskTable(const TableQuestions& questions, int rows, int cols, int variables,
              TableSource* table) {
    std::fprintf(out, questions.kind, rows, cols);
    table->fromCorrelations = ReadCharIn(questions.kinds) == 'c';
    if (!table->fromCorrelations) {
        AskFile(questions.valuesFile, rows, cols, table->file);
        return;
    }
    AskFile(questions.correlationsFile, variables, variables, table->file);
    table->distribution = AskLetter(questions.distribution, "u n");
}

void AskPredictors(SimulationAnswers* answers) {
    answers->predictorsInUse.assign(static_cast<std::size_t>(answers->nPredictors), 1);
    const int option = ReadOption(
        "\nEcosystem variables in matrix E to be used in the analysis of the simulated data:\n"
        "   1  all variables \n"
        "   2  select variables \n"
        "Type option no.: ",
        "1 2");
    if (option == 1) return;
    std::fputs(
        "Select variables (and their interactions if included):\n"
        "(enter 0 for exclusion or 1 for inclusion)\n",
        out);
    for (int f = 1; f <= answers->nFactors; f++) std::fprintf(out, "%d ", f);
    ForEachPair(*answers, [](int i, int j) { std::fprintf(out, "%dx%d ", i, j); });
    std::fputs("\n", out);
    for (int& inUse : answers->predictorsInUse) inUse = ReadIntegerIn("%-3d", "0 1");
}

void AskEvaluation(SimulationAnswers* answers) {
    answers->nDataSets = AskForCount("Specify the number of simulated data sets: ");
    optmain = 'H';
    SettingsHierarchy();
    AskPredictors(answers);
    answers->alpha = AskProportion("Specify the alpha threshold for Ho rejection: ");
}

void AskSingleRun(SimulationAnswers* answers) {
    SettingsSeed();
    answers->savesSteps = ReadYesNo("Save intermediate results? y/n ");
}

}  // namespace

int CountPredictors(const SimulationAnswers& answers) {
    const long long factors = answers.nFactors;
    const long long pairs = answers.interactions ? factors * (factors - 1) / 2 : 0;
    if (factors + pairs > INT_MAX) RaiseError(kOutOfMemory);
    return static_cast<int>(factors + pairs);
}

void AskWorld(SimulationAnswers* answers) {
    answers->nSites = AskForCount("Specify the number of communities (sites): ");
    answers->nOTUs = AskForCount("Specify the number of OTUs: ");
    answers->nTraits = AskForCount("Specify the number of traits: ");
    AskTable(kTraitQuestions, answers->nOTUs, answers->nTraits, answers->nTraits, &answers->traits);
    answers->nFactors = AskForCount("Specify the number of factors: ");
    AskTable(kEnvironmentQuestions, answers->nFactors, answers->nSites, answers->nFactors,
             &answers->environment);
    answers->interactions = ReadYesNo("Consider double interactions between factors? y/n ");
    answers->nPredictors = CountPredictors(*answers);
    AskFile(answers->interactions ? kResponseWithPairsQuestion : kResponseQuestion,
            answers->nTraits, answers->nPredictors, answers->responses);
    AskFile(kEffectQuestion, answers->nFactors, answers->nTraits, answers->effects);
    answers->maxIndividuals = AskForCount(kIndividualsQuestion);
    answers->threshold = AskProportion(kThresholdQuestion);
    answers->dispersalWeight = AskProportion(kDispersalQuestion);
    answers->densityWeight = AskProportion(kDensityQuestion);
    answers->maxIterations = AskForCount("Specify the maximum number of iterations: ");
}

void AskRun(SimulationAnswers* answers) {
    answers->evaluates = ReadYesNo("Evaluate type I error or power? y/n ");
    if (answers->evaluates)
        AskEvaluation(answers);
    else
        AskSingleRun(answers);
}

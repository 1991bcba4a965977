#include "TSLIF/simulation/report.h"

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/info_texts.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/simulation/files.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/text.h"
#include "mxlibOut/mxlibOut.h"
#include "mxlibRes/totals.h"

using std::fprintf;

namespace {

constexpr const char* kResponses =
    "\nParameters for linear models of community responses to ecosystem conditions (%d traits by "
    "%d ecosystem predictor variables, file %s): \n";
constexpr const char* kFlags =
    "\nTraits that were considered to compute distances between each OTU trait value and expected "
    "value at the community site (traits with non-zero parameters for community responses to "
    "ecosystem conditions): \n";
constexpr const char* kTraitCorrelations =
    "\nSpecified trait correlation matrix (%d traits x %d traits, file %s): \n";

// First of the co-occurrence and of the product statistics in the table of statistics.
constexpr int kFirstAlpha = 3;
constexpr int kFirstY = 5;
constexpr int kFirstZ = 8;

void PrintTraitCorrelations(FILE* report, const World& world) {
    const int T = world.answers.nTraits;
    fprintf(report, kTraitCorrelations, T, T, world.answers.traits.file.name);
    PrintMatrixTab(report, T, T, world.traitCorrelations, sDigits);
}

/// What the user chose; the deviates are normal either way.
const char* DistributionText(const TableSource& source) {
    return source.distribution == 'n' ? "NORMAL" : "UNIFORM";
}

void PrintTraits(FILE* report, const World& world) {
    const SimulationAnswers& a = world.answers;
    PrintMatrixTab(report, a.nOTUs, a.nTraits, world.B, sDigits);
    PrintTraitScales(report, world);
}

void PrintSpecifiedTraits(FILE* report, const World& world) {
    const SimulationAnswers& a = world.answers;
    if (a.traits.fromCorrelations) {
        PrintTraitCorrelations(report, world);
        fprintf(report, "Trait data generated with %s distribution\n", DistributionText(a.traits));
        return;
    }
    fprintf(report,
            "\nSpecified trait data (standardized to Z scores, %d OTUs in rows and %d traits in "
            "columns):\n",
            a.nOTUs, a.nTraits);
    PrintTraits(report, world);
}

void PrintSpecifiedEnvironment(FILE* report, const World& world) {
    const SimulationAnswers& a = world.answers;
    const char* file = a.environment.file.name;
    if (a.environment.fromCorrelations) {
        fprintf(report,
                "\nSpecified correlation matrix between environmental factors (%d factors x %d "
                "factors, file %s): \n",
                a.nFactors, a.nFactors, file);
        PrintMatrixTab(report, a.nFactors, a.nFactors, world.factorCorrelations, sDigits);
        fprintf(report, "Environmental data generated with %s distribution\n",
                DistributionText(a.environment));
        return;
    }
    fprintf(report, "\nInitial ecosystem conditions (%d factors x %d sites, file %s):\n",
            a.nFactors, a.nSites, file);
    PrintMatrixTab(report, a.nFactors, a.nSites, world.E, sDigits);
}

/// Both matrices of parameters and the trait flags; `responsesWithPairs` heads the first when there
/// are interactions.
void PrintParameters(FILE* report, const World& world, const char* responsesWithPairs) {
    const SimulationAnswers& a = world.answers;
    fprintf(report, a.interactions ? responsesWithPairs : kResponses, a.nTraits, a.nPredictors,
            a.responses.name);
    PrintMatrixTab(report, a.nTraits, a.nPredictors, world.responses, sDigits);
    fprintf(report,
            "\nParameters for linear models of community effects on ecosystem conditions (%d "
            "ecosystem variables by %d predictor traits, %s): \n",
            a.nFactors, a.nTraits, a.effects.name);
    PrintMatrixTab(report, a.nFactors, a.nTraits, world.effects, sDigits);
    fputs(kFlags, report);
    PrintVectorTab(report, a.nTraits, world.traitFlags, nullptr);
}

void PrintRules(FILE* report, const SimulationAnswers& a) {
    fprintf(report, "\nSpecified weight for local dispersal or clonality:\t%g\n",
            a.dispersalWeight);
    fprintf(report,
            "\nSpecified weight for density dependent survival or mortality of individuals:\t%g\n",
            a.densityWeight);
    fprintf(report, "Specified maximum number of colonization/extinction iterations:\t%d\n",
            a.maxIterations);
    fprintf(report, "Specified maximum average number of individuals per community:\t%d\n",
            a.maxIndividuals);
    fprintf(report,
            "Specified threshold (proportion) of maximum average number of individuals per "
            "community after which OTU richness is recorded and colonization/extinction events are "
            "recorded:\t%g\n",
            a.threshold);
}

/// Counts of the sites behind a heading that names the onset of recording.
void PrintRecorded(FILE* report, const World& world, const char* heading, const int* counts) {
    fprintf(report,
            "\n%s step %d, when either %g of the average maximum number of individuals per "
            "community or %g of the specified maximum number of colonization/extinction iterations "
            "were reached):\n",
            heading, world.onset, world.answers.threshold, world.answers.threshold);
    PrintVectorTab(report, world.answers.nSites, counts, nullptr);
}

void PrintCommunities(FILE* report, const World& world) {
    const SimulationAnswers& a = world.answers;
    fprintf(report,
            "\nCommunity data matrix at step %d, for %d community sites in rows and %d OTUs in "
            "columns:\n",
            world.step, a.nSites, a.nOTUs);
    PrintMatrixTab(report, a.nSites, a.nOTUs, world.W, sDigits);
    fprintf(report, "\nAbundance in each community:\n");
    PrintVectorTab(report, a.nSites, world.abundance, nullptr);
    fprintf(report, "Total abundance:\t%d\n", world.total);
    PrintRecorded(report, world, "OTU richness in each community (at", world.richness);
    PrintRecorded(report, world, "Total number of OTU extinctions in each community (after",
                  world.extinctions);
    PrintRecorded(report, world, "Total number of OTU colonizations in each community (after",
                  world.colonizations);
}

void PrintEcosystem(FILE* report, const World& world) {
    const SimulationAnswers& a = world.answers;
    fprintf(report,
            "\nEcosystem data matrix at step %d (%d ecosystem variables in rows and %d community "
            "sites in columns):\n",
            world.step, a.nFactors, a.nSites);
    PrintMatrixTab(report, a.nFactors, a.nSites, world.E, sDigits);
    fprintf(report,
            "\nExpected community weighted means (CWM) at step %d, standardized to Z scores "
            "according to mean and standard deviations in the trait matrix, for %d traits in rows "
            "and %d community sites in columns:\n",
            world.step, a.nTraits, a.nSites);
    PrintMatrixTab(report, a.nTraits, a.nSites, world.expected, sDigits);
    fprintf(report,
            "\nAmount of extrapolation (if any, when positive was larger than the maximum, when "
            "negative was smaller than the minimum trait value) at step %d, based on standardized "
            "to Z scores according to mean and standard deviations in the trait matrix, for %d "
            "traits in rows and %d community sites in columns:\n",
            world.step, a.nTraits, a.nSites);
    PrintMatrixTab(report, a.nTraits, a.nSites, world.beyond, sDigits);
}

void PrintFinalMeans(FILE* report, const World& world, const Evaluation& evaluation) {
    const SimulationAnswers& a = world.answers;
    ScopedMatrix<double> means(a.nTraits, a.nSites);
    TransposeMatrix(a.nSites, a.nTraits, evaluation.outT, means);
    fprintf(report,
            "\nCommunity weighted means at final step %d, for %d traits in rows and %d community "
            "sites in columns:\n",
            world.step, a.nTraits, a.nSites);
    PrintMatrixTab(report, a.nTraits, a.nSites, means, sDigits);
    fprintf(report, "\nRao entropy at final step %d, for %d community sites:\n", world.step,
            a.nSites);
    PrintVectorTab(report, a.nSites, evaluation.outR, sDigits, nullptr);
}

/// The traits and predictors of the test; `selectionLabel` stands before the selection flags.
void PrintSelection(FILE* report, const SimulationAnswers& a, const char* selectionLabel) {
    fprintf(report, "\nTraits:       ");
    for (int t = 1; t <= a.nTraits; t++) fprintf(report, "\t%d", t);
    fprintf(report, "\nTrait weights:");
    for (int t = 0; t < a.nTraits; t++) fprintf(report, "\t%g", Printable(weight[t]));
    fprintf(report, "\nEcosystem variables (and their interactions if included): ");
    for (int f = 1; f <= a.nFactors; f++) fprintf(report, "\t%d", f);
    ForEachPair(a, [report](int i, int j) { fprintf(report, "\t%dx%d ", i, j); });
    fputs(selectionLabel, report);
    for (const int inUse : a.predictorsInUse) fprintf(report, "\t%d", inUse);
}

/// Statistics from..to of the table with their probabilities.
void PrintStatistics(FILE* report, const Evaluation& evaluation, int from, int to) {
    for (int k = from; k < to; k++)
        fprintf(report, "%s=\t%g\tP=\t%g\n", ratedStatistics[k].label,
                Printable(evaluation.test.*ratedStatistics[k].value),
                Printable(evaluation.test.*ratedStatistics[k].probability));
}

void PrintRates(FILE* report, const Evaluation& evaluation, int from, int to) {
    for (int k = from; k < to; k++)
        fprintf(report, "%s\tP=\t%g\n", ratedStatistics[k].label,
                Printable(evaluation.rejections[static_cast<std::size_t>(k)]));
}

void PrintRunSettings(FILE* report, const World& world, double seconds) {
    const SimulationAnswers& a = world.answers;
    if (a.traits.fromCorrelations) PrintTraitCorrelations(report, world);
    fprintf(report, "\nInitial ecosystem conditions (%d factors x %d sites, file %s).\n",
            a.nFactors, a.nSites, a.environment.file.name);
    PrintParameters(report, world,
                    "\nParameters for linear models of community responses to ecosystem conditions "
                    "(%d traits by %d ecosystem predictor variables (and their double "
                    "interactions), file %s): \n");
    fprintf(report, "\nSpecified weight for local dispersal:\t%g\n", a.dispersalWeight);
    fprintf(report,
            "\nSpecified weight for density dependent survival or mortality of individuals:\t%g\n",
            a.densityWeight);
    fprintf(report, "Specified maximum average number of individuals per community:\t%d\n",
            a.maxIndividuals);
    fprintf(report, "Number of simulated data sets:\t%d\n", DataSetsOfRun(a));
    fprintf(report, "Number of random permutations in each test:\t%d\n", niter);
    fprintf(report, "Alpha threshold for Ho rejection:\t%g\n", a.alpha);
    fprintf(report, "Random generator seed: %u\n", static_cast<unsigned>(rseed));
    fprintf(report, "Elapsed time (seconds): %g\n", seconds);
    PrintSelection(report, a, "\neights:                                                  ");
}

void PrintPart(FILE* report, const SimulationAnswers& a) {
    fprintf(report, "Part %d of %d: %d of %d simulated data sets, from number %d in steps of %d\n",
            a.part, a.parts, DataSetsOfRun(a), a.nDataSets, a.part, a.parts);
}

void PrintCongruenceMeasure(FILE* report) {
    fprintf(report, "Correlation function between matrices: \t%s\n", InfoText(opt_roInfo, opt_ro));
    if (opt_ro == kProcrustes || opt_ro == kRV)
        fprintf(report,
                "Factor (f) for limiting the number of predictors in PCA regression in relation to "
                "sample size n (number of predictors = n/f): %g\n",
                Printable(overfitFactorPCARegr));
}

void PrintRatesOfAll(FILE* report, const World& world, const Evaluation& evaluation) {
    const char* target = BealsIncludeOpt
                             ? "(abundance of target OTU included in its own estimation):\n"
                             : "(abundance of target OTU NOT included in its own estimation):\n";
    fprintf(report,
            "\n\nPROBABILITIES OF Ho REJECTION (type I error or power depending on the specified "
            "model context) based on %d tests using %d permutations each:\n",
            DataSetsOfRun(world.answers), niter);
    PrintRates(report, evaluation, 0, kFirstAlpha);
    PrintCongruenceMeasure(report);
    PrintRates(report, evaluation, kFirstAlpha, kFirstY);
    fprintf(report,
            "\nCorrelations with Beals smoothed community matrix (Y) considering OTU's "
            "co-occurences weighted by their abundances %s",
            target);
    PrintRates(report, evaluation, kFirstY, kFirstZ);
    fprintf(report,
            "\nCorrelations with fuzzy-weighted smoothed community matrix (Z) considering OTU's "
            "cross-products based on their abundances %s",
            target);
    PrintRates(report, evaluation, kFirstZ, kRatedStatistics);
    fprintf(report, "Number of calls to gsl_cdf_chisq_Q (critical for speed)\t%lld\n",
            world.chiSquareCalls);
}

}  // namespace

void PrintSpecification(FILE* report, const World& world) {
    fprintf(report, "%s\nSIMULATION OF COMMUNITY ASSEMBLY\n%s\n", lineL, version);
    TimeStamp(report);
    fprintf(report, "%s\n", lineL);
    PrintSpecifiedTraits(report, world);
    PrintSpecifiedEnvironment(report, world);
    PrintParameters(report, world,
                    "\nParameters for linear models of community responses to ecosystem conditions "
                    "(%d traits by %d ecosystem predictor variables (and their interactions), file "
                    "%s): \n");
    PrintRules(report, world.answers);
}

void PrintDataSet(FILE* report, const World& world) {
    const SimulationAnswers& a = world.answers;
    fprintf(report, "\n\nSIMULATED DATA %d", world.dataSet);
    if (a.traits.fromCorrelations) {
        fprintf(report,
                "\n\nTrait data (standardized to Z scores, %d OTUs in rows and %d traits in "
                "columns):\n",
                a.nOTUs, a.nTraits);
        PrintTraits(report, world);
    }
    PrintCommunities(report, world);
    PrintEcosystem(report, world);
}

void PrintTest(FILE* report, const World& world, const Evaluation& evaluation) {
    PrintFinalMeans(report, world, evaluation);
    PrintSelection(report, world.answers,
                   "\nEcosystem variable weights:                              ");
    fprintf(report, "\n\nStatistics and probabilities:\n");
    PrintStatistics(report, evaluation, 0, kFirstY);
    fprintf(report,
            "\nCorrelations with Beals smoothed community matrix (Y) considering OTU's "
            "co-occurences weighted by their abundances:\n");
    PrintStatistics(report, evaluation, kFirstY, kFirstZ);
    fprintf(report,
            "\nCorrelations with fuzzy-weighted smoothed community matrix (Z) considering OTU's "
            "cross-products based on their abundances:\n");
    PrintStatistics(report, evaluation, kFirstZ, kRatedStatistics);
}

void PrintFinalRates(FILE* report, const World& world, const Evaluation& evaluation, double seconds,
                     bool withSettings) {
    fprintf(report, "\n%s\nSIMULATION OF COMMUNITY ASSEMBLY\nFINAL RESULTS\n%s\n", lineL, version);
    TimeStamp(report);
    fprintf(report, "%s\n", lineL);
    if (world.answers.parts > 1) PrintPart(report, world.answers);
    if (withSettings) PrintRunSettings(report, world, seconds);
    PrintRatesOfAll(report, world, evaluation);
}

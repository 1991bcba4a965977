#include "TSLIF/simulation/files.h"

#include <iterator>

#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "mxlibDim/text.h"
#include "mxlibOut/mxlibOut.h"

using std::fprintf;

namespace {

constexpr const char* kRawTraitsFile = "B_Simulated.txt";
constexpr const char* kRawCommunitiesFile = "W_Simulated.txt";
constexpr const char* kRawEnvironmentFile = "E_Simulated.txt";
constexpr const char* kTraitTypesFile = "TraitTypes_Simulated.txt";
constexpr const char* kOTUNumbersFile = "OTUs_Simulated.txt";

/// A row for each site: step, site, the site's column of the table.
void PrintSiteRows(FILE* stream, const World& world, int rows, ConstMatrix<double> table) {
    for (int s = 0; s < world.answers.nSites; s++) {
        fprintf(stream, "%d\t%d\t", world.step, s + 1);
        for (int k = 0; k < rows; k++) fprintf(stream, "%g\t", Printable(table[k][s]));
        fprintf(stream, "\n");
    }
}

/// "Saved on file" messages, in their order. One names the file otherwise than it is called.
struct SavedFile {
    const char* message;
    const char* name;
};
constexpr SavedFile kSavedFiles[] = {
    {"\n\nEcosystem data at every step saved on file %s\n", "EnvData.txt"},
    {"Expected CWM at every step saved on file %s\n", "CWM_Expected.txt"},
    {"Distances between OTU trait and expected community mean traits at each site, at every step "
     "saved on file %s\n",
     "Dist.txt"},
    {"Probabilities of survival of each OTU at each site, at every step saved on file %s\n",
     "Prob.txt"},
    {"Community data at every step saved on file %s\n", "CommunityData.txt"},
    {"Community weighted means (CWM) at every step saved on file %s\n", "CWM.txt"},
};

void WriteRawTraits(const World& world) {
    const SimulationAnswers& a = world.answers;
    ResultsFile file(kRawTraitsFile);
    PrintMatrixTab(file, a.nOTUs, a.nTraits, world.B, sDigits);
    fprintf(file, "Trait data (not standardized, %d OTUs in rows and %d traits in columns):\n",
            a.nOTUs, a.nTraits);
    file.Finish();
}

void WriteRawCommunities(const World& world) {
    const SimulationAnswers& a = world.answers;
    ResultsFile file(kRawCommunitiesFile);
    PrintMatrixTab(file, a.nSites, a.nOTUs, world.W, sDigits);
    fprintf(file,
            "\nCommunity data matrix at final step %d, for %d community sites in rows and %d OTUs "
            "in columns:\n",
            world.step, a.nSites, a.nOTUs);
    fprintf(file, "\nAbundance in each community:\n");
    PrintVectorTab(file, a.nSites, world.abundance, nullptr);
    fprintf(file, "Total abundance:\t%d\n", world.total);
    fprintf(file, "Specified weight for local dispersal:\t%g\n", a.dispersalWeight);
    fprintf(file,
            "Specified weight for density dependent survival or mortality of individuals:\t%g\n",
            a.densityWeight);
    file.Finish();
}

void WriteRawEnvironment(const World& world) {
    const SimulationAnswers& a = world.answers;
    ResultsFile file(kRawEnvironmentFile);
    PrintMatrixTab(file, a.nFactors, a.nSites, world.E, sDigits);
    fprintf(file,
            "\nEcosystem data matrix at final step %d (%d ecosystem variables in rows and %d "
            "community sites in columns):\n",
            world.step, a.nFactors, a.nSites);
    file.Finish();
}

}  // namespace

bool LeavesRawFiles(const SimulationAnswers& answers) {
    return answers.nDataSets <= 2;
}

std::vector<const char*> FilesOfRun(const SimulationAnswers& answers) {
    std::vector<const char*> files = {kReportFile, kOTUNumbersFile};
    if (LeavesRawFiles(answers))
        files.insert(files.end(),
                     {kRawTraitsFile, kRawCommunitiesFile, kRawEnvironmentFile, kTraitTypesFile});
    if (!answers.savesSteps) return files;
    files.push_back(kTraitDataFile);
    files.insert(files.end(), std::begin(kStepFiles), std::end(kStepFiles));
    return files;
}

void PrintTraitScales(FILE* stream, const World& world) {
    const int T = world.answers.nTraits;
    fprintf(stream, "\nTrait means (%d traits):\n", T);
    PrintVectorTab(stream, T, world.traitMean, sDigits, nullptr);
    fprintf(stream, "\nTrait standard deviations (%d traits):\n", T);
    PrintVectorTab(stream, T, world.traitSd, sDigits, nullptr);
}

void PrintTraitsAsRead(FILE* stream, const World& world) {
    const SimulationAnswers& a = world.answers;
    if (a.traits.fromCorrelations) {
        fprintf(stream, "Trait correlation matrix (%d traits):\n", a.nTraits);
        PrintMatrixTab(stream, a.nTraits, a.nTraits, world.traitCorrelations, sDigits);
    } else {
        fprintf(stream,
                "Trait data (not standardized, %d OTUs in rows and %d traits in columns):\n",
                a.nOTUs, a.nTraits);
        PrintMatrixTab(stream, a.nOTUs, a.nTraits, world.B, sDigits);
    }
}

void FinishTraitData(ResultsFile& file, const World& world) {
    const SimulationAnswers& a = world.answers;
    fprintf(file,
            "\nTrait data (standardized to Z scores, %d OTUs in rows and %d traits in columns):\n",
            a.nOTUs, a.nTraits);
    PrintMatrixTab(file, a.nOTUs, a.nTraits, world.B, sDigits);
    PrintTraitScales(file, world);
    file.Finish();
    fprintf(out, "\n\nTrait data (standardized to Z scores) saved on file %s\n", kTraitDataFile);
}

void PrintStepHeadings(const StepFiles& files, const World& world) {
    fprintf(files.environment,
            "Ecosystem data matrix (simulation steps and community sites in rows, %d environmental "
            "variables in columns):\n",
            world.answers.nFactors);
    fprintf(files.expected,
            "Expected community weighted means (CWM), standardized to Z scores according to mean "
            "and standard deviations in the trait matrix matrix (simulation steps and community "
            "sites in rows, %d traits in columns):\n",
            world.answers.nTraits);
    fprintf(files.means,
            "Community weighted means (CWM), (simulation steps and community sites in rows, %d "
            "traits in columns):\n",
            world.answers.nTraits);
}

void PrintStepCommunities(const StepFiles& files, const World& world, Mortality when) {
    const SimulationAnswers& a = world.answers;
    FILE* file = files.communities;
    fprintf(file,
            "\nCommunity data matrix at step %d, %s mortality, for %d community sites in rows and "
            "%d OTUs in columns:\n",
            world.step, when == Mortality::kBefore ? "BEFORE" : "AFTER", a.nSites, a.nOTUs);
    PrintMatrixTab(file, a.nSites, a.nOTUs, world.W, sDigits);
    fprintf(file, "\nAbundance in each community:\n");
    PrintVectorTab(file, a.nSites, world.abundance, nullptr);
    fprintf(file, "Total abundance:\t%d\n", world.total);
}

void PrintStepFilter(const StepFiles& files, const World& world, ConstMatrix<double> distances,
                     ConstMatrix<double> survival) {
    const SimulationAnswers& a = world.answers;
    PrintSiteRows(files.environment, world, a.nFactors, world.E);
    PrintSiteRows(files.expected, world, a.nTraits, world.expected);
    fprintf(files.distances,
            "\nDistances between OTU trait value and expected value at the community site, at step "
            "%d, %d community sites in rows and for %d OTUs in columns:\n",
            world.step, a.nSites, a.nOTUs);
    fprintf(files.distances,
            "Traits that were considered to compute these distances (traits with non-zero "
            "parameters for community responses to ecosystem conditions): \t");
    PrintVectorTab(files.distances, a.nTraits, world.traitFlags, nullptr);
    PrintMatrixTab(files.distances, a.nSites, a.nOTUs, distances, sDigits);
    fprintf(files.survival,
            "\nProbabilities of survival of OTUs at the community sites, at step %d, for %d "
            "community sites in rows and %d OTUs in columns:\n",
            world.step, a.nSites, a.nOTUs);
    PrintMatrixTab(files.survival, a.nSites, a.nOTUs, survival, sDigits);
}

void PrintStepMeans(const StepFiles& files, const World& world) {
    PrintSiteRows(files.means, world, world.answers.nTraits, world.means);
}

void FinishStepFiles(StepFiles& files) {
    for (ResultsFile* file : {&files.environment, &files.expected, &files.distances,
                              &files.survival, &files.communities, &files.means})
        file->Finish();
    for (const SavedFile& saved : kSavedFiles) fprintf(out, saved.message, saved.name);
}

void WriteRawFiles(const World& world) {
    WriteRawTraits(world);
    WriteRawCommunities(world);
    WriteRawEnvironment(world);
    ResultsFile types(kTraitTypesFile);
    for (int t = 0; t < world.answers.nTraits; t++) fprintf(types, "3\t");
    types.Finish();
}

void WriteOTUNumbers(const World& world) {
    ResultsFile file(kOTUNumbersFile);
    for (int i = 1; i <= world.answers.nOTUs; i++) fprintf(file, "%d\n", i);
    file.Finish();
}

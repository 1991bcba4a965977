#include "TSLCLI/analysis_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cfloat>
#include <charconv>
#include <climits>
#include <cstring>
#include <ctime>
#include <span>

#include "TSLCHORD/criteria.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/named_items.h"
#include "TSLCLI/otu_group_file.h"
#include "TSLCLI/trait_groups.h"
#include "TSLCLI/wording.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLIF/analysis_settings.h"
#include "mxlibDim/real_text.h"
#include "mxlibPar/ranks.h"
#include "mxlibPar/side_by_side.h"
#include "mxlibRes/distances.h"

namespace {

struct Word {
    const char* word;
    int number;
};

constexpr Word kYesNo[] = {{"yes", 1}, {"no", 0}};
constexpr Word kBelonging[] = {{"fuzzy", 0}, {"crisp", 1}};
constexpr Word kTails[] = {{"two", 1}, {"one", 0}};
constexpr Word kCongruences[] = {{"mantel", kMantel}, {"procrustes", kProcrustes}, {"rv", kRV}};
constexpr Word kResemblances[] = {{"euclidean", kEuclidean},
                                  {"relative-euclidean", kRelativeEuclidean},
                                  {"absolute", kAbsolute},
                                  {"relative-absolute", kRelativeAbsolute},
                                  {"chord", kChord}};
constexpr const char* kClock = "clock";
constexpr const char* kNone = "none";
constexpr const char* kEach = "each";
constexpr const char* kSpecies = "species";

std::vector<std::string> WordsOf(std::span<const Word> words) {
    std::vector<std::string> list;
    for (const Word& word : words) list.emplace_back(word.word);
    return list;
}

const char* WordFor(std::span<const Word> words, int number) {
    return std::find_if(words.begin(), words.end(),
                        [=](const Word& w) { return w.number == number; })
        ->word;
}

int NumberOf(std::span<const Word> words, const std::string& word) {
    return std::find_if(words.begin(), words.end(), [&](const Word& w) { return word == w.word; })
        ->number;
}

/// Of a simulation --traits is the table.
const char* TraitsOption(bool isSimulation) {
    return isSimulation ? "--traits-in-use" : "--traits";
}

/// Adds the options that belong to one kind of command.
class Adder {
  public:
    Adder(CLI::App& command, AnalysisKind kind) : command_(command), kind_(kind) {}

    Adder& For(std::initializer_list<AnalysisKind> kinds) {
        applies_ = std::find(kinds.begin(), kinds.end(), kind_) != kinds.end();
        return *this;
    }

    Adder& Text(const char* name, std::string* value, const char* type, const char* help) {
        if (applies_)
            command_.add_option(name, *value, help)->type_name(type)->capture_default_str();
        return *this;
    }

    /// `range` tells lower and upper.
    template <class T>
    Adder& Number(const char* name, T* value, T lower, T upper, const char* range,
                  const char* help) {
        if (!applies_) return *this;
        const auto parse = [=](const std::string& text) {
            T number = 0;
            if (!ReadWholeNumber(text, &number) || !(number >= lower && number <= upper))
                throw CLI::ValidationError(name, std::string("takes ") + range + ", not " + text);
            *value = number;
        };
        command_.add_option_function<std::string>(name, parse, help)
            ->type_name("NUMBER")
            ->default_str(CLI::detail::to_string(*value));
        return *this;
    }

    Adder& List(const char* name, std::vector<std::string>* values, const char* help) {
        if (applies_)
            command_.add_option(name, *values, help)->type_name("NAMES")->allow_extra_args(false);
        return *this;
    }

    Adder& Words(const char* name, std::string* value, std::span<const Word> words,
                 const char* help) {
        if (applies_)
            TakesOneOf(command_.add_option(name, *value, help), WordsOf(words))
                ->capture_default_str();
        return *this;
    }

    Adder& Words(const char* name, bool* value, std::span<const Word> words, const char* help) {
        if (applies_)
            TakesOneOf(
                command_.add_option_function<std::string>(
                    name, [=](const std::string& word) { *value = NumberOf(words, word) != 0; },
                    help),
                WordsOf(words))
                ->default_str(WordFor(words, *value ? 1 : 0));
        return *this;
    }

  private:
    CLI::App& command_;
    AnalysisKind kind_;
    bool applies_ = true;
};

/// What the options mean for the data set in memory.
class Settings {
  public:
    Settings(const AnalysisOptions& options, AnalysisKind kind, const FullNames& names)
        : options_(options),
          isRanking_(kind == AnalysisKind::kRanking),
          isSimulation_(kind == AnalysisKind::kSimulation),
          names_(names) {}

    std::vector<std::string> Settle() {
        SettlePreferences();
        if (isRanking_ && opt_struct == kRankTE)
            ScaleByTraitAverages();
        else
            SettleScaleOfTypes();
        SettleTest();
        SettleCongruence();
        SettleTraitsAndWeights();
        optUnitTotalAdjust2 = traitBasedOpt == 1 && options_.standardise;
        SettlePhylogeny();
        SettleOrder();
        SetThreads(options_.threads);
        printDetail = options_.details;
        return typeWords_;
    }

  private:
    void SettlePreferences() const {
        sDigits = options_.digits;
        twoTailedTestMantel = options_.twoTailed;
        sqrtDissimOpt_RaoTraits = options_.rootTraits;
        sqrtDissimOpt_RaoPhyl = options_.rootPhylogeny;
        BealsIncludeOpt = options_.bealsTarget;
        countDoubleAbsence = options_.doubleAbsence ? 1 : 0;
        overfitFactorPCARegr = options_.predictorLimit;
        saveRndData = options_.saveRandom ? 'y' : 'n';
        saveStruct = options_.saveStructures ? 'y' : 'n';
        MakeSessionFileName(whichStructures, sessionName, structExt);
    }

    void TakeTypes() {
        OTUsTypesAreSpecies = options_.types == kSpecies;
        if (OTUsTypesAreSpecies) {
            if (nSpp == 0) FailUsage("--types species: the session has no species");
            std::fill_n(partition_OTUs, tcst, 0);
            TakeSpeciesAsTypes();
            const int* const without = std::find(partition_OTUs, partition_OTUs + tcst, 0);
            if (without != partition_OTUs + tcst)
                FailRun("--types species: the OTU " +
                        Quoted(names_.otus[without - partition_OTUs]) +
                        " has no species: give the types in a file");
        } else if (options_.types == kEach) {
            for (int i = 0; i < tcst; i++) partition_OTUs[i] = i + 1;
        } else {
            const OTUGroups types = ReadOTUGroups(options_.types, "types", names_.otus);
            std::copy(types.group.begin(), types.group.end(), partition_OTUs);
            typeWords_ = types.words;
        }
    }

    void SettleScaleOfTypes() {
        ScaleByTypes();
        TakeTypes();
        SettleTypes();
        if (nGrPoly[0] < 2)
            FailRun("all OTUs are of one type: an analysis compares at least two (--types)");
        SettleFuzziness(!options_.crisp);
    }

    void SettleTest() const {
        optRndTests = !isRanking_;
        niter = options_.iterations;
        SettleNesting(options_.within != kNone);
        if (optRestrictPermutNullModel == 1) {
            const OTUGroups groups = ReadOTUGroups(options_.within, "groups", names_.otus);
            std::copy(groups.group.begin(), groups.group.end(), nestingMembershipOTUs);
        }
        seedOpt = options_.seed == kClock ? 1 : 2;
        unsigned seed = 0;
        ReadWholeNumber(options_.seed, &seed);
        rseed = seedOpt == 1 ? static_cast<unsigned long>(ShareNumber(std::time(nullptr))) : seed;
    }

    void SettleCongruence() const {
        opt_ro = NumberOf(kCongruences, options_.congruence);
        if (opt_ro != kMantel && temEnvQual == 1)
            FailUsage("--congruence " + options_.congruence +
                      ": only mantel takes nominal variables in E");
        const int resemblance = NumberOf(kResemblances, options_.resemblance);
        if (TakesResemblance(isRanking_))
            rese_opt = resemblance;
        else if (resemblance != kEuclidean)
            Warn("--resemblance " + options_.resemblance + " is not used by these settings");
        if (opt_ro == kMantel) whichObj = 'r';
    }

    std::vector<int> IncludedTraits() const {
        std::vector<int> included(nch, options_.traits.empty() ? 1 : 0);
        for (const int trait : PlacesOfOption(TraitsOption(isSimulation_), "trait", options_.traits,
                                              names_.traits, chLabel))
            included[trait] = 1;
        return included;
    }

    void SettleTraitsAndWeights() const {
        const std::vector<int> included = IncludedTraits();
        SettleTraits(included.data());
        if (!options_.traitGroups.empty())
            TakeTraitGroups(options_.traitGroups, names_.traits);
        else if (!options_.weightByGroups)
            return WarnOfAveragedCodes();
        else if (hasTraitGroups == 0)
            FailUsage(
                "--weight-by-groups: the session has no groups of traits: give --trait-groups");
        WeightByTraitGroups(included.data());
        WarnOfAveragedCodes();
    }

    /// The codes of a nominal trait are no amounts.
    void WarnOfAveragedCodes() const {
        if (isRanking_ && std::strchr(CriterionOf(opt_struct).statistic, 'T') == nullptr) return;
        constexpr int kNominal = 2;
        for (int k = 0; k < nch; k++)
            if (chtype[k] == kNominal && weight[k] > 0.0F && !isSimulation_)
                Warn("the trait " + Quoted(names_.traits[k]) +
                     " is nominal: statistics with T average its codes over communities");
    }

    const AnalysisOptions& options_;
    bool isRanking_, isSimulation_;
    const FullNames& names_;
    std::vector<std::string> typeWords_;
};

}  // namespace

AnalysisOptions::AnalysisOptions()
    : digits(sDigits),
      twoTailed(twoTailedTestMantel),
      rootTraits(sqrtDissimOpt_RaoTraits),
      rootPhylogeny(sqrtDissimOpt_RaoPhyl),
      bealsTarget(BealsIncludeOpt),
      doubleAbsence(countDoubleAbsence == 1),
      predictorLimit(overfitFactorPCARegr),
      saveRandom(saveRndData == 'y'),
      saveStructures(saveStruct == 'y') {}

void AddAnalysisOptions(CLI::App& command, AnalysisKind kind, AnalysisOptions* o) {
    using enum AnalysisKind;
    Adder(command, kind)
        .For({kAnalysis, kRanking})
        .Text(
            "--types", &o->types, "each|species|FILE",
            "Types of OTUs: each OTU its own, the session's species, or those of a file: a number "
            "for each OTU in the session's order, or CSV with OTU and type")
        .For({kAnalysis, kRanking, kSimulation})
        .Words(
            "--belonging", &o->crisp, kBelonging,
            "How OTUs belong to types: each to its own alone (crisp), or to others too, as far as "
            "their traits are alike (fuzzy)")
        .For({kAnalysis, kSimulation})
        .Number("--iterations", &o->iterations, 1, INT_MAX, "1 to 2147483647",
                "Arrangements of the test, the observed one among them")
        .For({kAnalysis, kRanking, kSimulation})
        .Text("--within", &o->within, "none|FILE",
              "Permute OTUs only within groups, given like types")
        .Text("--seed", &o->seed, "clock|NUMBER", "Start of the random numbers")
        .Words("--congruence", &o->congruence, kCongruences,
               "How matrices are compared: correlation of resemblances (mantel), fit of one to the "
               "other (procrustes), shared covariance (rv)")
        .Words("--resemblance", &o->resemblance, kResemblances,
               "How communities are compared under mantel")
        .List(TraitsOption(kind == kSimulation), &o->traits,
              "Traits to use, parted by commas; all if not given")
        .For({kAnalysis, kRanking})
        .Words("--weight-by-groups", &o->weightByGroups, kYesNo,
               "Weigh traits by the sizes of the session's groups of traits")
        .List("--trait-groups", &o->traitGroups,
              "Weigh traits by the sizes of these groups: trait=group,trait=group")
        .Words("--standardise", &o->standardise, kYesNo, "Bring communities to unit totals")
        .Words("--double-absence", &o->doubleAbsence, kYesNo,
               "Count matching absences of binary traits as similarity")
        .Words("--root-traits", &o->rootTraits, kYesNo,
               "Rao entropy of traits on square roots of dissimilarities")
        .For({kAnalysis, kRanking, kSimulation})
        .Words("--beals-target", &o->bealsTarget, kYesNo, "Beals smoothing uses the OTU itself")
        .Number("--predictor-limit", &o->predictorLimit, 1.0, double{FLT_MAX},
                "1 to 3.4028234663852886e+38",
                "Regressions under procrustes and rv take at most (n - 2) / this predictors")
        .Number("--digits", &o->digits, 1, INT_MAX, "1 to 2147483647",
                "Significant digits of the text file")
        .For({kAnalysis, kSimulation})
        .Words("--tails", &o->twoTailed, kTails, "Tails of the tests of whole correlations")
        .Words("--details", &o->details, kYesNo, "Print the detailed results")
        .For({kAnalysis})
        .Words("--root-phylogeny", &o->rootPhylogeny, kYesNo,
               "Rao entropy of phylogeny on square roots of dissimilarities")
        .Words("--save-random", &o->saveRandom, kYesNo,
               "Write every permuted table (a large text file)")
        .For({kRanking})
        .Words("--save-structures", &o->saveStructures, kYesNo,
               "Write the tables of every subset (a large text file)")
        .For({kAnalysis, kRanking, kSimulation})
        .Number("--threads", &o->threads, 0, 1024, "0 to 1024",
                "Threads that compute, 0: as many as there are cores; the results are the same");
    command.get_option("--threads")->group(kMachineOptions);
    if (CLI::Option* const seed = command.get_option_no_throw("--seed"))
        seed->check([](const std::string& text) {
            unsigned number = 0;
            return text == kClock || ReadWholeNumber(text, &number)
                       ? std::string()
                       : "takes clock or an integer from 0 to 4294967295, not " + text;
        });
}

std::vector<std::string> ApplyAnalysisOptions(const AnalysisOptions& options, AnalysisKind kind,
                                              const FullNames& names) {
    return Settings(options, kind, names).Settle();
}

CLI::Option* TakesOneOf(CLI::Option* option, const std::vector<std::string>& words) {
    std::string type;
    for (const std::string& word : words) type += (type.empty() ? "" : "|") + word;
    return option->type_name(type)->check(CLI::IsMember(words).description(""));
}

void AddYesNo(CLI::App& command, const std::string& name, bool* value, const std::string& help) {
    Adder(command, AnalysisKind::kAnalysis).Words(name.c_str(), value, kYesNo, help.c_str());
}

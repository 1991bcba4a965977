#include "TSLCHORD/search_header.h"

#include "TSLCHORD/search_frame.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/info_texts.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLRESE/scaling_up_report.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/text.h"

namespace {

void Title(FILE* results) {
    std::fprintf(results, "%s\n\n", version);
    std::fprintf(results, "%s\n", lineL);
    std::fprintf(results, "TRAIT SUBSET OPTIMIZATION\n");
    std::fprintf(results, "%s\n", lineL);
    TimeStamp(results);
    std::fprintf(results, "Session:        %s \n", sessionName);
    std::fprintf(results, "Formatted data: %s \n", whichFormda);
}

void EmptyLine(FILE* results) {
    std::fprintf(results, "\n");
}

void Approach(FILE* results) {
    std::fprintf(results, "Trait-based approach: %s\n", InfoText(traitBasedOptInfo, traitBasedOpt));
}

void Criterion(FILE* results) {
    std::fprintf(results, "Trait ranking criterion (TRC): %s\n",
                 InfoText(opt_structInfo, opt_struct));
}

void CriterionAndMeasure(FILE* results) {
    std::fprintf(results, "Trait ranking criterion (TRC): %s\t%s\n",
                 InfoText(opt_structInfo, opt_struct), InfoText(opt_roInfo, opt_ro));
}

void Measure(FILE* results) {
    std::fprintf(results, "Correlation measure: %s\n", InfoText(opt_roInfo, opt_ro));
}

void UnitTotals(FILE* results) {
    std::fprintf(results,
                 "Community data matrix W %sadjusted to unit totals prior to trait convergence "
                 "evaluation.\n",
                 optUnitTotalAdjust1 ? "" : "NOT ");
    std::fprintf(results,
                 "Community data matrix W %sadjusted to unit totals prior to evaluation.\n",
                 optUnitTotalAdjust2 ? "" : "NOT ");
}

void Pooling(FILE* results) {
    std::fprintf(results, "Pooling of OTUs: %s\n", InfoText(poolCSToptInfo, poolCSTopt));
}

void Types(FILE* results) {
    std::fprintf(results, "Partition of OTUs into types specified by the user:\n");
    for (int i = 0; i < tcst; i++) std::fprintf(results, "%d\t", partition_OTUs[i]);
    std::fprintf(results, "\n");
}

void TypesWithoutLabels(FILE* results) {
    std::fprintf(results,
                 "Clustering method defining types: none (groups were specified by the user).\n");
}

void ResemblanceOfOTUs(FILE* results) {
    std::fprintf(results, "Resemblance function between OTUs: %s\n",
                 InfoText(reseCSToptInfo, reseCSTopt));
}

const char* MatchingAbsences() {
    return InfoText(YesNotInfo, countDoubleAbsence);
}

void GowerSimilarityIndex(FILE* results) {
    std::fprintf(
        results,
        "Gower similarity index modified to count matching absences in binary traits? %s\n",
        MatchingAbsences());
}

void GowerSimilarity(FILE* results) {
    std::fprintf(results,
                 "Gower similarity modified to count matching absences in binary traits? %s\n",
                 MatchingAbsences());
}

void GowerIndex(FILE* results) {
    std::fprintf(results, "Gower index modified to count matching absences in binary traits? %s\n",
                 MatchingAbsences());
}

void RaoOption(FILE* results) {
    std::fprintf(results,
                 "Rao entropy based on traits computed on square root transformed "
                 "dissimilarities? %s\n",
                 InfoText(YesNotInfo, sqrtDissimOpt_RaoTraits ? 1 : 0));
}

void Algorithm(FILE* results) {
    std::fprintf(results, "Ranking algorithm: %s\n",
                 InfoText(rankingAlgorithmInfo, rankingAlgorithm));
}

void FuzzyTransformation(FILE* results) {
    std::fprintf(results, "Fuzzy transformation: %s\n", InfoText(fuzzyInfo, fuzzy));
}

void CommunityResemblance(FILE* results) {
    if (opt_ro == kMantel)
        std::fprintf(results, "Resemblance option between communities: %s\n",
                     InfoText(rese_optInfo, rese_opt));
}

void CommunityResemblanceOrPredictors(FILE* results) {
    CommunityResemblance(results);
    if (opt_ro != kMantel)
        std::fprintf(results,
                     "For partial matrix correlations, the factor (f) for limiting the number of "
                     "predictors in PCA regression in relation to sample size n (number of "
                     "predictors = n/f): %g\n",
                     Printable(overfitFactorPCARegr));
}

/// `all`, or `some` and the labels of the traits in use.
void TraitsInUse(FILE* results, const char* all, const char* some) {
    if (!AnyTraitLeftOut()) {
        std::fputs(all, results);
        return;
    }
    std::fputs(some, results);
    PrintTraitsInColumns(results);
    std::fprintf(results, "\n");
}

void Traits(FILE* results) {
    TraitsInUse(results, "All traits were considered.\n", "Traits that were considered:\n");
}

void TraitsOfSimilarity(FILE* results) {
    TraitsInUse(results,
                "All traits were considered in the computation of Gower similarity index between "
                "populations.\n",
                "Traits considered in the computation of Gower similarity index between "
                "populations:\t");
}

void RatingHeading(FILE* results, const char* columns) {
    if (printRankIntermedResults != 'y') return;
    std::fprintf(results, "\n%-*s\t%s\n", ValueWidth(), "TRC", columns);
}

void HeadingOfRatings(FILE* results) {
    RatingHeading(results, "Trait subset used:");
}

void HeadingOfRatingsWithGroups(FILE* results) {
    RatingHeading(results, "Groups\tTrait subset used:");
}

constexpr HeaderLine kTCAP[] = {Title,   EmptyLine, Approach, Criterion,
                                Measure, Algorithm, Traits,   CommunityResemblance};
constexpr HeaderLine kTDAP_TCAP[] = {Title,
                                     Criterion,
                                     Measure,
                                     Pooling,
                                     Types,
                                     GowerSimilarityIndex,
                                     Algorithm,
                                     FuzzyTransformation,
                                     CommunityResemblance,
                                     Traits,
                                     HeadingOfRatings};
constexpr HeaderLine kTDAP[] = {Title,
                                Approach,
                                UnitTotals,
                                Criterion,
                                Measure,
                                Pooling,
                                Types,
                                ResemblanceOfOTUs,
                                GowerSimilarity,
                                Algorithm,
                                Traits,
                                FuzzyTransformation,
                                CommunityResemblanceOrPredictors,
                                HeadingOfRatings};
constexpr HeaderLine kDivergence[] = {Title,
                                      Approach,
                                      UnitTotals,
                                      CriterionAndMeasure,
                                      Measure,
                                      Pooling,
                                      Types,
                                      ResemblanceOfOTUs,
                                      GowerSimilarity,
                                      RaoOption,
                                      Algorithm,
                                      FuzzyTransformation,
                                      CommunityResemblanceOrPredictors,
                                      HeadingOfRatingsWithGroups};
constexpr HeaderLine kPhylogeny[] = {Title,
                                     Approach,
                                     UnitTotals,
                                     Criterion,
                                     Measure,
                                     Pooling,
                                     Types,
                                     ResemblanceOfOTUs,
                                     GowerIndex,
                                     Algorithm,
                                     FuzzyTransformation,
                                     CommunityResemblanceOrPredictors,
                                     HeadingOfRatings};
constexpr HeaderLine kNicheConservation[] = {Title,
                                             Approach,
                                             UnitTotals,
                                             Criterion,
                                             Pooling,
                                             TypesWithoutLabels,
                                             ResemblanceOfOTUs,
                                             GowerIndex,
                                             Algorithm,
                                             TraitsOfSimilarity,
                                             FuzzyTransformation,
                                             CommunityResemblanceOrPredictors,
                                             HeadingOfRatingsWithGroups};

}  // namespace

const std::span<const HeaderLine> kHeaderTCAP = kTCAP, kHeaderTDAP_TCAP = kTDAP_TCAP,
                                  kHeaderTDAP = kTDAP, kHeaderDivergence = kDivergence,
                                  kHeaderPhylogeny = kPhylogeny,
                                  kHeaderNicheConservation = kNicheConservation;

#pragma once
/// \file
/// What the settings of an analysis mean: the steps that fill TSLGLOB/settings.h behind the answers
/// of the dialogue and behind the options of the command line, and the runs that follow. The data
/// set is in memory. nestingMembershipOTUs and partition_OTUs_Phyl are allocated afresh; the run
/// releases them.

#include "TSLCHORD/search_frame.h"
#include "TSLRESE/scaling_up.h"

/// Names the report and forgets what was derived from an earlier analysis. Comes before the
/// settings of a functional analysis.
void StartFunctionalAnalysis();

/// The scale of a functional analysis, or of a ranking by composition: communities of types.
void ScaleByTypes();
/// The scale of a ranking by r(TE), which knows no types: averages of the traits.
void ScaleByTraitAverages();

/// The session's species as the types: an OTU of several species takes the last one; one of none
/// keeps its label.
void TakeSpeciesAsTypes();
/// Counts the types of partition_OTUs.
void SettleTypes();
/// Fuzzy or crisp belonging to the types.
void SettleFuzziness(bool fuzzyTypes);
/// Gives each OTU the room for its nesting group, to be filled by the caller, or takes it away.
void SettleNesting(bool withinGroups);
/// Whether the resemblance between communities can be chosen: under the matrix correlation, but not
/// in a ranking by r(TE) or r(RE), which bring the Euclidean distance along.
bool TakesResemblance(bool isRanking);
/// `included`: 1 for a trait that takes part, else 0; the weights are the same.
void SettleTraits(const int* included);
/// Divides the weights of the included traits by the number of included traits of their group.
void WeightByTraitGroups(const int* included);
/// The phylogeny takes part where the data set has one and the analysis uses it; the taxa are the
/// types of the partition.
void SettlePhylogeny();
/// The order of the traits, and what no analysis asks for.
void SettleOrder();
/// Behind the settings of a ranking: what its criterion and its types determine.
void SettleRanking();

/// The functional analysis under the present settings: report and track file.
void RunFunctionalAnalysis(const AnalysisReceiver& receiver = {});
/// Names the results file of the ranking for the criterion.
void NameRankingFile();
/// The search for the best subsets of traits under the present settings: results file. EndRanking
/// releases what its settings took.
void RunRanking(const SearchRun& run = {});
void EndRanking();

#include "TSLCLI/analysis_tables.h"

#include <cmath>

#include "TSLCLI/csv_writer.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/ordination_table.h"
#include "TSLIFFMT/selection.h"
#include "TSLRESE/analysis_statistics.h"
#include "TSLRESE/scaling_up_matrices.h"
#include "mxlib/belonging.h"
#include "mxlibRes/distances.h"

namespace {

using Names = std::vector<std::string>;

constexpr const char* kCommunity = "community";
constexpr const char* kOTU = "OTU";

bool IsTaken(const AnalysisStatistic& statistic) {
    return includePhylogeny != 0 || !statistic.needsPhylogeny;
}

Names StatisticNames() {
    Names names;
    for (const AnalysisStatistic& statistic : kAnalysisStatistics)
        if (IsTaken(statistic)) names.emplace_back(statistic.name);
    return names;
}

/// The others stand in T as columns of 0.
std::vector<int> PlacesInUse() {
    std::vector<int> places;
    for (int k = 0; k < nch; k++)
        if (weight[k] > 0.0F) places.push_back(k);
    return places;
}

Names TraitsInUse(const FullNames& names) {
    return Picked(names.traits, PlacesInUse());
}

/// Columns of T.
ScopedMatrix<double> AveragesInUse(ConstMatrix<double> all) {
    const std::vector<int> places = PlacesInUse();
    ScopedMatrix<double> T(ncsm, static_cast<std::ptrdiff_t>(places.size()));
    for (int i = 0; i < ncsm; i++)
        for (std::size_t k = 0; k < places.size(); k++) T[i][k] = all[i][places[k]];
    return T;
}

/// What a statistic says, with what the observed one stands for where it is another.
std::string MeaningInTable(const AnalysisStatistic& statistic) {
    const std::string meaning(MeaningOf(statistic));
    const bool isOther = opt_ro != kMantel && statistic.value == &AnalysisStatistic::Test::roXZ_T;
    return isOther ? meaning + " (the value is that of XY.T, the null values are its own)"
                   : meaning;
}

}  // namespace

bool ComparesCompositions() {
    return opt_ro != kMantel || (rese_opt != kRelativeEuclidean && rese_opt != kRelativeAbsolute);
}

Names TypeNames(const FullNames& names, const Names& words) {
    ScopedVector<int> labels(tcst);
    int count = 0;
    CountGroupsNew(tcst, partition_OTUs, &count, labels);
    Names types;
    for (int g = 0; g < count; g++) {
        const int place = labels[g] - 1;
        if (OTUsTypesAreSpecies)
            types.push_back(NameOfSpecies(spp[place]));
        else if (!words.empty())
            types.push_back(words[place]);
        else if (count == tcst && partition_OTUs[g] == g + 1)
            types.push_back(names.otus[g]);
        else
            types.push_back(std::to_string(labels[g]));
    }
    return types;
}

AnalysisTables::AnalysisTables(const FullNames& names, const Names& typeWords, ResultFolder* folder)
    : names_(names), typeWords_(typeWords), folder_(*folder) {}

AnalysisReceiver AnalysisTables::Receiver() {
    if (!folder_.IsWanted()) return {};
    null_.emplace(folder_.Table("null.csv"), StatisticNames());
    AnalysisReceiver receiver;
    receiver.averages = [this](const ScalingUpMatrices& m) {
        WriteMatrix<double>(folder_.Table("T.csv"), kCommunity, names_.communities,
                            TraitsInUse(names_), AveragesInUse(m.T));
    };
    receiver.matrices = [this](const ScalingUpMatrices& m) {
        WriteMatrices(m);
        WriteCommunities(m);
        WriteResemblances(m);
    };
    receiver.arrangement = [this](const Test& test) { AddArrangement(test); };
    receiver.tested = [this](const Test& test) {
        WriteOrdinationOfT(test);
        WriteStatistics(test);
    };
    return receiver;
}

void AnalysisTables::WriteMatrices(const ScalingUpMatrices& m) {
    const Names types = TypeNames(names_, typeWords_);
    const bool isFuzzy = fuzzy == kFuzzyTypes;
    WriteMatrix<double>(folder_.Table("TNormalised.csv"), kCommunity, names_.communities,
                        TraitsInUse(names_), AveragesInUse(m.T));
    WriteMatrix<double>(folder_.Table("X.csv"), kCommunity, names_.communities, types,
                        isFuzzy ? m.X : m.XCrisp);
    WriteMatrix<double>(folder_.Table("U.csv"), kOTU, names_.otus, types, isFuzzy ? m.U : m.C);
    CsvWriter table(folder_.Table("types.csv"), {kOTU, "type"});
    for (int i = 0; i < tcst; i++) {
        int type = 0;
        while (m.typeLabels[type] != partition_OTUs[i]) type++;
        table.Text(names_.otus[i]);
        table.Text(types[type]);
        table.EndRow();
    }
    table.Finish();
    const OrdinatedTable composition = {"type", &names_.communities, &types,
                                        isFuzzy ? m.X : m.XCrisp, false};
    if (CanOrdinate(composition))
        WriteOrdination(folder_.Table("ordinationX.csv"), composition, names_.variables);
    if (includePhylogeny == 0) return;
    // The taxa are the types.
    WriteMatrix<double>(folder_.Table("P.csv"), kCommunity, names_.communities, types, m.P);
    WriteMatrix<double>(folder_.Table("Q.csv"), kOTU, names_.otus, types, m.Q);
}

/// Of the T that is compared: that of the report, divided by the sum of each trait, is upside down
/// where the sum is negative.
void AnalysisTables::WriteOrdinationOfT(const Test& test) {
    const Names traits = TraitsInUse(names_);
    const ScopedMatrix<double> T = AveragesInUse(test.outT);
    const OrdinatedTable table = {"trait", &names_.communities, &traits, T, true};
    if (CanOrdinate(table))
        WriteOrdination(folder_.Table("ordinationT.csv"), table, names_.variables);
}

void AnalysisTables::WriteCommunities(const ScalingUpMatrices& m) {
    Names header = {kCommunity, "Gini-Simpson", "Rao_traits", "redundancy_traits"};
    if (includePhylogeny != 0)
        header.insert(header.end(), {"Rao_phylogeny", "redundancy_phylogeny"});
    CsvWriter table(folder_.Table("communities.csv"), header);
    for (int i = 0; i < ncsm; i++) {
        table.Text(names_.communities[i]);
        for (const double* index : {m.D.get(), m.RaoTraits.get(), m.redundancyTraits.get()})
            table.RealAsIs(index[i]);
        if (includePhylogeny != 0)
            for (const double* index : {m.RaoPhyl.get(), m.redundancyPhyl.get()})
                table.RealAsIs(index[i]);
        table.EndRow();
    }
    table.Finish();
}

void AnalysisTables::WriteSquare(const char* table, const char* corner, const Names& names,
                                 const double* const* upper) {
    const int n = static_cast<int>(names.size());
    ScopedMatrix<double> whole(n, n);
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++) whole[i][j] = whole[j][i] = upper[i][j];
    WriteMatrix<double>(folder_.Table(table), corner, names, names, whole);
}

void AnalysisTables::WriteResemblances(const ScalingUpMatrices& m) {
    ScopedMatrix<double> S(tcst, tcst);
    for (int i = 0; i < tcst; i++)
        for (int j = i; j < tcst; j++) S[i][j] = m.Sb[i][j];
    WriteSquare("S.csv", kOTU, names_.otus, S);
    if (opt_ro != kMantel) return;
    const Names& communities = names_.communities;
    WriteSquare("DE.csv", kCommunity, communities, m.DE);
    WriteSquare("DT.csv", kCommunity, communities, m.DT);
    WriteSquare("DZ.csv", kCommunity, communities, m.DZ);
    WriteSquare("DY.csv", kCommunity, communities, m.DY);
    if (!ComparesCompositions()) return;
    ScopedMatrix<double> DX(ncsm, ncsm);
    NominalReseNonHier(ncsm, m.nTypes, fuzzy == kFuzzyTypes ? m.X : m.XCrisp, DX, rese_opt);
    WriteSquare("DX.csv", kCommunity, communities, DX);
    if (includePhylogeny != 0) WriteSquare("DP.csv", kCommunity, communities, m.DP);
}

void AnalysisTables::AddArrangement(const Test& test) {
    values_.clear();
    for (const AnalysisStatistic& statistic : kAnalysisStatistics)
        if (IsTaken(statistic)) values_.push_back(test.*statistic.value);
    null_->Add(values_);
}

void AnalysisTables::WriteStatistics(const Test& test) {
    null_->Finish();
    Names header = {"statistic", "meaning"};
    header.insert(header.end(), kNullColumns.begin(), kNullColumns.end());
    CsvWriter table(folder_.Table("statistics.csv"), header);
    int k = 0;
    for (const AnalysisStatistic& statistic : kAnalysisStatistics) {
        if (!IsTaken(statistic)) continue;
        table.Text(statistic.name);
        table.Text(MeaningInTable(statistic));
        PutNullCells(test.*statistic.value, test.*statistic.probability, test.nIterations,
                     null_->moments(k++), &table);
        table.EndRow();
    }
    table.Finish();
}

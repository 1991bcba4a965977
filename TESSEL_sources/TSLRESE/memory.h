#pragma once
/// \file
/// The memory that the functional analysis takes, told before it is taken.

/// What the memory depends on.
struct AnalysisSizes {
    int OTUs;
    int communities;
    int types;
    int taxa;          ///< 0 without phylogeny
    int measure;       ///< of congruence: kMantel, kProcrustes, kRV
    int permutations;  ///< none or some
    bool coordinates;  ///< of the phylogeny are made
};

/// Of the data set and the settings in memory.
AnalysisSizes SizesOfAnalysis();

/// Bytes that an analysis of these sizes takes at its peak, beside the data set: the tables that
/// grow with the squares of OTUs and communities or with OTUs by communities, as they are filled.
double MemoryOfAnalysis(const AnalysisSizes& sizes);

/// Says on standard error how much an analysis takes, when that is more than half of what is left.
void TellLargeMemory(double bytes);

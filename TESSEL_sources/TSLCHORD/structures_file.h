#pragma once
/// \file
/// The structures file: the tables that a search makes for each subset, printed as the report of
/// the functional analysis prints its own. The user asks for it by a preference (saveStruct).

#include <cstdio>

#include "TSLCHORD/ranked_list.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/replacement.h"

/// Wording of the tables of types.
struct StructureTexts {
    const char* similarity;   ///< OTUs, traits
    const char* belonging;    ///< OTUs, types
    const char* partition;    ///< OTUs, types
    const char* composition;  ///< communities, types
    const char* resemblance;  ///< by composition
    bool describesTypes;      ///< crisp belonging, sizes and average traits of the types follow
};
extern const StructureTexts kGroupTexts;  ///< of the search on r(XE)
extern const StructureTexts kTypeTexts;   ///< of all others

struct StructuresFile {
    FILE* stream = nullptr;  ///< null: nothing is printed
    const StructureTexts* texts = &kTypeTexts;
};

/// Opens the file in the session's folder if the user wants it, else null. The search finishes it.
ResultsFile OpenStructures(const char* name);

// What stands for all subsets
void PrintSiteResemblance(FILE* stream, Matrix<double> DE);
void PrintTraitsOfOTUs(FILE* stream, ConstMatrix<float> B);
/// The phylogeny behind P: its resemblance, taxa, Q, P and DP.
template <class Real>
void PrintPhylogenyOfSearch(FILE* stream, ConstMatrix<Real> Q, ConstMatrix<Real> P,
                            Matrix<double> DP);

// Tables of a subset
template <class Real>
void PrintAverages(FILE* stream, const TraitSubset& subset, ConstMatrix<Real> averages);
template <class Real>
void PrintNormalised(FILE* stream, ConstMatrix<Real> T);
void PrintSimilarity(const StructuresFile& file, const TraitSubset& subset, Matrix<float> S);
template <class Real>
void PrintTypesOfSubset(const StructuresFile& file, int K, ConstMatrix<float> U,
                        ConstMatrix<Real> X);
void PrintResemblanceMatrix(FILE* stream, const char* heading, Matrix<double> D);

/// Numbers of OTUs in the types, each followed by a tab.
void PrintSizesOfTypes(FILE* stream, int K);

/// Labels of the members, each with a tab, and the end of the line.
void PrintMembers(FILE* stream, const TraitSubset& subset);

/// D = its residuals on DT; both by their upper halves. Then prints D behind the heading.
void PrintResiduals(FILE* stream, const char* heading, ConstMatrix<double> DT, Matrix<double> D);

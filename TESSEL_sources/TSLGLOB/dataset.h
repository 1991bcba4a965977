#pragma once
/// \file
/// The community data set in memory. OpenFormda allocates it, FreeGlobals2 releases it. Missing
/// values of B, W and E are -999. A label buffer of size n holds n - 1 characters.

inline constexpr int kLabelLength = 10;    ///< characters of trait, community, variable labels
inline constexpr int kSpeciesLength = 70;  ///< characters of a species name
inline constexpr int kTitleLength = 319;   ///< characters of the data set's title
inline constexpr int kPartitions = 10;     ///< partitions that a session can carry
inline constexpr int kPartitionLabelLength = 20;
inline constexpr int kGroupLabelLength = 4;
inline constexpr int kCaCodes = 7;

// Counts
extern int nch;      ///< traits
extern int ncsm;     ///< communities
extern int tcst;     ///< OTUs
extern int nSpp;     ///< species; 0 without species names
extern int nenv;     ///< ecological variables; 0 without matrix E
extern int nClados;  ///< columns of phylogenyData (phylogenyMatrixType 2)
extern int SMWSize;  ///< window size of a pooled data set, else 1

// Traits and matrix B
extern char** chLabel;      ///< nch x 11
extern int* chtype;         ///< nch: 1 binary, 2 nominal, 3 interval or ratio, 4 ordinal
extern float* chrange;      ///< nch: range of each type 3 trait, filled by RangeStates
extern int* onsta;          ///< nch: number of distinct states
extern int* traitGroups;    ///< nch: group of each trait, meaningful with hasTraitGroups
extern int hasTraitGroups;  ///< groups of traits were specified
extern float** csm_Float;   ///< B, tcst x nch

// Communities and matrix W
extern char** reLabel;    ///< ncsm x 11
extern int* ncst;         ///< ncsm: OTUs per community after CheckData; zeros after reading
extern float** cadat;     ///< W, tcst x ncsm
extern int emptyReleves;  ///< communities without OTU after CheckData

// Matrix E
extern float** env;        ///< ncsm x nenv, only when nenv > 0
extern char** envLabel;    ///< nenv x 11
extern char envName[320];  ///< name of the file that E came from; may hold several words
extern int* envVarType;    ///< nenv: 1 binary, 2 nominal, 3 quantitative, 4 ordinal
extern int
    optEnvVarType;  ///< 1 quantitative same units, 2 different, 3 qualitative, 4 binary, 5 mixed
extern int temEnvQuant;  ///< 1 when a variable of the data set read last has type 3
extern int temEnvQual;   ///< the same for type 2
extern int temEnvBin;    ///< the same for type 1

// Species
extern char** spp;         ///< nSpp x 71
extern char whichSpp[48];  ///< name of the file that the names came from
extern char** sppRelMap;   ///< nSpp x ncsm of '1' and '0': species occurs in community
extern char** cstSppMap;   ///< tcst x nSpp of '1' and '0': OTU belongs to species

// Phylogeny
extern int hasPhylogeny;  ///< the data set has a phylogenetic matrix
extern int
    phylogenyMatrixType;  ///< 3 distances, 1 similarities, 2 data; other: no matrix in the file
extern double** phylogenyRese;  ///< F, tcst x tcst; null when there is none
extern float** phylogenyData;   ///< tcst x nClados, type 2 only; null when there is none
extern int* phylogenyVarType;   ///< nClados; null when there is none
extern int phylogenyOTUs;       ///< OTUs that the phylogeny in memory was made for (owner: readers)

/// Puts a matrix F of zeros for tcst OTUs in the place of the phylogeny in memory.
void RenewPhylogeny();

extern char dataName[kTitleLength + 1];  ///< title: first line of the formatted data file

// Working arrays of the analyses and the track file, zero when the data set has been read
extern int* nchor;             ///< nch: trait numbers from 1 in the order of the analysis
extern float* weight;          ///< nch: trait weights
extern int* rcst;              ///< nch: objects at each level
extern int* nGrPoly;           ///< nch: polythetic groups at each level
extern char** partLabel;       ///< 10 x 21
extern int* nGroupsP;          ///< 10
extern int** groupRelP;        ///< 10 x ncsm
extern char*** grLabelP;       ///< 10 x ncsm x 5
extern int* relSelect;         ///< ncsm
extern char** partCstLabel;    ///< 10 x 21
extern int* nGroupsCstP;       ///< 10
extern int** groupCstP;        ///< 10 x tcst
extern char*** grCstLabelP;    ///< 10 x tcst x 5
extern int* whichLevelGrCstP;  ///< 10
extern int* partition_OTUs;    ///< tcst: the current partition into types
extern int** cstTrack;         ///< nch x tcst; not released by FreeGlobals2
extern int cstTrackRows;       ///< rows of cstTrack (owner: RenewPartitions)
extern float ca_code[kCaCodes];

/// Puts zeroed memberships and labels of all partitions, relSelect, partition_OTUs and cstTrack for
/// that many communities and OTUs in the place of those in memory, which are for ncsm and tcst.
void RenewPartitions(int communities, int otus);

// Current selections, derived by ReadTrack; they point into the arrays above
extern int nGroups, nPart, nCstGroups, nPartCst;
extern char** grLabel;
extern int* groupRel;
extern int* groupCst;
extern char** grCstLabel;

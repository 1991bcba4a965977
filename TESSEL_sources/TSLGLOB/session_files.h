#pragma once
/// \file
/// Names of the session's files and flags of what the session holds.

#include "TSLGLOB/shell.h"

using FileName = char[kFileNameLength + 1];

// Suffixes
extern const char* const trackExt;      ///< "Trk.txt"
extern const char* const formdaExt;     ///< "Formda.txt"
extern const char* const prindaExt;     ///< "Prinda.txt"
extern const char* const hierExt;       ///< "Hie.txt"
extern const char* const structExt;     ///< "Str.txt"
extern const char* const rndDataExt;    ///< "RDa.txt"
extern const char* const versionTrack;  ///< version word of the track file

// Names: the session's name and a suffix; "NULL" until set
extern FileName whichTrack, whichFormda, whichPrinda, whichHier, whichStructures, whichRndData;
/// Results of the trait ranking, whose suffixes are longer than those of the other files.
inline constexpr int kRankingSuffixLength = 32;
extern char whichChorder[kSessionNameLength + kRankingSuffixLength + 1];
/// Names that the track file carries and nothing sets
extern FileName whichEnvRese, whichEnvScores, whichEnvRank, whichCstRese, whichNRese, whichPRese,
    whichRo, whichProbRo, whichScores, whichProbN, whichReClus, whichCstClus, whichAOCScor,
    whichComplexity, whichVelocity, whichRoVelComplex;

/// name = the session's name followed by `suffix`, cut to the room.
void MakeSessionFileName(FileName& name, const char* session, const char* suffix);

// Flags of what the session holds, 0 or 1
extern int hasHier, hasCstRese, hasCstClus, hasNRese, hasPRese, hasProbN, hasRo, hasProbRo,
    hasEnvRese, hasScores, hasReClus, hasAOCScor, hasEnvScores, hasEnvRank, hasVegOrdiCorrel,
    hasEnvOrdiCorrel, hasComplexity, hasVelocity, hasRoVelComplex, hasRoVelComplexPROB;

// Settings that only travel through the track file
extern int envVecTrOpt, optEnvStruct, groupDissMeth, empir_opt, keepRichness, whichPart,
    whichPartAOC, whichPartCstAOC, whichCstPart, doDistrib, adjacentRelOpt, whichLevelCst,
    whichLevelGrCST;

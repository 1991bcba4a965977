#include "TSLGLOB/session_files.h"

#include <cstdio>

const char* const trackExt = "Trk.txt";
const char* const formdaExt = "Formda.txt";
const char* const prindaExt = "Prinda.txt";
const char* const hierExt = "Hie.txt";
const char* const structExt = "Str.txt";
const char* const rndDataExt = "RDa.txt";
const char* const versionTrack = "07Jul17";

FileName whichTrack = "NULL";
FileName whichFormda = "NULL";
FileName whichPrinda = "NULL";
FileName whichHier = "NULL";
FileName whichStructures = "NULL";
FileName whichRndData = "NULL";
char whichChorder[kSessionNameLength + kRankingSuffixLength + 1] = "NULL";
FileName whichEnvRese = "NULL";
FileName whichEnvScores = "NULL";
FileName whichEnvRank = "NULL";
FileName whichCstRese = "NULL";
FileName whichNRese = "NULL";
FileName whichPRese = "NULL";
FileName whichRo = "NULL";
FileName whichProbRo = "NULL";
FileName whichScores = "NULL";
FileName whichProbN = "NULL";
FileName whichReClus = "NULL";
FileName whichCstClus = "NULL";
FileName whichAOCScor = "NULL";
FileName whichComplexity = "NULL";
FileName whichVelocity = "NULL";
FileName whichRoVelComplex = "NULL";

int hasHier = 0;
int hasCstRese = 0;
int hasCstClus = 0;
int hasNRese = 0;
int hasPRese = 0;
int hasProbN = 0;
int hasRo = 0;
int hasProbRo = 0;
int hasEnvRese = 0;
int hasScores = 0;
int hasReClus = 0;
int hasAOCScor = 0;
int hasEnvScores = 0;
int hasEnvRank = 0;
int hasVegOrdiCorrel = 0;
int hasEnvOrdiCorrel = 0;
int hasComplexity = 0;
int hasVelocity = 0;
int hasRoVelComplex = 0;
int hasRoVelComplexPROB = 0;
int envVecTrOpt = 0;
int optEnvStruct = 0;
int groupDissMeth = 0;
int empir_opt = 0;
int keepRichness = 0;
int whichPart = 0;
int whichPartAOC = 0;
int whichPartCstAOC = 0;
int whichCstPart = 0;
int doDistrib = 0;
int adjacentRelOpt = 0;
int whichLevelCst = 0;
int whichLevelGrCST = 1;

void MakeSessionFileName(FileName& name, const char* session, const char* suffix) {
    std::snprintf(name, sizeof(FileName), "%s%s", session, suffix);
}

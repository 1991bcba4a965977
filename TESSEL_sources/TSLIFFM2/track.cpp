#include "TSLIFFM2/track.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/data_fields.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/replacement.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibDim/terminal.h"
#include "mxlibDim/text.h"
#include "mxlibDim/with_stream.h"

namespace {

// Runs of plain fields, in the order of the file.
FileName* const kNames[] = {&whichEnvRese,     &whichEnvScores, &whichEnvRank,    &whichHier,
                            &whichCstRese,     &whichNRese,     &whichPRese,      &whichRo,
                            &whichProbRo,      &whichScores,    &whichProbN,      &whichReClus,
                            &whichCstClus,     &whichAOCScor,   &whichComplexity, &whichVelocity,
                            &whichRoVelComplex};

int* const kState[] = {&isHierarchical,   &traitBasedOpt,
                       &hasEnvRese,       &hasEnvScores,
                       &hasEnvRank,       &hasHier,
                       &hasCstRese,       &hasNRese,
                       &hasPRese,         &hasRo,
                       &hasProbRo,        &hasScores,
                       &hasProbN,         &hasReClus,
                       &hasCstClus,       &hasAOCScor,
                       &hasVegOrdiCorrel, &hasEnvOrdiCorrel,
                       &hasComplexity,    &hasVelocity,
                       &hasRoVelComplex,  &hasRoVelComplexPROB,
                       &optEnvStruct,     &rese_opt,
                       &reseCstOpt,       &part};

int* const kMeasures[] = {&reseTypeOrd, &reseTypeClus,  &reseTypeEv, &reseTypeRnd, &reseTypeERank,
                          &cohe,        &groupDissMeth, &empir_opt,  &keepRichness};

int* const kLastOptions[] = {&adjacentRelOpt, &whichLevelCst, &poolCSTopt, &clusMethPoolCSTs,
                             &SMWSize};

// The two sides of a field. The record is told once, by Walk, for whichever side it is given; only
// the reader heeds the limits.

struct Reader {
    DataFile file;
};

struct Writer {
    FILE* stream;
};

void Name(const Reader& side, FileName& name) {
    freadckWord(side.file.stream, name, kFileNameLength, side.file.name);
}
void Name(const Writer& side, const FileName& name) {
    std::fprintf(side.stream, "%s\n", name);
}

void Integer(const Reader& side, int& value, const char* /*format*/ = nullptr) {
    value = ReadInt(side.file);
}
void Integer(const Writer& side, int value, const char* format = "%d\n") {
    std::fprintf(side.stream, format, value);
}

void IntegerWithin(const Reader& side, int& value, int lowest, int highest) {
    value = ReadIntWithin(side.file, lowest, highest);
}
void IntegerWithin(const Writer& side, int value, int /*lowest*/, int /*highest*/) {
    Integer(side, value);
}

void Real(const Reader& side, float& value) {
    ReadFloats(side.file, &value, 1);
}
void Real(const Writer& side, float value) {
    std::fprintf(side.stream, "%f\n", Printable(value));
}

void Integers(const Reader& side, int* values, int n, const char* /*end*/) {
    ReadInts(side.file, values, n);
}
void Integers(const Writer& side, const int* values, int n, const char* end) {
    for (int i = 0; i < n; i++) std::fprintf(side.stream, "%d ", values[i]);
    std::fputs(end, side.stream);
}

void IntegersWithin(const Reader& side, int* values, int n, int lowest, int highest) {
    for (int i = 0; i < n; i++) values[i] = ReadIntWithin(side.file, lowest, highest);
}
void IntegersWithin(const Writer& side, const int* values, int n, int /*lowest*/, int /*highest*/) {
    Integers(side, values, n, "\n");
}

void Labels(const Reader& side, char* const* labels, int n, int length, const char* /*format*/) {
    ReadWords(side.file, labels, n, length);
}
void Labels(const Writer& side, const char* const* labels, int n, int /*length*/,
            const char* format) {
    for (int i = 0; i < n; i++) std::fprintf(side.stream, format, labels[i]);
    std::fputc('\n', side.stream);
}

/// OTUs or types at the level of a partition, as many as it has members.
int ObjectsAtLevel(const Reader& side, int level) {
    const int objects = rcst[level - 1];
    if (objects < 0 || objects > tcst) FailAtEnd(side.file.stream, side.file.name);
    return objects;
}
int ObjectsAtLevel(const Writer& /*side*/, int level) {
    return rcst[level - 1];
}

template <class Side>
void WalkCommunityPartitions(const Side& side) {
    IntegerWithin(side, nPart, 0, kPartitions);
    IntegerWithin(side, whichPart, 0, kPartitions - 1);
    Labels(side, partLabel, nPart, kPartitionLabelLength, "%s ");
    IntegersWithin(side, nGroupsP, nPart, 0, ncsm);
    for (int k = 0; k < nPart; k++)
        Labels(side, grLabelP[k], nGroupsP[k], kGroupLabelLength, "%s ");
    for (int k = 0; k < nPart; k++) Integers(side, groupRelP[k], ncsm, "\n");
}

template <class Side>
void WalkOTUPartitions(const Side& side) {
    IntegerWithin(side, nPartCst, 0, kPartitions);
    IntegerWithin(side, whichCstPart, 0, kPartitions - 1);
    Labels(side, partCstLabel, nPartCst, kPartitionLabelLength, "%s ");
    IntegersWithin(side, nGroupsCstP, nPartCst, 0, tcst);
    // Padding is all that separates these: labels that fill it run together and do not read back.
    for (int k = 0; k < nPartCst; k++)
        Labels(side, grCstLabelP[k], nGroupsCstP[k], kGroupLabelLength, "%-3s");
    IntegersWithin(side, whichLevelGrCstP, nPartCst, 1, nch);
    for (int k = 0; k < nPartCst; k++)
        Integers(side, groupCstP[k], ObjectsAtLevel(side, whichLevelGrCstP[k]), "\n");
}

/// The record behind the first two lines.
template <class Side>
void Walk(const Side& side) {
    for (FileName* name : kNames) Name(side, *name);
    for (int* value : kState) Integer(side, *value);
    Integers(side, nchor, nch, "\n");
    Integers(side, rcst, nch, "\n");
    Integers(side, nGrPoly, nch, "\n");
    Integer(side, fuzzy);
    Real(side, fuzziness);
    for (int* value : kMeasures) Integer(side, *value);
    WalkCommunityPartitions(side);
    Integer(side, whichPartAOC, "%d ");
    Integer(side, whichPartCstAOC, "%d \n");
    Integer(side, whichLevelGrCST);
    WalkOTUPartitions(side);
    Integers(side, relSelect, ncsm, "\n");
    Integer(side, doDistrib);
    for (int* value : kLastOptions) Integer(side, *value);
}

/// The selections point at the partitions that the record names.
void SelectPartitions() {
    nGroups = nGroupsP[whichPart];
    grLabel = grLabelP[whichPart];
    groupRel = groupRelP[whichPart];
    nCstGroups = nGroupsCstP[whichCstPart];
    grCstLabel = grCstLabelP[whichCstPart];
    groupCst = groupCstP[whichCstPart];
}

/// A file of two lines ends here. No such number is ever written: in a whole record a word follows,
/// which stays where it is.
bool EndsAfterVersion(const DataFile& file) {
    long long number = 0;
    const int fields = std::fscanf(file.stream, "%lld", &number);
    if (std::ferror(file.stream) != 0) FailAtEnd(file.stream, file.name);
    if (fields == 1) envVecTrOpt = TruncateToInt(static_cast<double>(number));
    return fields == EOF;
}

void ReadRecord(const DataFile& file) {
    const Reader reader{file};
    Name(reader, whichFormda);
    FileName word;
    Name(reader, word);
    const bool isOtherVersion = std::strcmp(word, versionTrack) != 0;
    if (isOtherVersion)
        std::fprintf(out, "%s\n%s\n",
                     "\n\aFormda file is compatible, but other files of the session ",
                     "are not compatible with this program version.                               "
                     "                      ");
    if (EndsAfterVersion(file) || isOtherVersion) return;
    Walk(reader);
    SelectPartitions();
}

/// The track file as the open one, for the length of a scope.
class OpenTrack {
  public:
    explicit OpenTrack(FILE* stream) {
        if (stream == nullptr) RaiseError(kFailedOpening);
        trackFp = stream;
    }
    ~OpenTrack() { trackFp = nullptr; }
    OpenTrack(const OpenTrack&) = delete;
    OpenTrack& operator=(const OpenTrack&) = delete;
};

}  // namespace

void WriteTrack(char full) {
    FileReplacement file(whichTrack, volumeName);
    const OpenTrack open(file);
    std::fprintf(file, "%s\n%s\n", whichFormda, versionTrack);
    if (full != 0) Walk(Writer{file});
    // The session goes on with what it has in memory.
    if (file.Commit()) return;
    const int reason = errno;
    std::fprintf(ErrorStream(), "\ncan't write %s%s \n\a", volumeName, whichTrack);
    TellPerson(std::strerror(reason));
}

bool ReadDataFileName() {
    trackFp = fopenck(whichTrack, volumeName, "r");
    if (trackFp == nullptr) RaiseError(kFailedOpening);
    static_assert(kFileNameLength == 47);
    const int fields = std::fscanf(trackFp, "%47s", whichFormda);
    FILE* const track = std::exchange(trackFp, nullptr);
    if (std::ferror(track) != 0) FailAtEnd(track, whichTrack);
    std::fclose(track);
    return fields != EOF;
}

int ReadTrack() {
    const OpenTrack open(fopenck(whichTrack, volumeName, "r"));
    WithStream(trackFp, [] { ReadRecord({trackFp, whichTrack}); });
    return 1;
}

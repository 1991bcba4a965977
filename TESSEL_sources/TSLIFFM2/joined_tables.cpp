#include "TSLIFFM2/joined_tables.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/formda_versions.h"
#include "TSLIFFMT/raw_files.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/text.h"
#include "mxlibRes/missing.h"

namespace {

constexpr char kTraitNumbersDiffer[] = "\nThe number of traits do not match.\n\n";
constexpr char kTraitLabelsDiffer[] = "\nLabels for traits do not match (or their order).\n\n";
constexpr char kTraitTypesDiffer[] = "\nTrait types do not match.\n\n";
constexpr char kCommunityLabelsClash[] =
    "\b\nThere are releve labels in the second session that are identical to\n"
    "labels in the first session. Change them (or reduce the second\n"
    "session labels length to 9 letters or digits) and try again.\n";
constexpr char kCodesDiffer[] =
    "\nTranslating values for cover-abundance scale codes do not match.\n\n";
constexpr char kVariableNumbersDiffer[] =
    "\nThe number of environmental variables do not match.\n\n";
constexpr char kVariableTypesDiffer[] = "\nThe types of environmental variables do not match.\n\n";
constexpr char kVariableLabelsDiffer[] = "\nLabels for environmental variables do not match.\n\n";
constexpr char kSpeciesInOneOnly[] =
    "\nOne session has species names and the other not.\n"
    "Both files must have or not have species names.\n\n";
constexpr const char* kMatch = nullptr;

constexpr long long kFieldBytes = 2;  // a character and the separator

bool SameLabels(int n, const char* const* a, const char* const* b) {
    return std::equal(a, a + n, b,
                      [](const char* x, const char* y) { return std::strcmp(x, y) == 0; });
}

bool SameNumbers(const DataFile& file, int n, const int* numbers) {
    const ScopedVector<int> read(n);
    ReadInts(file, read, n);
    return std::equal(numbers, numbers + n, read.get());
}

template <class T>
void CopyTable(int rows, int cols, ConstMatrix<T> from, Matrix<T> to) {
    for (int i = 0; i < rows; i++) std::copy_n(from[i], cols, to[i]);
}

/// The file's number of things, which join those in memory.
int ReadJoiningCount(const DataFile& file, int inMemory, int* joined) {
    const int count = ReadCount(file, 1, kFieldBytes);
    *joined = inMemory + count;
    return count;
}

/// A table that the two data sets fill.
template <class T>
T** MakeTable(std::optional<ScopedMatrix<T>>& table, int rows, int cols) {
    RequireRoomForTable(rows, cols, sizeof(T));
    return table.emplace(rows, cols);
}

const char* CompareTraits(const DataFile& file) {
    std::string title(kTitleLength + 1, '\0');
    freadlineck(file.stream, kTitleLength, title.data(), file.name);
    if (ReadInt(file) != nch) return kTraitNumbersDiffer;
    const ScopedMatrix<char> labels(nch, kLabelLength + 1);
    ReadLabels(file, labels, nch, kLabelLength);
    if (!SameLabels(nch, chLabel, labels)) return kTraitLabelsDiffer;
    if (!SameNumbers(file, nch, chtype)) return kTraitTypesDiffer;
    const ScopedVector<float> ranges(nch);
    ReadFloats(file, ranges, nch);
    const ScopedVector<int> states(nch);
    ReadInts(file, states, nch);
    return kMatch;
}

/// Puts the letter b behind a label for each label of the first session that it equals; what was
/// passed before is not looked at again. False when there is no room for the letter.
bool MakeLabelDiffer(char* label) {
    for (int i = 0; i < ncsm; i++) {
        if (std::strcmp(label, reLabel[i]) != 0) continue;
        const std::size_t length = std::strlen(label);
        if (length >= kLabelLength) return false;
        CopyText(label + length, 1, "b");
    }
    return true;
}

const char* JoinCommunities(const DataFile& file, JoinedTables& joined) {
    const int count = ReadJoiningCount(file, ncsm, &joined.communities);
    char** labels = MakeTable(joined.reLabel, joined.communities, kLabelLength + 1);
    CopyTable<char>(ncsm, kLabelLength + 1, reLabel, labels);
    ReadLabels(file, labels + ncsm, count, kLabelLength);
    if (!std::all_of(labels + ncsm, labels + joined.communities, MakeLabelDiffer))
        return kCommunityLabelsClash;
    return kMatch;
}

const char* JoinCounts(const DataFile& file, JoinedTables& joined) {
    ReadJoiningCount(file, tcst, &joined.otus);
    int* counts = joined.ncst.emplace(joined.communities);
    std::copy_n(ncst, ncsm, counts);
    ReadInts(file, counts + ncsm, joined.communities - ncsm);
    float codes[kCaCodes];
    ReadFloats(file, codes, kCaCodes);
    return std::equal(codes, codes + kCaCodes, ca_code) ? kMatch : kCodesDiffer;
}

/// The file's rows of W have as many values as the first session has communities, to which they
/// go. Only the form of 2008 has B and W apart; any other file, the newest too, is taken for the
/// oldest, which has no version word. Returns whether it was of the newest form, and misread.
bool JoinQuantities(const DataFile& file, JoinedTables& joined) {
    float** B = MakeTable(joined.csm_Float, joined.otus, nch);
    float** W = MakeTable(joined.cadat, joined.otus, joined.communities);
    CopyTable<float>(tcst, nch, csm_Float, B);
    CopyTable<float>(tcst, ncsm, cadat, W);
    const int length = 10 * nch + 20;
    const ScopedVector<char> word(length + 1);
    freadckWord(file.stream, word, length, file.name);
    const bool isNewest = std::strcmp(word, kFormdaVersion) == 0;
    const bool isOf2008 = std::strcmp(word, kFormdaVersion2008) == 0;
    for (int i = tcst; isOf2008 && i < joined.otus; i++) ReadFloats(file, B[i], nch);
    for (int i = tcst; i < joined.otus; i++) {
        if (!isOf2008 && i > tcst) freadckWord(file.stream, word, length, file.name);
        if (!isOf2008) DecodeStates(word, nch, B[i]);
        ReadFloats(file, W[i], ncsm);
    }
    return isNewest;
}

/// Types of variables, where the file tells them, and labels.
const char* CompareVariables(const DataFile& file) {
    const ScopedMatrix<char> labels(nenv, kLabelLength + 1);
    freadckWord(file.stream, labels[0], kLabelLength, file.name);
    const bool tellsTypes = std::strcmp(labels[0], kEnvVersion) == 0;
    if (tellsTypes && ReadInt(file) != optEnvVarType) return kVariableTypesDiffer;
    if (tellsTypes && !SameNumbers(file, nenv, envVarType)) return kVariableTypesDiffer;
    const int read = tellsTypes ? 0 : 1;
    ReadWords(file, labels + read, nenv - read, kLabelLength);
    return SameLabels(nenv, envLabel, labels) ? kMatch : kVariableLabelsDiffer;
}

void JoinEnvName(const DataFile& file) {
    char name[kTitleLength + 1];
    ReadRestOfLine(file, name, kTitleLength);
    CopyText(envName, sizeof(envName) - 1, (std::string(envName) + " " + name).c_str());
}

const char* JoinEnvironment(const DataFile& file, JoinedTables& joined, bool isNewest) {
    // A newest file was misread; that a number happens to fit does not make a data set of it.
    if (ReadInt(file) != nenv || isNewest) return kVariableNumbersDiffer;
    if (nenv <= 0) return kMatch;
    if (const char* const difference = CompareVariables(file)) return difference;
    JoinEnvName(file);
    float** E = MakeTable(joined.env, joined.communities, nenv);
    CopyTable<float>(ncsm, nenv, env, E);
    for (int j = 0; j < nenv; j++)
        for (int c = ncsm; c < joined.communities; c++) ReadFloats(file, &E[c][j], 1);
    return kMatch;
}

/// A map with the first session's cells at the top left, the file's at the bottom right and zeros
/// elsewhere.
void JoinMap(const DataFile& file, int rows, int cols, const char* const* map, int joinedRows,
             int joinedCols, char** joined) {
    for (int i = 0; i < joinedRows; i++) std::fill_n(joined[i], joinedCols, '0');
    CopyTable<char>(rows, cols, map, joined);
    for (int i = rows; i < joinedRows; i++)
        for (int j = cols; j < joinedCols; j++)
            joined[i][j] = static_cast<char>(ScanChar(file.stream, "0 1", file.name));
}

const char* JoinSpecies(const DataFile& file, JoinedTables& joined) {
    const int count = ReadCount(file, 0, kFieldBytes);
    if ((count > 0) != (nSpp > 0)) return kSpeciesInOneOnly;
    if (count == 0) return kMatch;
    joined.species = nSpp + count;
    char fileName[kTypedFileNameLength + 1];
    freadlineck(file.stream, kTypedFileNameLength, fileName, file.name);
    char** names = MakeTable(joined.spp, joined.species, kSpeciesLength + 1);
    CopyTable<char>(nSpp, kSpeciesLength + 1, spp, names);
    for (int s = nSpp; s < joined.species; s++)
        freadlineckTEMP(file.stream, kSpeciesLength, names[s], file.name);
    JoinMap(file, nSpp, ncsm, sppRelMap, joined.species, joined.communities,
            MakeTable(joined.sppRelMap, joined.species, joined.communities));
    JoinMap(file, tcst, nSpp, cstSppMap, joined.otus, joined.species,
            MakeTable(joined.cstSppMap, joined.otus, joined.species));
    return kMatch;
}

/// The marker is a word, in an old file the weekday of its time stamp. A number in its place is
/// what is left of tables of another size.
void PassWindowMarker(const DataFile& file) {
    char word[kLabelLength + 1];
    freadckWord(file.stream, word, kLabelLength, file.name);
    if (std::isalpha(static_cast<unsigned char>(word[0])) == 0) FailAtEnd(file.stream, file.name);
}

}  // namespace

const char* JoinFile(const DataFile& file, JoinedTables& joined) {
    bool isNewest = false;
    const char* difference = CompareTraits(file);
    if (difference == kMatch) difference = JoinCommunities(file, joined);
    if (difference == kMatch) difference = JoinCounts(file, joined);
    if (difference == kMatch) isNewest = JoinQuantities(file, joined);
    if (difference == kMatch) difference = JoinEnvironment(file, joined, isNewest);
    if (difference == kMatch) difference = JoinSpecies(file, joined);
    if (difference == kMatch) PassWindowMarker(file);
    return difference;
}

void JoinPhylogeny(JoinedTables& joined) {
    const double self = phylogenyMatrixType == kPhylogenySimilarities ? 1.0 : 0.0;
    double** F = MakeTable(joined.phylogeny, joined.otus, joined.otus);
    for (int i = 0; i < joined.otus; i++) {
        std::fill_n(F[i], joined.otus, kMissing);
        F[i][i] = self;
    }
    CopyTable<double>(tcst, tcst, phylogenyRese, F);
    if (phylogenyMatrixType != kPhylogenyData) return;
    float** clades = MakeTable(joined.clades, joined.otus, nClados);
    for (int i = tcst; i < joined.otus; i++) std::fill_n(clades[i], nClados, float{kMissing});
    CopyTable<float>(tcst, nClados, phylogenyData, clades);
}

#include <algorithm>
#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIF2/console.h"
#include "TSLIFFMT/environment_kinds.h"
#include "TSLIFFMT/raw_tables.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/text.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/missing.h"

namespace {

constexpr char kLabelHeading[] = "Labels for environmental variables: \n   1  given by default";
constexpr char kKinds[] =
    "Types of variables: \n"
    "   1 only quantitative variables, same units \n"
    "   2 only quantitative variables, different units \n"
    "   3 only qualitative, non binary variables\n"
    "   4 only binary variables\n"
    "   5 several types \n"
    "Type option no.: ";
constexpr char kTypes[] =
    "Enter variable type (1:binary, 2:nominal, 3:quantitative interval or ratio scale, "
    "4:ordinal): \n"
    "Variable:    \t";

void SetAllTypes(VariableType type, int& flag) {
    std::fill_n(envVarType, nenv, type);
    flag = 1;
}

/// Asks for the type of each variable until they are mixed as told, or the user gives in to the
/// kind that they have. The flags of an answer that is taken back stay set.
void AskForTypes() {
    for (;;) {
        std::fputs(kTypes, out);
        PrintLabels(nenv, envLabel, ' ');
        ReadLongInput(nenv, envVarType, "variable type", "1 2 3 4");
        FlagVariableTypes();
        if (TypesAreMixed()) return;
        std::fputs("Data not mixed as indicated!!!\n", out);
        if (!ReadYesNo("Wish to correct manually? y/n ")) break;
    }
    optEnvVarType = KindOfOneType();
}

void AskForKind() {
    optEnvVarType = ReadOption(kKinds, "1 2 3 4 5");
    temEnvQuant = temEnvQual = temEnvBin = 0;
    switch (optEnvVarType) {
        case kSameUnits:
        case kDifferentUnits:
            SetAllTypes(kIntervalVariable, temEnvQuant);
            break;
        case kQualitative:
            SetAllTypes(kNominalVariable, temEnvQual);
            break;
        case kOnlyBinary:
            SetAllTypes(kBinaryVariable, temEnvBin);
            break;
        default:
            AskForTypes();
    }
}

/// One variable reads alike in both orders: it is not asked for.
bool AskWhetherByCommunities() {
    if (nenv < 2) return false;
    std::fputs("Data entered by communities(N) or by variables(T)?: ", out);
    return ReadCharIn("n t") == 'n';
}

void ReadByCommunities(RawFile& file) {
    for (int c = 0; c < ncsm; c++)
        for (int v = 0; v < nenv; v++) env[c][v] = ReadFloatStrictly(file);
}

void ReadByVariables(RawFile& file) {
    for (int v = 0; v < nenv; v++)
        for (int c = 0; c < ncsm; c++) env[c][v] = ReadFloatStrictly(file);
}

/// One warning for each missing value that stands before the first other value of a community.
void WarnOfMissingValues() {
    for (int c = 0; c < ncsm; c++)
        for (int v = 0; v < nenv && env[c][v] == kMissing; v++)
            std::fprintf(out,
                         "\nPlease check matrix E. Sampling unit %s has all values missing (-999), "
                         "which will generate unreliable results.",
                         reLabel[c]);
}

}  // namespace

void AllocateEnvironment() {
    RequireRoomForTable(ncsm, nenv, sizeof(float));
    RequireRoomForTable(nenv, kLabelLength + 1, sizeof(char));
    env = dim2Dfloat(ncsm, nenv);
    envLabel = dim2Dchar(nenv, kLabelLength + 1);
    envVarType = dim1Dint(nenv);
}

void EnterEnvironment(RawFile& file) {
    std::fprintf(out, "%s\n", lineL);
    nenv = AskForCount("Number of environmental variables: ");
    CopyText(envName, sizeof(envName) - 1, file.name);
    AllocateEnvironment();
    const LabelSource source = AskLabelSource(kLabelHeading, file);
    AskForKind();
    if (AskWhetherByCommunities())
        ReadByCommunities(file);
    else
        ReadByVariables(file);
    SetLabelsStrictly(source, nenv, envLabel, file);
    FinishRawFile(file);
    WarnOfMissingValues();
}

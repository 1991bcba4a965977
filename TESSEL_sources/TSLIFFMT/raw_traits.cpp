#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIF2/console.h"
#include "TSLIFFMT/raw_tables.h"
#include "mxlibDim/dim.h"

namespace {

constexpr char kLabelHeading[] = "Labels for traits: \n   1  given by default ";
constexpr char kFormats[] =
    "Trait matrix (B) format (OTUs = Operational Taxonomic Units): \n"
    "   1  OTUs as columns / traits as rows \n"
    "   2  OTUs as rows / traits as columns \n"
    "Type option no.: ";
constexpr char kTypes[] =
    "Trait type (1 for dichotomous, 2 for nominal, 3 for interval or ratio scale, 4 for "
    "ordinal): \n";

void AskForCounts() {
    std::fprintf(out, "%s\n", lineL);
    tcst = AskForCount("Number of OTUs: ");
    nch = AskForCount("Enter number of traits (characters): ");
}

void ReadTraitsAsRows(RawFile& file) {
    for (int k = 0; k < nch; k++)
        for (int i = 0; i < tcst; i++) csm_Float[i][k] = static_cast<float>(ReadDouble(file));
}

void ReadOTUsAsRows(RawFile& file) {
    for (int i = 0; i < tcst; i++)
        for (int k = 0; k < nch; k++) csm_Float[i][k] = static_cast<float>(ReadDouble(file));
}

void PrintTraitLabels() {
    std::fputs("Traits:     \t", out);
    PrintLabels(nch, chLabel, '\t');
    std::fputc('\n', out);
}

void AskForTraitTypes() {
    std::fputs(kTypes, out);
    PrintTraitLabels();
    ReadLongInput(nch, chtype, "trait types", "1 2 3 4");
}

void AskForTraitGroups() {
    hasTraitGroups = ReadOption("Wish to specify groups of traits? 0/1 ", "0 1");
    if (hasTraitGroups == 0) return;
    PrintTraitLabels();
    ReadLongInput(nch, traitGroups, "trait groups", nullptr);
}

}  // namespace

void AllocateTraits() {
    RequireRoomForTable(tcst, nch, sizeof(float));
    RequireRoomForTable(nch, kLabelLength + 1, sizeof(char));
    onsta = dim1Dint(nch);
    chtype = dim1Dint(nch);
    chrange = dim1Dfloat(nch);
    chLabel = dim2Dchar(nch, kLabelLength + 1);
    csm_Float = dim2Dfloat(tcst, nch);
    traitGroups = dim1Dint(nch);
}

void EnterTraits(RawFile& file) {
    constexpr int kTraitsAsRows = 1;
    AskForCounts();
    AllocateTraits();
    const LabelSource source = AskLabelSource(kLabelHeading, file);
    if (ReadOption(kFormats, "1 2") == kTraitsAsRows)
        ReadTraitsAsRows(file);
    else
        ReadOTUsAsRows(file);
    SetLabels(source, nch, chLabel, file);
    FinishRawFile(file);
    AskForTraitTypes();
    AskForTraitGroups();
}

#include "TSLIFFMT/derive.h"

#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/track.h"
#include "TSLIFFMT/community_pooling.h"
#include "TSLIFFMT/derive_dialogue.h"
#include "TSLIFFMT/dialogue_data.h"
#include "TSLIFFMT/environment_kinds.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/text.h"

namespace {

/// Sets a file name for the length of a scope.
class NameInPlace {
  public:
    NameInPlace(FileName& name, const char* other) : name_(name) {
        CopyText(kept_, kFileNameLength, name);
        CopyText(name_, kFileNameLength, other);
    }
    ~NameInPlace() { CopyText(name_, kFileNameLength, kept_); }
    NameInPlace(const NameInPlace&) = delete;
    NameInPlace& operator=(const NameInPlace&) = delete;

  private:
    FileName& name_;
    FileName kept_;
};

bool HoldsAnything(const char* name) {
    FILE* const file = OpenToRead(name, "r");
    if (file == nullptr) return false;
    char c = 0;
    // What cannot be read is left to the reader of the record, which says so.
    const bool holds = std::fscanf(file, " %c", &c) == 1 || std::ferror(file) != 0;
    std::fclose(file);
    return holds;
}

/// The settings of the source session, if it has any that can be read. The data set stays the one
/// of the file that the user named, whatever data file the record names.
void ReadSettingsOfSource() {
    FileName track;
    MakeSessionFileName(track, tempSession, trackExt);
    if (!HoldsAnything(track)) return;
    const NameInPlace trackOfSource(whichTrack, track), formdaOfSource(whichFormda, whichFormda);
    try {
        ReadTrack();
    } catch (const RaisedError& error) {
        if (error.code != kEndOfFile) throw;
    }
}

/// A kind of several types becomes a simpler one when the variables are of one type. Types count
/// that the source has, also in variables that were not chosen.
void SetKindOfEnvironment() {
    if (optEnvVarType == kSeveralTypes) {
        for (int j = 0; j < nenv; j++) {
            if (envVarType[j] == 1) temEnvBin = 1;
            if (envVarType[j] == 2) temEnvQual = 1;
            if (envVarType[j] == 3) temEnvQuant = 1;
        }
        if (temEnvBin + temEnvQual + temEnvQuant == 1) optEnvVarType = KindOfOneType();
    }
    if (nenv == 1 && optEnvVarType == kDifferentUnits) optEnvVarType = kSameUnits;
}

void SelectParts(const Derivation& derivation) {
    SelectTraits(derivation.traits);
    SelectOTUs(derivation.otus);
    SelectCommunities(derivation.communities);
    if (nenv == 0) return;
    SelectVariables(derivation.variables);
    SetKindOfEnvironment();
}

void TellAboutWindow() {
    std::fprintf(out, "\nA formda file for this session, with %d communities, has been created.\n",
                 ncsm);
    std::fprintf(out,
                 "\nThe first new community is the average of the first %d communities in the "
                 "series,\n the second new one is an average of the %d communities starting at the "
                 "second\n community in the series, and so on.\n",
                 SMWSize, SMWSize);
    std::fprintf(out,
                 "\nReleve labels correspond to the labels of the first\n %d previous communities "
                 "in the series.\n",
                 ncsm);
}

void MakeNewCommunities(CommunityOption option) {
    switch (option) {
        case CommunityOption::kPool:
            PoolCommunitiesByGroups();
            break;
        case CommunityOption::kChange:
            TakeChangesOfCommunities();
            break;
        case CommunityOption::kMovingWindow:
            PoolCommunitiesByMovingWindow();
            TellAboutWindow();
            break;
        default:
            break;
    }
}

/// The title is the name of the source's file.
void WriteDerivedDataSet() {
    FileName source;
    CopyText(source, kFileNameLength, whichFormda);
    MakeSessionFileName(whichFormda, sessionName, formdaExt);
    WriteFormda(tcst, whichFormda, source, csm_Float, cadat);
}

void WarnOfEmptyCommunities() {
    if (emptyReleves <= 0) return;
    std::fprintf(out, "\nWarning!! There are %d empty communities!!\nInspect file %s\n",
                 emptyReleves, whichFormda);
}

}  // namespace

void OpenSource() {
    emptyReleves = 0;
    OpenFormda(1);
    ClearLine();
    ReadSettingsOfSource();
}

bool DeriveDataSet(Derivation* derivation) {
    SelectParts(*derivation);
    if (derivation->trims) derivation->otus = Picked(derivation->otus, CleanDataSet());
    if (tcst == 0 || (derivation->communityOption == CommunityOption::kChange && nGroups == 0)) {
        std::fputs(kNothingLeft, out);
        return false;
    }
    MakeNewCommunities(derivation->communityOption);
    WriteDerivedDataSet();
    WarnOfEmptyCommunities();
    return true;
}

bool PickSomeFormda() {
    const DataSetOfDialogue released;
    OpenSource();
    Menu("GETTING DATA FROM ANOTHER SESSION");
    Derivation derivation = AskDerivation();
    return DeriveDataSet(&derivation);
}

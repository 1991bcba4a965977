// The screen DATA FOR SESSION: one routine per option, true when the session now has data.

#include <cstdio>
#include <cstring>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "TSLIF2/console.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/merge.h"
#include "TSLIFFM2/track.h"
#include "TSLIFFMT/derive.h"
#include "TSLIFFMT/raw_entry.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/text.h"

namespace {

constexpr char kDataOptions[] =
    "Options:\n"
    "   1  format raw data \n"
    "   2  use formatted data from another session\n"
    "   3  merge formatted data from two sessions\n"
    "   4  return to main menu \n"
    "Type option no.: ";
// Option 3 leads back to the options above, whatever its label says.
constexpr char kUseFileOptions[] =
    "   1  as it is \n"
    "   2  modified \n"
    "   3  return to main menu \n"
    "Type option no.: ";

/// Asks for another session's name and makes the name of its data file; false, after the message,
/// when that file does not open.
bool AskForDataFile(const char* question, FileName& formda) {
    std::fputs(question, out);
    ReadStringIn("%s\n", tempName, sizeof(tempName) - 1);
    CopyText(tempSession, kOtherSessionNameLength, tempName);
    MakeSessionFileName(formda, tempSession, formdaExt);
    FILE* file = fopenck(formda, volumeName, "r");
    if (file == nullptr) return false;
    std::fclose(file);
    return true;
}

void LoadDataSet() {
    OpenFormda(1);
    ClearLine();
}

bool FormatRawData() {
    MakeSessionFileName(whichFormda, sessionName, formdaExt);
    IFFormat();
    WriteTrack(0);
    return true;
}

bool UseOtherSession() {
    if (!AskForDataFile("\nEnter name of the session from which data is to be extracted: ",
                        whichFormda))
        return false;
    std::fprintf(out, "\nUse file %s:\n", whichFormda);
    const int option = ReadOption(kUseFileOptions, "1 2 3");
    std::fputs("\n\n", out);
    if (option == 3) return false;
    if (option == 2 && !PickSomeFormda()) return false;
    // As it is: the session refers to the other session's file and gets no copy of it.
    if (option == 1) LoadDataSet();
    WriteTrack(0);
    FreeGlobals1();
    return true;
}

bool MergeTwoSessions() {
    std::fputs("\nEnter names of the sessions from which data is to be merged:", out);
    if (!AskForDataFile("\nFirst session name: ", whichFormda)) return false;
    LoadDataSet();
    FileName secondFormda;
    bool merged = AskForDataFile("Second session name: ", secondFormda);
    if (merged) {
        CopyText(dataName, kTitleLength, whichFormda);
        merged = MergeFormda(secondFormda) != 0;
    }
    if (merged) {
        WriteTrack(0);
        FreeGlobals1();
    }
    FreeGlobals2();
    return merged;
}

}  // namespace

int SetFormda() {
    Menu("DATA FOR SESSION");
    for (;;) {
        bool hasData = false;
        switch (ReadOption(kDataOptions, "1 2 3 4")) {
            case 1:
                hasData = FormatRawData();
                break;
            case 2:
                hasData = UseOtherSession();
                break;
            case 3:
                hasData = MergeTwoSessions();
                break;
            default:
                return 1;
        }
        if (hasData) return 0;
    }
}

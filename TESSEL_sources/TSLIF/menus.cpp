#include "TSLIF/menus.h"

#include <gsl/gsl_errno.h>

#include <cstdio>
#include <cstring>

#include "TSLCHORD/ranking.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/catch_point.h"
#include "TSLIF/session_lock.h"
#include "TSLIF/settings_dialogue.h"
#include "TSLIF/simulation.h"
#include "TSLIF2/console.h"
#include "TSLIF2/letter_menu.h"
#include "TSLIF2/preferences.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/track.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibDim/text.h"

namespace {

constexpr int kSpareBlock = 20480;  // bytes

void StartNewSession();
void AttachOldSession();
void CommunityLoop();
void LeaveProgram();

constexpr MenuEntry kMainEntries[] = {
    {'N', StartNewSession}, {'O', AttachOldSession},
    {'S', SetPreferences},  {'A', IFAssemblyRulesSimulation_EnvFeedback_TypeI_II_Error},
    {'X', LeaveProgram},
};
constexpr MenuEntry kSessionEntries[] = {
    {'V', CommunityLoop}, {'S', SetPreferences}, {'C', nullptr}};
constexpr MenuEntry kCommunityEntries[] = {
    {'H', IFHierarchicalAccum}, {'K', IFChOrderSearch}, {'C', nullptr}};

// A stays hidden: only the accepted list has it.
constexpr LetterMenu kMainMenu = {
    "Main menu:\n"
    "   N  start new session\n"
    "   O  attach to old session\n"
    "   S  set preferences\n"
    "   X  exit \n",
    "N O S A X", "\n\n", kMainEntries};
constexpr LetterMenu kSessionMenu = {
    "Options:\n"
    "   V  analysis of community structures\n"
    "   S  set preferences\n"
    "   C  return to main menu \n",
    "V S C", "\n\n", kSessionEntries};
constexpr LetterMenu kCommunityMenu = {
    "Options:\n"
    "   H  functional analysis \n"
    "   K  ranking traits (find optimal trait subset) \n"
    "   C  return to session menu \n",
    "H K C", "\n", kCommunityEntries};

void NameStructuresFile() {
    if (saveStruct == 'y') MakeSessionFileName(whichStructures, sessionName, structExt);
}

/// Reads the data set of whichFormda and the session's record afresh.
void LoadSession() {
    OpenFormda(1);
    ReadTrack();
}

void CommunityLoop() {
    do {
        if (dirtyOrig == 1) LoadSession();
        Menu("ANALYSIS OF COMMUNITY STRUCTURES");
        std::fputs(kCommunityMenu.options, out);
        optmain = AskLetter(kCommunityMenu);
    } while (RunEntry(kCommunityMenu, optmain));
}

void SessionMenuLoop() {
    for (;;) {
        Menu("SESSION MENU");
        std::fputs(kSessionMenu.options, out);
        optmain1 = AskLetter(kSessionMenu);
        if (!RunEntry(kSessionMenu, optmain1)) return;
        NameStructuresFile();
    }
}

void RunSession() {
    NameStructuresFile();
    if (!ReadDataFileName() && SetFormda() == 1) return;
    LoadSession();
    SessionMenuLoop();
    FreeGlobals1();
    FreeGlobals2();
}

/// Opens the track file of a session that is locked; null, and told, when another program has it or
/// the file does not open. To open a new one empties an old one: not another program's.
FILE* OpenTrackFile(const FileLock& lock, const char* mode) {
    if (!lock.IsTaken()) return fopenck(whichTrack, volumeName, mode);
    std::fprintf(ErrorStream(), "\nsession %s is in use by another program \n", sessionName);
    std::fputc('\a', ScreenStream());
    return nullptr;
}

/// Asks for a session's name, opens its track file in `mode` and runs the session.
void OpenSession(const char* mode) {
    std::fputs("Enter session name: ", out);
    ReadStringIn("%s\n", tempName, sizeof(tempName) - 1);
    CopyText(sessionShortName, kSessionNameLength, tempName);
    volumeName[0] = '\0';
    CopyText(sessionName, kFileNameLength, sessionShortName);
    MakeSessionFileName(whichTrack, sessionName, trackExt);
    FileLock lock = LockSession();
    FILE* track = OpenTrackFile(lock, mode);
    if (track == nullptr) {
        Wait();
        return;
    }
    std::fclose(track);
    IFSession(std::move(lock));
}

void StartNewSession() {
    OpenSession("w");
}

void AttachOldSession() {
    OpenSession("r+");
}

void LeaveProgram() {
    std::fflush(out);
    EndProgram(0);
}

void MainMenuPass() {
    std::fprintf(out, "\n\n\n\n%s\n%s\n%s%s\n", version, lineL, kMainMenu.options, lineL);
    RunEntry(kMainMenu, AskLetter(kMainMenu));
    NameStructuresFile();
}

void LoadPreferences() {
    ReadPreferences();
    ClearLine();
}

void StartSystem() {
    gsl_set_error_handler_off();
    InitGlobals();
    InitIFLibG();
    std::fprintf(out, "%s\n%s\n\n%s\n", lineL, version, lineL);
    gSpareBlockPtr = dim1D(1, kSpareBlock);
}

}  // namespace

void mainInit() {
    RunWithCatchPoint(StartSystem);
    MainMenu();
}

void MainMenu() {
    RunWithCatchPoint(LoadPreferences);
    for (;;) RunWithCatchPoint(MainMenuPass);
}

void IFSession(FileLock lock) {
    RunWithCatchPoint([&lock] {
        const FileLock held = std::move(lock);
        RunSession();
    });
}

void Menu(const char* title) {
    ClearLine();
    std::fprintf(out, "\n\n%-47s", title);
    if (std::strcmp(sessionName, "NULL") != 0) std::fprintf(out, "%23s", sessionShortName);
    std::fprintf(out, "\n%s\n", lineL);
}

#pragma once
/// \file
/// State of the console shell.

#include <cstdio>

inline constexpr int kSessionNameLength = 21;       ///< of an own session
inline constexpr int kOtherSessionNameLength = 31;  ///< of another session's
inline constexpr int kFileNameLength = 47;          ///< of a session file
inline constexpr int kTypedFileNameLength = 41;     ///< of a raw file

extern FILE* in;                                    ///< input of the dialogue: standard input
extern FILE* out;                                   ///< output of the dialogue: standard output
extern char sessionName[kFileNameLength + 1];       ///< stem of all session files
extern char sessionShortName[kFileNameLength + 1];  ///< shown in headings
extern char tempName[4112];                    ///< receives typed names before they are cut to size
extern char tempSession[kFileNameLength + 1];  ///< name of another session
extern char volumeName[80];                    ///< directory prefix of session files, always empty
extern int optmain1;                           ///< last letter of the session menu, upper case
extern int optmain;                            ///< last letter of the community menu: 72 H, 75 K
extern int dirtyOrig;              ///< 1 when the data set in memory may differ from its file
extern FILE* trackFp;              ///< the track file while it is open
extern void* gSpareBlockPtr;       ///< 20,480 bytes kept to the end of the process
extern const char* const lineL;    ///< 70 dashes
extern const char* const version;  ///< banner title

/// Sets the defaults of all options and preferences, and the streams.
void InitGlobals();

/// Resets the session's flags and counters. Releases no memory.
void FreeGlobals1();

/// Releases the data set and nulls its pointers; counts and the phylogeny stay as they are.
void FreeGlobals2();

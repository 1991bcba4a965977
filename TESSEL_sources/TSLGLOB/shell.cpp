#include "TSLGLOB/shell.h"

#include "mxlibDim/standard_streams.h"

FILE* in = stdin;
FILE* out = ScreenStream();
char sessionName[kFileNameLength + 1] = {};
char sessionShortName[kFileNameLength + 1] = {};
char tempName[4112] = {};
char tempSession[kFileNameLength + 1] = {};
char volumeName[80] = {};
int optmain1 = 0;
int optmain = 0;
int dirtyOrig = 0;
FILE* trackFp = nullptr;
void* gSpareBlockPtr = nullptr;

const char* const lineL = "----------------------------------------------------------------------";
const char* const version =
    "CHARACTER-BASED COMMUNITY ANALYSIS                    TESSEL v.2.11.08";

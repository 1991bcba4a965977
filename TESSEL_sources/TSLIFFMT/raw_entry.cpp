#include "TSLIFFMT/raw_entry.h"

#include <cstdio>
#include <string>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "TSLIF2/console.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFMT/checks.h"
#include "TSLIFFMT/dialogue_data.h"
#include "TSLIFFMT/findings.h"
#include "TSLIFFMT/raw_tables.h"
#include "mxlibDim/terminal.h"
#include "mxlibDim/text.h"

namespace {

/// The files that the user has; one that was not given is not open.
struct RawFiles {
    RawFile traits, phylogeny, communities, species, environment;
};

void AskForOptionalFile(const char* question, RawFile& file) {
    if (ReadOption(question, "0 1") == 1) AskForRawFile(file);
}

void AskForRawFiles(RawFiles& files) {
    Menu("SPECIFYING THE AVAILABLE INPUT DATA:\n");
    std::fputs(
        "For each data specified below indicate by 0/1 which are available\n\n"
        "OTUs = Operational Taxonomic Units, refer to species, populations, individuals or other "
        "taxonomic rank\n"
        "A matrix (B) with trait description of OTUs should be always specified.\n",
        out);
    AskForRawFile(files.traits);
    AskForOptionalFile("A matrix (F) with phylogenetic resemblances of the OTUs 0/1\t",
                       files.phylogeny);
    std::fputs("A matrix (W) with records of OTUS in commmunities should be always specified.\n",
               out);
    AskForRawFile(files.communities);
    AskForOptionalFile("Species names of OTUs 0/1\t", files.species);
    AskForOptionalFile("A matrix (E) with ecosystem variables of the community sites 0/1\t",
                       files.environment);
}

void EnterTables(RawFiles& files) {
    EnterTraits(files.traits);
    if (files.phylogeny.stream != nullptr) EnterPhylogeny(files.phylogeny);
    EnterCommunities(files.communities);
    if (files.species.stream != nullptr) EnterSpecies(files.species);
    if (files.environment.stream != nullptr) EnterEnvironment(files.environment);
}

/// One line each, for a person alone: what is certain and may not be meant.
void TellFindings(const RawFiles& files) {
    if (!SpeaksToPerson()) return;
    TellPerson("");
    for (const RawFile* file :
         {&files.traits, &files.phylogeny, &files.communities, &files.environment})
        TellNumbersLeft(file->name, file->numbersLeft);
    for (const std::string& finding : FindingsOfDataSet()) TellPerson(finding.c_str());
}

}  // namespace

void ForgetDataSet() {
    FreeGlobals2();
    tcst = nch = nSpp = ncsm = nenv = 0;
    SMWSize = 1;
}

void WriteDataSet(const char* title) {
    CountStates(nch, tcst, onsta, csm_Float);
    CopyText(dataName, kTitleLength, title);
    WriteFormda(tcst, whichFormda, dataName, csm_Float, cadat);
}

void IFFormat() {
    ForgetDataSet();
    const DataSetOfDialogue released;
    RawFiles files;
    AskForRawFiles(files);
    EnterTables(files);
    TellFindings(files);
    WriteDataSet(files.traits.name);
}

#pragma once
/// \file
/// Routines of the program in this process: a folder of the test's own, a console, the globals
/// clean before and after.

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "TSLIFFM2/formda.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/dim.h"
#include "support/console.h"
#include "support/formda_text.h"
#include "support/temp_folder.h"

using Ints = std::vector<int>;
using Texts = std::vector<std::string>;

/// `body` with `answers` typed.
template <class Body>
ConsoleRun Typed(const std::string& answers, const Body& body) {
    return WithConsole(answers, [&](FILE* stream) {
        in = stream;
        out = stdout;
        body();
    });
}

/// The whole program, from the main menu.
inline ConsoleRun RunWhole(const std::string& answers) {
    FreeGlobals2();
    hasPhylogeny = phylogenyMatrixType = 0;
    return WithConsole(answers, [](FILE*) {
        free1D(gSpareBlockPtr);
        mainInit();
    });
}

/// The first n entries of an array.
template <class T>
std::vector<T> Entries(const T* array, int n) {
    return {array, array + n};
}

/// The first rows x cols numbers of a table, by rows.
template <class T>
std::vector<float> Cells(T** table, int rows, int cols) {
    std::vector<float> cells;
    for (int i = 0; i < rows; i++)
        for (int j = 0; j < cols; j++) cells.push_back(static_cast<float>(table[i][j]));
    return cells;
}

class InProcess : public testing::Test {
  protected:
    InProcess() { Clean(); }
    ~InProcess() override { Clean(); }

    /// An earlier routine of the process may have ended in the middle.
    static void Clean() {
        FreeGlobals2();
        for (int** memberships : {&nestingMembershipOTUs, &partition_OTUs_Phyl}) {
            free1D(*memberships);
            *memberships = nullptr;
        }
        tcst = nch = ncsm = nSpp = nenv = 0;
        hasPhylogeny = phylogenyMatrixType = hasTraitGroups = includePhylogeny = temEnvQual = 0;
        is40CharLine = is80CharLine = 0;
        sessionName[0] = sessionShortName[0] = '\0';
        InitGlobals();
        BealsIncludeOpt = twoTailedTestMantel = true;
        overfitFactorPCARegr = 2.0;
    }

    /// Reads the text as the data file dataFormda.txt.
    ConsoleRun Open(const std::string& text) {
        std::strcpy(whichFormda, "dataFormda.txt");
        folder_.Write(whichFormda, text);
        return WithConsole("", [](FILE*) { OpenFormda(1); });
    }

    TempFolder folder_;
    WorkingIn here_{folder_.path()};
};

#pragma once
/// \file
/// Sessions of the examples, by raw entry, for the dialogue and the command line to work on; the
/// files that both leave, and tables in them.

#include <cstdlib>
#include <sstream>

#include "TSLCLI/names.h"
#include "TSLCLI/session.h"
#include "support/good_session.h"
#include "support/text.h"
#include "tessel/in_command.h"

/// Sessions of the examples in a folder of the test's own.
struct ExampleSession : InProcess {
    /// The files of a session of an example, and others that its analyses read.
    FilesByName Session(const std::string& name, bool mixedSites = false) {
        const std::filesystem::path example = std::filesystem::path(TESSEL_EXAMPLES) / name;
        for (const auto& file : std::filesystem::directory_iterator(example))
            folder_.Write(file.path().filename(), ReadWholeFile(file));
        std::string answers = folder_.Read("answers.txt");
        answers = answers.substr(0, answers.find("\nV\n")) + "\nC\nX\n";
        if (mixedSites)
            answers = Replaced(Replaced(answers, "\nE.txt\n", "\nE_mixed.txt\n"), "\n4\n2\n2\nN\n",
                               "\n6\n2\n5\nk\n3 3 4 3 2 3\ny\nN\n");
        EXPECT_EQ(RunWhole(answers).exitStatus, 0);
        FilesByName files;
        for (const char* kept : {"Trk.txt", "Formda.txt"})
            files[name + kept] = folder_.Read(name + kept);
        std::istringstream types(files["types.txt"] = folder_.Read("types.txt"));
        files["named.csv"] = "OTU;type\n";
        const FullNames names = NamesOf(name);
        std::vector<std::string> rows;
        for (const std::string& otu : names.otus) {
            std::string type;
            types >> type;
            rows.push_back("\"" + otu + "\";" + type + "\n");
            files["each.txt"] += std::to_string(rows.size()) + "\n";
        }
        for (auto row = rows.rbegin(); row != rows.rend(); ++row) files["named.csv"] += *row;
        TakeFiles();
        return files;
    }

    FullNames NamesOf(const std::string& session) {
        Clean();
        WithConsole("", [&](FILE*) { OpenCommandSession(session); });
        return ReadNames(session);
    }

    /// What stands in the folder after a run on these files, tables apart.
    template <class Body>
    FilesByName FilesAfter(const FilesByName& before, const Body& run) {
        Clean();
        WriteFiles(folder_, before);
        run();
        FilesByName files = TakeFiles();
        std::erase_if(files, [](const auto& file) {
            return Contains(file.first, "/") || file.first == "TESSEL.prf";
        });
        return files;
    }
};

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

/// The lines but those of the time.
inline std::string WithoutTimes(const std::string& text) {
    std::istringstream lines(text);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("Elapsed time", 0) != 0 && (line.size() != 24 || line[19] != ' '))
            kept += line + "\n";
    return kept;
}

/// The cells of a CSV table without quoted line ends, by rows, the header first.
inline std::vector<Texts> CellsOf(const std::string& table) {
    std::vector<Texts> rows;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        rows.emplace_back(1);
        bool quoted = false;
        for (const char c : line) {
            if (c == '"')
                quoted = !quoted;
            else if (c == ',' && !quoted)
                rows.back().emplace_back();
            else
                rows.back().back() += c;
        }
    }
    return rows;
}

inline double NumberOf(const std::string& cell) {
    return std::strtod(cell.c_str(), nullptr);
}

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

    /// All files of the folder, times apart; the folder is empty then.
    static FilesByName TakeFiles() {
        FilesByName files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator("."))
            if (entry.is_regular_file())
                files[entry.path().lexically_normal()] = WithoutTimes(ReadWholeFile(entry.path()));
        for (const auto& entry : std::filesystem::directory_iterator("."))
            std::filesystem::remove_all(entry.path());
        return files;
    }
};

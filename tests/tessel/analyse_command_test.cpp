// The command analyse: its files are those of the dialogue for the same settings, its tables hold
// what the report says, its settings file repeats it.

#include <cmath>
#include <sstream>

#include "TSLCLI/names.h"
#include "TSLCLI/session.h"
#include "support/good_session.h"
#include "support/text.h"
#include "tessel/in_command.h"

namespace {

/// The answers of a functional analysis in the order of the questions. The example mafragh asks for
/// the groups of traits too.
struct Answers {
    std::string fuzzy = "1", iterations = "9", within = "0", congruence = "1\n6", traits = "1";
    std::string groups = "n", standardise = "y", details = "n", preferences = "";
    std::string types = "n\nf\neach.txt";
};

struct Row {
    std::string options;
    Answers answers;
};

const Row kMeasures[] = {{"", {}},
                         {" --congruence procrustes", {.congruence = "2"}},
                         {" --congruence rv", {.congruence = "3"}}};

/// Each option of the command and what it changes in the dialogue.
const Row kOptions[] = {
    {"", {}},
    {" --types species", {.types = "y"}},
    {" --types types.txt --belonging crisp", {.fuzzy = "0", .types = "n\nf\ntypes.txt"}},
    {" --types named.csv", {.types = "n\nf\ntypes.txt"}},
    {" --details yes", {.iterations = "1", .details = "y"}},
    {" --within types.txt --details yes", {.within = "1\nf\ntypes.txt", .details = "y"}},
    {" --standardise no --beals-target no", {.standardise = "n", .preferences = "B\nn\n"}},
    {" --double-absence no --root-traits no --root-phylogeny yes",
     {.preferences = "G\nn\nR\nn\ny\n"}},
    {" --predictor-limit 3.5 --tails one", {.preferences = "O\n3.5\nT\nn\n"}},
    {" --digits 9 --save-random yes", {.preferences = "F\n9\ny\n"}},
};
const Row kResemblances[] = {{" --resemblance chord", {.congruence = "1\n10"}},
                             {" --resemblance absolute", {.congruence = "1\n8"}},
                             {" --resemblance relative-euclidean", {.congruence = "1\n7"}},
                             {" --resemblance relative-absolute", {.congruence = "1\n9"}}};

/// The lines but those of the time.
std::string WithoutTimes(const std::string& text) {
    std::istringstream lines(text);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("Elapsed time", 0) != 0 && (line.size() != 24 || line[19] != ' '))
            kept += line + "\n";
    return kept;
}

struct AnalyseCommand : InProcess {
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
        for (const auto& entry : std::filesystem::directory_iterator("."))
            std::filesystem::remove_all(entry.path());
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
        FilesByName files;
        for (const auto& entry : std::filesystem::directory_iterator("."))
            if (entry.is_regular_file() && entry.path().filename() != "TESSEL.prf")
                files[entry.path().filename()] = WithoutTimes(ReadWholeFile(entry.path()));
        for (const auto& entry : std::filesystem::directory_iterator("."))
            std::filesystem::remove_all(entry.path());
        return files;
    }

    void ExpectAsTheDialogue(const std::string& name, const FilesByName& session,
                             const std::string& options, const Answers& a) {
        SCOPED_TRACE(name + options);
        std::string answers = "O\n" + name + "\n";
        if (!a.preferences.empty()) answers += "S\n" + a.preferences + "C\n";
        answers += "V\nH\n" + a.types + "\n" + a.fuzzy + "\n" + a.iterations + "\n" + a.within +
                   "\n2\n7\n" + a.congruence + "\n" + a.traits + "\n" +
                   (name == "mafragh" ? a.groups + "\n" : "") + a.standardise + "\n" + a.details +
                   "\nC\nC\nX\n";
        const auto expected =
            FilesAfter(session, [&] { EXPECT_EQ(RunWhole(answers).exitStatus, 0); });
        EXPECT_TRUE(expected.contains(name + "Prinda.txt"));
        const auto files = FilesAfter(session, [&] {
            const CommandRun run = RunCommand("analyse " + name + " --seed 7 --iterations " +
                                              a.iterations + " --quiet" + options);
            EXPECT_EQ(run.status, 0) << run.err;
            EXPECT_EQ(run.out, "");
        });
        for (const auto& [file, text] : expected)
            EXPECT_TRUE(files.contains(file) && files.at(file) == text) << file;
        EXPECT_EQ(files.size(), expected.size());
    }
};

}  // namespace

TEST_F(AnalyseCommand, FilesAreThoseOfTheDialogue) {
    for (const std::string name : {"aravo", "mafragh"}) {
        const FilesByName session = Session(name);
        for (const Row& measure : kMeasures)
            for (Row row : kOptions) {
                row.answers.congruence = measure.answers.congruence;
                ExpectAsTheDialogue(name, session, row.options + measure.options, row.answers);
            }
        for (const Row& row : kResemblances)
            ExpectAsTheDialogue(name, session, row.options, row.answers);
    }
}

TEST_F(AnalyseCommand, TraitsAndTheirGroupsByName) {
    const FilesByName session = Session("mafragh");
    const std::string traits = "2\n" + Repeated("1\n", 9) + Repeated("0\n", 5);
    FullNames names;
    FilesAfter(session, [&] { names = NamesOf("mafragh"); });
    std::string nine = names.traits[0];
    for (int k = 1; k < 9; k++) nine += "," + names.traits[k];
    ExpectAsTheDialogue("mafragh", session, " --traits " + nine + " --weight-by-groups yes",
                        {.traits = traits, .groups = "y"});
    // The session's own groups under other names; a trait alone in its group need not be named.
    std::string groups;
    for (int k = 0; k < 7; k++)
        groups += " --trait-groups " + names.traits[k] + (k < 3 ? "=pollination" : "=cycle");
    ExpectAsTheDialogue("mafragh", session, groups, {.groups = "y"});
}

TEST_F(AnalyseCommand, NominalSites) {
    const FilesByName session = Session("aravo", true);
    ExpectAsTheDialogue("aravo", session, "", {});
}

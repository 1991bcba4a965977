// Sessions out of sessions by the command line: the files are those of the dialogue.

#include <map>

#include "support/good_session.h"
#include "tessel/in_command.h"

namespace {

/// Four communities, two OTUs, two traits, a quantitative variable and a binary one, two species.
std::string Source(const std::string& lastType = "1") {
    FormdaText data{
        {{2.5, 1}, {4, 0}}, {{3, 1, 0, 2}, {0, 4, 0, 1}}, {{1.5, 1}, {2.5, 0}, {0.25, 3}, {4, 1}}};
    data.traitLabels = "Height woody";
    data.communityLabels = "a b c d";
    data.kindOfE = "5\n3 " + lastType;
    data.envLabels = "water grazed";
    data.species = "2\nspp.txt\nPoa annua\nStipa\n1101\n0101\n10\n01\n";
    return FormdaOf(data);
}

struct SessionCommands : InProcess {
    /// The files of the session `new` that the dialogue makes of `old`, and that the command makes.
    void ExpectSame(const std::string& source, const std::string& answers, Texts options) {
        const FilesByName files = {
            {"oldFormda.txt", source},
            {"oldTrk.txt", "oldFormda.txt\n07Jul17\n"},
            {"groups.csv", kGroups},
            {"pairs.csv", "new,second,first\nfar one,c,a\nnear,d,b\n"},
        };
        WriteFiles(folder_, files);
        EXPECT_EQ(RunWhole("N\nnew\n" + answers + " C X\n").exitStatus, 0);
        auto expected = TakeFiles();
        WriteFiles(folder_, files);
        const CommandRun run = RunCommand(options);
        EXPECT_EQ(run.status, 0) << run.err;
        warnings_ = run.err;
        auto made = TakeFiles();
        names_ = made["newNames.csv"];
        made.erase("newNames.csv");
        EXPECT_EQ(made, expected) << answers;
    }
    void ExpectDerived(const std::string& answers, Texts options) {
        options.insert(options.begin(), {"derive", "--from", "old", "--session", "new"});
        ExpectSame(Source(), "2\nold\n2\n" + answers, options);
    }

    static constexpr const char* kGroups = "site;group\nd;dry\nb;wet meadow\na;dry\nc;dry\n";
    std::string warnings_, names_;
};

}  // namespace

TEST_F(SessionCommands, DerivingMakesTheFilesOfTheDialogue) {
    ExpectDerived("1 1 1 1 n", {});
    ExpectDerived("2 1 k woody y 2 2 k 2 1 y 2 3 k c a d y 2 1 k grazed y y",
                  {"--traits", "woody", "--otus", "Stipa,Poa annua", "--communities", "c,a,d",
                   "--variables", "grazed", "--trim"});
    EXPECT_EQ(warnings_, "TESSEL: warning: 1 communities of new are empty\n");
    ExpectDerived("1 1 3 2 1 n k 1 2 1 1 y 1 n", {"--pool", "groups.csv"});
    EXPECT_TRUE(Contains(names_, "wet meadow"));
    EXPECT_TRUE(Contains(warnings_, "become quantitative, as averages: 'grazed'\n"));
    ExpectDerived("1 1 4 1 1 1 y", {"--change", "pairs.csv", "--trim"});
    EXPECT_TRUE(Contains(names_, "far one"));
    ExpectDerived("1 1 5 4 1 n", {"--moving-window", "4"});
}

TEST_F(SessionCommands, MergingMakesTheFilesOfTheDialogue) {
    std::string second = Replaced(Source(), "25Jun2016", "18Jan2008");
    second = Replaced(second, "Stipa", "Carex");
    for (const char* version : {"18Jan2008", "25Jun2016"}) {
        folder_.Write("twoFormda.txt", second);
        const std::string source = Source();
        const auto files = [&](const std::string& two) {
            WriteFiles(folder_, {{"oldFormda.txt", source}, {"twoFormda.txt", two}});
        };
        files(second);
        EXPECT_EQ(RunWhole("N\nnew\n3\nold\ntwo\nC X\n").exitStatus, 0);
        const auto expected = TakeFiles();
        files(Replaced(second, "18Jan2008", version));
        const CommandRun run = RunCommand("merge --from old two --session new");
        EXPECT_EQ(run.status, 0);
        EXPECT_TRUE(Contains(run.err, "OTUs of two stand under the communities of old")) << run.err;
        const auto made = TakeFiles();
        for (const char* file : {"newFormda.txt", "newTrk.txt"})
            EXPECT_EQ(made.at(file), expected.at(file)) << version;
        EXPECT_TRUE(Contains(made.at("newNames.csv"), "Poa annua (two)"));
        EXPECT_TRUE(Contains(made.at("newNames.csv"), "d (two)"));
    }
}

TEST_F(SessionCommands, WhatCannotBeDoneIsTold) {
    folder_.Write("oldFormda.txt", Source("2"));
    folder_.Write("groups.csv", kGroups);
    folder_.Write("three.csv", "site,group\na,1\nb,1\nc,2\n");
    folder_.Write("twice.csv", "site,group\na,1\nb,1\nc,2\nd,2\na,2\n");
    folder_.Write("odd.csv", "new,first,second\nx,a,b\n");
    folder_.Write("goneFormda.txt", "T\n2\n");
    using Row = std::tuple<Texts, int, const char*>;
    for (const auto& [options, status, message] :
         {Row{{"--from", "old", "--session", "old"}, 2, "must name another session"},
          {{"--from", "nix", "--session", "new"}, 1, "nixFormda.txt is not in the working direc"},
          {{"--from", "gone", "--session", "new"}, 1, "file goneFormda.txt: a file ended too ear"},
          {{"--traits", "height"}, 1, "--traits: the session has no 'height' ('Height' but for"},
          {{"--communities", "a,a"}, 1, "--communities: two items are named 'a'"},
          {{"--pool", "groups.csv"}, 1, "nominal variables have no averages: 'grazed'"},
          {{"--variables", "water", "--pool", "three.csv"},
           1,
           "three.csv: communities of the sess"},
          {{"--variables", "water", "--pool", "twice.csv"},
           1,
           "twice.csv: the community 'a' stands twice"},
          {{"--change", "odd.csv"}, 1, "odd.csv: communities of the session are missing: 'c', 'd'"},
          {{"--pool", "groups.csv", "--communities", "a"}, 2, "--communities excludes --pool"},
          {{"--variables", "water", "--moving-window", "3"},
           2,
           "an even number from 2 to the numb"},
          {{"--communities", "c", "--trim"},
           1,
           "no OTU occurs in the communities that are kept"}}) {
        Texts all = {"derive"};
        if (options[0] != "--from") all = {"derive", "--from", "old", "--session", "new"};
        all.insert(all.end(), options.begin(), options.end());
        const CommandRun run = RunCommand(all);
        EXPECT_EQ(run.status, status);
        EXPECT_TRUE(Contains(run.err, message)) << run.err;
        EXPECT_EQ(run.err.rfind("TESSEL: ", 0), 0U);
        EXPECT_FALSE(folder_.Has("newFormda.txt"));
    }
    Texts derive = {"derive", "--from", "old", "--session", "new"};
    EXPECT_EQ(RunCommand(derive).status, 0);
    EXPECT_EQ(RunCommand(derive).err,
              "TESSEL: newFormda.txt: is there already: give --force to replace it\n");
    derive.emplace_back("--force");
    EXPECT_EQ(RunCommand(derive).status, 0);
    const CommandRun merge = RunCommand("merge --from old gone --session both");
    EXPECT_TRUE(Contains(merge.err, "file goneFormda.txt: a file ended too early")) << merge.err;
    derive = {"derive", "--from", "old", "--session", "part", "--communities", "a"};
    EXPECT_EQ(RunCommand(derive).status, 0);
    for (const auto& [second, message] :
         {std::pair("part", "and oldFormda.txt has 4, partFormda.txt 1 communities"),
          {"other", "cannot be merged: Labels for traits do not match (or their order)."}}) {
        folder_.Write("otherFormda.txt", Replaced(Source(), "woody", "Woody"));
        const CommandRun run = RunCommand({"merge", "--from", "old", second, "--session", "both"});
        EXPECT_TRUE(Contains(run.err, message)) << run.err;
    }
}

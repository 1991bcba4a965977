// The dialogue on prepared answers by the command line.

#include "support/good_session.h"
#include "tessel/in_command.h"

namespace {

using DialogueCommand = InProcess;

CommandRun RunAnswers(const TempFolder& folder, const std::string& answers) {
    TakeFiles();
    WriteFiles(folder, GoodFiles());
    folder.Write("answers.txt", answers);
    free1D(gSpareBlockPtr);
    return RunCommand("dialogue --answers answers.txt");
}

}  // namespace

TEST_F(DialogueCommand, ScreenAndFilesAreThoseOfTheDialogue) {
    WriteFiles(folder_, GoodFiles());
    const std::string answers = Answers(GoodSession());
    folder_.Write("answers.txt", answers);
    const ConsoleRun dialogue = RunWhole(answers);
    const auto files = TakeFiles();
    const CommandRun run = RunAnswers(folder_, answers);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Masked(run.out), Masked(dialogue.out));
    EXPECT_EQ(run.err, dialogue.err);
    EXPECT_EQ(TakeFiles(), files);
}

// The dialogue rests for ever where its answers run out: scripts hung.
TEST_F(DialogueCommand, EndsWhereTheAnswersRunOut) {
    const std::vector<Step> session = GoodSession();
    for (std::size_t steps = 0; steps < session.size(); steps++)
        for (const bool ended : {true, false}) {
            std::string answers = Answers(session, steps);
            if (!ended && steps > 0) answers.pop_back();
            const CommandRun run = RunAnswers(folder_, answers);
            EXPECT_EQ(run.status, 1);
            const std::string place = "TESSEL: answers.txt" +
                                      (steps > 0 ? ", line " + std::to_string(steps) : "") +
                                      ": the answers run out, at the question \"";
            EXPECT_EQ(run.err.rfind(place, 0), 0U) << run.err;
            EXPECT_EQ(Count(run.err, "\n"), 1) << run.err;
        }
    for (const auto& [prompt, question] :
         {std::pair("session name", "\"Enter session name:\": add"),
          {"order of E", "\"Data entered by communities(N) or by variables(T)?:\": add"},
          {"restriction", "\"OTU permutation restrictions: ... Enter option:\": add"}}) {
        std::size_t steps = 0;
        while (session[steps].prompt != prompt) steps++;
        const std::string error = RunAnswers(folder_, Answers(session, steps)).err;
        EXPECT_TRUE(Contains(error, question)) << error;
    }
}

TEST_F(DialogueCommand, EndsAfterAnError) {
    std::string answers =
        "N\nnew\n1\nB.txt\n0\nW.txt\n1\nspp.txt\n0\n9\n3\n1\n2\nk\n3 1 2\ny\n0\n4\n1\n";
    for (const char* rest : {"1\n1\n", "1\n1\nX\nX\n"}) {
        const CommandRun run = RunAnswers(folder_, answers + rest);
        EXPECT_EQ(run.status, 1);
        EXPECT_TRUE(Contains(run.err, "Quit and restart TESSEL.\n\aTESSEL: answers.txt, line 2"));
        EXPECT_TRUE(Contains(run.err, ": the dialogue ended with an error, at the question \""));
    }
    for (const char* arguments : {"--answers", "--answers none.txt", ""})
        EXPECT_EQ(RunCommand(std::string("dialogue ") + arguments).status, 2);
}

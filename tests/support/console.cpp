#include "support/console.h"

#include <gtest/gtest.h>

#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"

namespace {

struct Ended {
    int status;
};
struct Rested {};

std::string Collect(FILE* stream) {
    std::fflush(stream);
    std::rewind(stream);
    std::string text;
    for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream)) text.push_back(char(c));
    std::fclose(stream);
    return text;
}

}  // namespace

ConsoleRun WithConsole(const std::string& answers, const std::function<void(FILE*)>& body) {
    ConsoleRun run;
    FILE* input = std::tmpfile();
    std::fwrite(answers.data(), 1, answers.size(), input);
    std::rewind(input);
    FILE* output = std::tmpfile();
    FILE* errors = std::tmpfile();
    FILE* const keptIn = stdin;
    FILE* const keptOut = stdout;
    FILE* const keptErr = stderr;
    stdin = input;
    stdout = output;
    stderr = errors;
    SetInputFinished(false);
    processEndings.end = [](int status) { throw Ended{status}; };
    processEndings.rest = [] { throw Rested{}; };
    try {
        body(input);
    } catch (const RaisedError& error) {
        run.raised = error.code;
    } catch (const Ended& ended) {
        run.exitStatus = ended.status;
    } catch (const Rested&) {
        run.rests = true;
    }
    processEndings = {};
    stdin = keptIn;
    stdout = keptOut;
    stderr = keptErr;
    SetInputFinished(false);
    std::fclose(input);
    run.out = Collect(output);
    run.err = Collect(errors);
    return run;
}

#include "TSLCLI/engine.h"

#include <cstdio>
#include <string>

#include "TSLCLI/failure.h"
#include "TSLGLOB/shell.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/platform.h"
#include "mxlibDim/standard_streams.h"

namespace {

struct EngineEnded {};

/// The engine's streams and endings for the length of a scope.
class Backstage {
  public:
    Backstage() : nowhere_(std::fopen(kNullDevice, "w")) {
        if (nowhere_ == nullptr) FailRun(std::string(kNullDevice) + " cannot be opened");
        out = screen;
        consoleStreams = {nowhere_, errors, {}};
        processEndings.end = [](int) { throw EngineEnded(); };
        processEndings.rest = [] { throw EngineEnded(); };
    }
    ~Backstage() {
        out = keptOut_;
        consoleStreams = keptStreams_;
        processEndings = keptEndings_;
        std::fclose(nowhere_);
    }
    Backstage(const Backstage&) = delete;
    Backstage& operator=(const Backstage&) = delete;

    KeptOutput screen, errors;

  private:
    FILE* const nowhere_;
    FILE* const keptOut_ = out;
    const ConsoleStreams keptStreams_ = consoleStreams;
    const ProcessEndings keptEndings_ = processEndings;
};

}  // namespace

EngineTalk RunEngine(const std::function<void()>& body) {
    Backstage backstage;
    try {
        body();
    } catch (const RaisedError& error) {
        const std::string said = OneLine(backstage.errors.Take());
        FailRun((said.empty() ? "" : said + ": ") + TextOfRaised(error));
    } catch (const EngineEnded&) {
        FailRun("the run cannot go on: " + OneLine(backstage.errors.Take()));
    }
    return {OneLine(backstage.screen.Take()), OneLine(backstage.errors.Take())};
}

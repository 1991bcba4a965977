#include "TSLCLI/engine.h"

#include <cstdio>
#include <cstdlib>
#include <new>

#include "TSLCLI/failure.h"
#include "TSLGLOB/shell.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/standard_streams.h"

namespace {

/// A stream of output that keeps what is written on it.
class KeptOutput {
  public:
    KeptOutput() : stream_(open_memstream(&text_, &length_)) {
        if (stream_ == nullptr) throw std::bad_alloc();
    }
    ~KeptOutput() {
        std::fclose(stream_);
        std::free(text_);
    }
    KeptOutput(const KeptOutput&) = delete;
    KeptOutput& operator=(const KeptOutput&) = delete;
    operator FILE*() const { return stream_; }

    std::string Line() {
        std::fflush(stream_);
        return OneLine({text_, length_});
    }

  private:
    char* text_ = nullptr;
    std::size_t length_ = 0;
    FILE* stream_;
};

struct EngineEnded {};

/// The engine's streams and endings for the length of a scope.
class Backstage {
  public:
    Backstage() : nowhere_(std::fopen("/dev/null", "w")) {
        if (nowhere_ == nullptr) FailRun("/dev/null cannot be opened");
        out = screen;
        consoleStreams = {nowhere_, errors};
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
        const std::string said = backstage.errors.Line();
        FailRun((said.empty() ? "" : said + ": ") + TextOfRaised(error));
    } catch (const EngineEnded&) {
        FailRun("the run cannot go on: " + backstage.errors.Line());
    }
    return {backstage.screen.Line(), backstage.errors.Line()};
}

#include "support/run_program.h"

#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdlib>
#include <regex>

namespace {

double ProcessorTimeOfChildren() {
    rusage used = {};
    getrusage(RUSAGE_CHILDREN, &used);
    const auto seconds = [](const timeval& t) {
        return double(t.tv_sec) + double(t.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

}  // namespace

ProgramRun RunProgram(const TempFolder& folder, const std::string& answers, double seconds,
                      const std::string& signal) {
    const TempFolder streams;
    streams.Write("in", answers);
    const double before = ProcessorTimeOfChildren();
    const std::string command = "cd " + folder.path().string() + " && exec timeout -s " + signal +
                                " " + std::to_string(seconds) + " " TESSEL_PROGRAM " <" +
                                streams.File("in") + " >" + streams.File("out") + " 2>" +
                                streams.File("err");
    const int status = std::system(command.c_str());
    const double time = ProcessorTimeOfChildren() - before;
    return {streams.Read("out"), streams.Read("err"),
            WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status), time};
}

std::string Masked(const std::string& text) {
    static const std::regex stamp(
        "(Mon|Tue|Wed|Thu|Fri|Sat|Sun) [A-Z][a-z]{2} [ 0-9]{2} [0-9:]{8} [0-9]{4}");
    static const std::regex elapsed("(Elapsed time[^:\n]*: )[-+.0-9e]+");
    static const std::regex progress("\b*(?= *(Iteration|Permutation test): )[^\b\n]{40} {40}\b*");
    const std::string masked = std::regex_replace(text, stamp, "<time>");
    return std::regex_replace(std::regex_replace(masked, elapsed, "$1<n>"), progress, "");
}

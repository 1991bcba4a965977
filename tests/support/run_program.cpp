#include "support/run_program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <regex>
#include <thread>

namespace {

[[noreturn]] void BecomeProgram(const TempFolder& folder, const TempFolder& streams) {
    const int in = open(streams.File("in").c_str(), O_RDONLY);
    const int out = open(streams.File("out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int err = open(streams.File("err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(in, 0);
    dup2(out, 1);
    dup2(err, 2);
    if (chdir(folder.path().c_str()) != 0) _exit(127);
    execl(TESSEL_PROGRAM, TESSEL_PROGRAM, static_cast<char*>(nullptr));
    _exit(127);
}

}  // namespace

ProgramRun RunProgram(const TempFolder& folder, const std::string& answers, double seconds,
                      int stopSignal) {
    TempFolder streams;
    streams.Write("in", answers);
    const pid_t child = fork();
    if (child == 0) BecomeProgram(folder, streams);
    ProgramRun run;
    const auto limit = std::chrono::steady_clock::now() +
                       std::chrono::nanoseconds(static_cast<long long>(seconds * 1e9));
    int status = 0;
    rusage used = {};
    while (wait4(child, &status, WNOHANG, &used) == 0) {
        if (std::chrono::steady_clock::now() > limit) {
            run.timedOut = true;
            kill(child, stopSignal);
            wait4(child, &status, 0, &used);
            break;
        }
        std::this_thread::sleep_until(
            std::min(limit, std::chrono::steady_clock::now() + std::chrono::milliseconds(2)));
    }
    if (!run.timedOut && WIFEXITED(status)) run.status = WEXITSTATUS(status);
    if (!run.timedOut && WIFSIGNALED(status)) run.signal = WTERMSIG(status);
    for (const timeval& time : {used.ru_utime, used.ru_stime})
        run.cpuSeconds += double(time.tv_sec) + double(time.tv_usec) * 1e-6;
    run.out = streams.Read("out");
    run.err = streams.Read("err");
    return run;
}

std::string Masked(const std::string& text) {
    static const std::regex stamp(
        "(Mon|Tue|Wed|Thu|Fri|Sat|Sun) [A-Z][a-z]{2} [ 0-9]{2} [0-9:]{8} [0-9]{4}");
    static const std::regex elapsed("Elapsed time for the test\\(s\\): [-+.0-9e]+ seconds");
    static const std::regex progress("\b*[^\b]{80}(?=\b{80})");
    std::string masked = std::regex_replace(text, stamp, "<time>");
    masked = std::regex_replace(masked, elapsed, "Elapsed time for the test(s): <n> seconds");
    return std::regex_replace(masked, progress, "");
}

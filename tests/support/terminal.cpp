#include "support/terminal.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

Terminal::Terminal(const std::function<void()>& child) {
    child_ = forkpty(&master_, nullptr, nullptr, nullptr);
    if (child_ == 0) {
        termios mode = {};  // without echo and without "\r"
        tcgetattr(0, &mode);
        mode.c_lflag &= ~tcflag_t(ECHO);
        mode.c_oflag &= ~tcflag_t(OPOST);
        tcsetattr(0, TCSANOW, &mode);
        child();
        _exit(0);
    }
    Read(30);  // the child has begun
}

Terminal::Terminal(const TempFolder& folder)
    : Terminal([&folder] {
          if (chdir(folder.path().c_str()) == 0)
              execl(TESSEL_PROGRAM, TESSEL_PROGRAM, static_cast<char*>(nullptr));
          _exit(127);
      }) {}

Terminal::~Terminal() {
    if (child_ > 0) Kill();
    if (child_ > 0) waitpid(child_, nullptr, 0);
    close(master_);
}

void Terminal::Type(const std::string& answers) const {
    for (std::size_t done = 0; done < answers.size();) {
        const ssize_t written = write(master_, answers.data() + done, answers.size() - done);
        if (written <= 0) return;
        done += std::size_t(written);
    }
}

bool Terminal::Read(double seconds) {
    pollfd ready = {master_, POLLIN, 0};
    const double start = Now();
    if (poll(&ready, 1, int(1000 * seconds)) < 1) return false;
    char piece[4096];
    const ssize_t size = read(master_, piece, sizeof piece);
    if (size < 1) return false;
    longestSilence = std::max(longestSilence, Now() - start);
    screen.append(piece, std::size_t(size));
    return true;
}

bool Terminal::Shows(const std::string& text, double seconds) {
    const double end = Now() + seconds;
    for (;;) {
        const std::size_t at = screen.find(text, seen_);
        if (at != std::string::npos) {
            seen_ = at + text.size();
            return true;
        }
        if (!Read(std::max(0.0, end - Now()))) return false;
    }
}

int Terminal::Finish() {
    while (Read(30)) continue;
    int status = 0;
    waitpid(std::exchange(child_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void Terminal::Kill() const {
    kill(child_, SIGKILL);
}

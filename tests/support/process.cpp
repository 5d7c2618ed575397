// SPDX-License-Identifier: MIT
// Child processes with both their streams read as they come.
#include "support/process.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

namespace test {

namespace {

using Clock = std::chrono::steady_clock;
// Far longer than anything takes: it only keeps a hanging program from hanging the tests.
constexpr auto kPatience = std::chrono::seconds(60);

struct Ends {
  int read;
  int write;
};

Ends MakePipe() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) ::abort();
  return {ends[0], ends[1]};
}

Ends MakeTerminal() {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) ::abort();
  char name[64];
  if (::ptsname_r(master, name, sizeof name) != 0) ::abort();
  return {master, ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC)};
}

// Makes `terminal` that of the process, and all its streams.
void EnterTerminal(int terminal) {
  ::setsid();
  ::ioctl(terminal, TIOCSCTTY, 0);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(terminal, stream);
}

// Whoever started the tests may ignore signals, and what ignores them is inherited: nohup a closed
// terminal, a shell the interruption of what it runs in the background.
void HearSignals() {
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM}) ::signal(signal, SIG_DFL);
}

}  // namespace

Process::Process(const std::string& program, const std::vector<std::string>& arguments,
                 Setting setting) {
  const bool in_terminal = setting == Setting::kInTerminal;
  const Ends out = in_terminal ? MakeTerminal() : MakePipe();
  const Ends err = setting == Setting::kErrorsOnTerminal ? MakeTerminal() : MakePipe();
  std::vector<char*> argv = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  pid_ = ::fork();
  if (pid_ == 0) {
    HearSignals();
    if (setting == Setting::kBoundByFileModes) ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    const int nothing = ::open("/dev/null", O_RDONLY);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(out.write, STDOUT_FILENO);
    ::dup2(err.write, STDERR_FILENO);
    if (in_terminal) EnterTerminal(out.write);
    ::execv(program.c_str(), argv.data());
    ::_exit(127);
  }
  ::close(out.write);
  ::close(err.write);
  out_ = out.read;
  err_ = err.read;
}

Process::~Process() {
  if (!ended_) {
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
  }
  if (out_ >= 0) ::close(out_);
  if (err_ >= 0) ::close(err_);
}

bool Process::WaitForOutput(const std::string& text, int times) {
  return Pump([&] {
    int found = 0;
    for (std::size_t at = result_.out.find(text); at != std::string::npos;
         at = result_.out.find(text, at + 1)) {
      ++found;
    }
    return found >= times;
  });
}

bool Process::WaitForErrors(const std::string& text) {
  return Pump([&] { return result_.err.find(text) != std::string::npos; });
}

void Process::Signal(int signal) {
  if (!ended_) ::kill(pid_, signal);
}

void Process::Halt() {
  Signal(SIGSTOP);
  siginfo_t stopped = {};
  ::waitid(P_PID, static_cast<id_t>(pid_), &stopped, WSTOPPED | WEXITED | WNOWAIT);
}

void Process::StopReading() {
  if (out_ >= 0) ::close(out_);
  out_ = -1;
}

void Process::Resize(unsigned short columns) {
  winsize size = {};
  size.ws_row = 24;
  size.ws_col = columns;
  for (const int terminal : {out_, err_}) ::ioctl(terminal, TIOCSWINSZ, &size);
}

Ended Process::Wait() {
  if (!Pump([this] { return out_ < 0 && err_ < 0; })) Signal(SIGKILL);
  Reap();
  return result_;
}

// Reads both streams until `done`. False when both end, or patience does, before.
bool Process::Pump(const std::function<bool()>& done) {
  const auto end = Clock::now() + kPatience;
  while (!done()) {
    if ((out_ < 0 && err_ < 0) || Clock::now() >= end) return false;
    pollfd streams[2] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
    ::poll(streams, 2, 100);
    if (streams[0].revents != 0) Read(&out_, &result_.out);
    if (streams[1].revents != 0) Read(&err_, &result_.err);
  }
  return true;
}

void Process::Read(int* descriptor, std::string* text) {
  char buffer[4096];
  const ssize_t count = ::read(*descriptor, buffer, sizeof buffer);
  if (count > 0) {
    text->append(buffer, static_cast<std::size_t>(count));
    return;
  }
  ::close(*descriptor);
  *descriptor = -1;
}

void Process::Reap() {
  if (ended_) return;
  int status = 0;
  ::waitpid(pid_, &status, 0);
  ended_ = true;
  result_.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

Ended RunProgram(const std::string& program, const std::vector<std::string>& arguments) {
  return Process(program, arguments).Wait();
}

Ended Ipodctl(const std::vector<std::string>& arguments) {
  return RunProgram(IPODCTL_PROGRAM, arguments);
}

}  // namespace test

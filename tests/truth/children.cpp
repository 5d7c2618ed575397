// SPDX-License-Identifier: MIT
// Forks a process for each run, and reads its report from a pipe.
#include "children.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <exception>
#include <nlohmann/json.hpp>

#include "finding_judge.h"

namespace truth {

namespace {

using Clock = std::chrono::steady_clock;
using Json = nlohmann::json;

// Of real time; a run takes some milliseconds.
constexpr std::chrono::seconds kPatience(60);

struct Child {
  const Case* run = nullptr;
  pid_t pid = -1;
  int pipe = -1;
  std::string text;
  Clock::time_point deadline;
};

std::string Packed(const Report& report) {
  const Json json = {static_cast<int>(report.judgement.verdict),
                     report.judgement.why,
                     report.seconds,
                     report.requests,
                     report.answers,
                     report.struck,
                     report.has_a_name,
                     report.named,
                     report.findings,
                     report.not_proved};
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Report Hung(const Case& run, const std::string& why) {
  Report report;
  report.run = run;
  report.judgement = {Verdict::kHang, why};
  return report;
}

Report Unpacked(const Case& run, const std::string& text, const std::string& ended) {
  const Json json = Json::parse(text, nullptr, false);
  if (!json.is_array()) return Hung(run, ended);
  return {run,     {static_cast<Verdict>(json.at(0).get<int>()), json.at(1)},
          json[2], json[3],
          json[4], json[5],
          json[6], json[7],
          json[8], json[9]};
}

[[noreturn]] void BeChild(const Case& run, int pipe) {
  // What the world and the library say of their own is not of interest.
  const int nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  std::string text;
  try {
    text = Packed(RunHere(run, false));
  } catch (const std::exception& error) {
    text = Packed(Hung(run, error.what()));
  }
  const ssize_t written = write(pipe, text.data(), text.size());
  _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
}

Child Fork(const Case& run) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t pid = fork();
  if (pid < 0) throw std::runtime_error("no process");
  if (pid == 0) {
    close(ends[0]);
    BeChild(run, ends[1]);
  }
  close(ends[1]);
  return {&run, pid, ends[0], "", Clock::now() + kPatience};
}

// False once it has said all.
bool Listen(Child& child) {
  char buffer[4096];
  const ssize_t size = read(child.pipe, buffer, sizeof buffer);
  if (size > 0) child.text.append(buffer, static_cast<std::size_t>(size));
  return size > 0;
}

Report End(Child& child, bool in_time) {
  if (!in_time) kill(child.pid, SIGKILL);
  close(child.pipe);
  int status = 0;
  waitpid(child.pid, &status, 0);
  std::string ended = "it did not end";
  if (in_time) {
    ended = WIFSIGNALED(status) ? "crashed with signal " + std::to_string(WTERMSIG(status))
                                : "crashed with status " + std::to_string(WEXITSTATUS(status));
  }
  return Unpacked(*child.run, child.text, ended);
}

}  // namespace

Report RunHere(const Case& run, bool trace) {
  Report report;
  report.run = run;
  const Finished finished =
      Run(run, trace,
          [&](const Finished& seen, const ipodsim::SimulatedIpod& ipod, std::int64_t now_us) {
            report.judgement = Judge(run, seen, ipod, now_us);
          });
  report.seconds = finished.outcome.seconds;
  report.requests = finished.account.requests;
  report.answers = finished.account.answers;
  report.struck = finished.account.struck;
  report.has_a_name = HasAName(run, finished.account);
  report.named = IsNamed(run, finished.findings);
  report.not_proved = WhatIsNotProved(run, finished.account, finished.findings);
  for (const ipodwire::Finding& finding : finished.findings) {
    report.findings.push_back(finding.code);
  }
  if (trace) {
    std::fputs(finished.outcome.out.c_str(), stdout);
    std::printf("exit %d  %s\n", finished.outcome.status, finished.outcome.message.c_str());
    for (const ipodwire::Finding& finding : finished.findings) {
      std::printf("%s (%s): %s\n", finding.code.c_str(), NameOf(finding.certainty),
                  finding.seen.c_str());
    }
  }
  return report;
}

void RunInChildren(const std::vector<Case>& runs, unsigned at_a_time,
                   const std::function<void(const Report&)>& take) {
  std::vector<Child> children;
  std::size_t next = 0;
  while (next < runs.size() || !children.empty()) {
    while (next < runs.size() && children.size() < at_a_time) {
      children.push_back(Fork(runs[next++]));
    }
    std::vector<pollfd> pipes;
    pipes.reserve(children.size());
    for (const Child& child : children) pipes.push_back({child.pipe, POLLIN, 0});
    poll(pipes.data(), static_cast<nfds_t>(pipes.size()), 1000);
    std::vector<Child> left;
    for (std::size_t i = 0; i < children.size(); ++i) {
      Child& child = children[i];
      const bool in_time = Clock::now() < child.deadline;
      const bool more = pipes[i].revents == 0 || Listen(child);
      if (more && in_time) {
        left.push_back(std::move(child));
      } else {
        take(End(child, in_time));
      }
    }
    children = std::move(left);
  }
}

}  // namespace truth

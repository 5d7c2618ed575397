// SPDX-License-Identifier: MIT
// Runs a program and reads what it prints, within a minute.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace test {

/// How a program ended and what it printed.
struct Ended {
  int status = -1;  // exit status; -1 when it was killed or did not end in time
  std::string out;
  std::string err;
};

class Process {
 public:
  enum class Setting {
    kPlain,
    kErrorsOnTerminal,  // standard error is a terminal
    kInTerminal,        // all streams are the terminal that the program belongs to
    kBoundByFileModes,  // also when the tests run as root, whom files' modes do not bind
  };

  /// Starts `program`. Its standard input is empty.
  Process(const std::string& program, const std::vector<std::string>& arguments,
          Setting setting = Setting::kPlain);
  /// Kills what still runs.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// Waits until standard output holds `text`, so many times. False when the program ends or a
  /// minute passes first.
  bool WaitForOutput(const std::string& text, int times = 1);
  /// The same for standard error.
  bool WaitForErrors(const std::string& text);
  void Signal(int signal);
  /// Stops it where it is. It does nothing more once this returns, until it gets SIGCONT.
  void Halt();
  /// Closes the reading end of standard output, or the terminal of a program that is in one.
  void StopReading();
  /// Sets the width of the terminal.
  void Resize(unsigned short columns);
  /// Waits for the end, at most a minute; kills the program then.
  Ended Wait();

 private:
  bool Pump(const std::function<bool()>& done);
  void Read(int* descriptor, std::string* text);
  void Reap();

  pid_t pid_ = -1;
  int out_ = -1;
  int err_ = -1;
  bool ended_ = false;
  Ended result_;
};

Ended RunProgram(const std::string& program, const std::vector<std::string>& arguments);
/// Runs ipodctl.
Ended Ipodctl(const std::vector<std::string>& arguments);

}  // namespace test

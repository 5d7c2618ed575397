// SPDX-License-Identifier: MIT
// What differs between the systems that the program runs on; one file implements it for each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace ipodctl {

/// Command-line arguments as UTF-8, the program's own name left out.
std::vector<std::string> Utf8Arguments(int argc, char** argv);
/// Makes the console show UTF-8 where it does not by itself.
void PrepareConsole();

bool IsTerminal(std::FILE* stream);
/// Has standard input read as bytes, where it would be text otherwise.
void ReadInputAsBytes();
/// Width of the terminal behind `stream`; 80 when unknown.
int TerminalColumns(std::FILE* stream);

/// Has `note` called when the terminal is closed, and writing to a pipe that nobody reads fail
/// rather than end the program.
void CatchHangUp(void (*note)(int signal));

void SetEnvironment(const char* name, const std::string& value);
/// Empty where it is not set.
std::string Environment(const char* name);

/// The device that the library's port name stands for.
std::string PortDevice();
/// Makes it stand for `device`. False where the system fixes which device it is.
bool ChoosePortDevice(const std::string& device);
/// In place of the system's code where there is none.
constexpr long kUnknownReason = -1;
/// Why a port could not be opened.
struct PortProblem {
  std::string finding;  ///< its code, see 'ipodctl explain'; empty when there are several causes
  std::string text;  ///< and what to do, the rest of a sentence that starts "cannot open DEVICE: "
};
/// @param code the system's
PortProblem WhyNotOpened(const std::string& device, long code);

/// Makes the library record its line in `file`; "-" stands for what `output` leads to.
/// @return why it cannot, the rest of a sentence; empty when it can
std::string CaptureLine(const std::string& file, std::FILE* output);

/// Changes the speed of a serial line that the library has open, behind its back: the library
/// itself always opens it at the same speed.
class LineSpeed {
 public:
  /// To be made before the library opens the device, which keeps others out.
  explicit LineSpeed(const std::string& device);
  ~LineSpeed();
  LineSpeed(const LineSpeed&) = delete;
  LineSpeed& operator=(const LineSpeed&) = delete;

  /// False where it cannot be changed so, or the device does not know that speed.
  bool Set(std::uint32_t baud);

 private:
  int line_ = -1;
};

/// Lets what begins so through to standard error once, where the library writes its log there.
void SayOnce(const char* beginning);

/// Lets go of standard output: whatever is written to it is dropped.
void DropStandardOutput();

/// Redirects standard output: the program writes to stream(), and what anything else writes to
/// standard output (the library's trace lines) is dropped or, on request, sent to standard error.
class StdoutGuard {
 public:
  enum class Others { kDropped, kToStandardError };

  explicit StdoutGuard(Others others);
  ~StdoutGuard();
  StdoutGuard(const StdoutGuard&) = delete;
  StdoutGuard& operator=(const StdoutGuard&) = delete;

  std::FILE* stream() const { return stream_; }

 private:
  std::FILE* stream_ = nullptr;
};

/// The same memory at two addresses: what is written to one can be watched at the other while the
/// writer, which knows of no lock, is at work. A reader may see a text half written and should look
/// twice.
class WatchedMemory {
 public:
  /// Zeroed. Throws std::bad_alloc when the system has none.
  explicit WatchedMemory(std::size_t bytes);
  ~WatchedMemory();
  WatchedMemory(const WatchedMemory&) = delete;
  WatchedMemory& operator=(const WatchedMemory&) = delete;

  void* written() const { return written_; }
  const volatile void* watched() const { return watched_; }

 private:
  std::size_t bytes_;
  void* written_ = nullptr;
  void* watched_ = nullptr;
};

}  // namespace ipodctl

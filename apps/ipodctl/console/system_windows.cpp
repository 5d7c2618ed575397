// SPDX-License-Identifier: MIT
// The program's few needs of Windows.
#include <windows.h>
// The order matters: these headers need the one above.
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "console/system.h"
#include "console/text.h"

namespace ipodctl {

namespace {

void Unmap(void* view) {
  if (view != nullptr) UnmapViewOfFile(view);
}

}  // namespace

std::vector<std::string> Utf8Arguments(int argc, char** argv) {
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return {argv + 1, argv + argc};
  for (int i = 1; i < count; ++i) arguments.push_back(Utf8(wide[i]));
  LocalFree(wide);
  return arguments;
}

void PrepareConsole() { SetConsoleOutputCP(CP_UTF8); }

bool IsTerminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

void ReadInputAsBytes() { _setmode(_fileno(stdin), _O_BINARY); }

int TerminalColumns(std::FILE* stream) {
  CONSOLE_SCREEN_BUFFER_INFO info = {};
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
  if (GetConsoleScreenBufferInfo(console, &info) == FALSE) return 80;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

// A closed console ends programs here before they could end anything in good order.
void CatchHangUp(void (* /*note*/)(int signal)) {}

void SetEnvironment(const char* name, const std::string& value) {
  _wputenv_s(Wide(name).c_str(), Wide(value).c_str());
}

std::string Environment(const char* name) {
  const wchar_t* const value = _wgetenv(Wide(name).c_str());
  return value == nullptr ? "" : Utf8(value);
}

// The library takes the system's standard output for its recording, whatever the C library calls
// so.
std::string CaptureLine(const std::string& file, std::FILE* output) {
  if (file == "-") {
    SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(output))));
  } else {
    std::FILE* const made = _wfopen(Wide(file).c_str(), L"ab");
    if (made == nullptr) return std::strerror(errno);
    std::fclose(made);
  }
  SetEnvironment("IPODCOMM_CAPTURE", file);
  return {};
}

std::string PortDevice() { return "COM2"; }

bool ChoosePortDevice(const std::string& device) {
  return SameName(device, "COM2") || SameName(device, "COM2:");
}

PortProblem WhyNotOpened(const std::string& /*device*/, long code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return {"E101",
              "there is no such port; give the dock's adapter this name in the Device Manager"};
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
      return {"E102", "it is in use; close the other program that has it open"};
    case kUnknownReason:
      return {"",
              "there is no such port, or it is in use; close the other program that has it open, "
              "or give the dock's adapter this name in the Device Manager"};
    default:
      return {"E104", "it does not work as a serial line (code " + std::to_string(code) + ")"};
  }
}

// The library's log goes to the debugger.
void SayOnce(const char* /*beginning*/) {}

void DropStandardOutput() {
  const int nowhere = _open("NUL", _O_WRONLY);
  if (nowhere < 0) return;
  _dup2(nowhere, _fileno(stdout));
  _close(nowhere);
}

// A port that is open is kept from everybody else here.
LineSpeed::LineSpeed(const std::string& /*device*/) {}

LineSpeed::~LineSpeed() = default;

bool LineSpeed::Set(std::uint32_t /*baud*/) { return false; }

StdoutGuard::StdoutGuard(Others others) {
  std::fflush(stdout);
  const int standard_output = _fileno(stdout);
  const int own = _dup(standard_output);
  if (own >= 0) stream_ = _fdopen(own, "w");
  if (stream_ == nullptr) stream_ = stderr;  // standard output was closed by the caller
  if (others == Others::kToStandardError) {
    _dup2(_fileno(stderr), standard_output);
    return;
  }
  DropStandardOutput();
}

// Others stay diverted: the library's worker threads may print until the process ends.
StdoutGuard::~StdoutGuard() {
  std::fflush(stream_);
  if (stream_ != stderr) std::fclose(stream_);
}

WatchedMemory::WatchedMemory(std::size_t bytes) : bytes_(bytes) {
  const HANDLE section = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                            static_cast<DWORD>(bytes_), nullptr);
  if (section == nullptr) throw std::bad_alloc();
  written_ = MapViewOfFile(section, FILE_MAP_WRITE, 0, 0, bytes);
  watched_ = MapViewOfFile(section, FILE_MAP_READ, 0, 0, bytes);
  CloseHandle(section);
  if (written_ != nullptr && watched_ != nullptr) return;
  Unmap(written_);
  Unmap(watched_);
  throw std::bad_alloc();
}

WatchedMemory::~WatchedMemory() {
  Unmap(written_);
  Unmap(watched_);
}

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// The program's few needs of Windows.
#include <windows.h>
// The order matters: this header needs the one above.
#include <io.h>
#include <shellapi.h>

#include <cstdlib>

#include "console/host.h"
#include "console/text.h"

namespace ipodctl {

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

int TerminalColumns(std::FILE* stream) {
  CONSOLE_SCREEN_BUFFER_INFO info = {};
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
  if (GetConsoleScreenBufferInfo(console, &info) == FALSE) return 80;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

void SetEnvironment(const char* name, const std::string& value) { _putenv_s(name, value.c_str()); }

std::string PortDevice() { return "COM2"; }

bool ChoosePortDevice(const std::string& device) {
  return SameName(device, "COM2") || SameName(device, "COM2:");
}

std::string WhyNotOpened(const std::string& /*device*/, long code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return "there is no such port; give the dock's adapter this name in the Device Manager";
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
      return "it is in use; close the other program that has it open";
    case kUnknownReason:
      return "there is no such port, or it is in use; close the other program that has it open, or "
             "give the dock's adapter this name in the Device Manager";
    default:
      return "it does not work as a serial line (code " + std::to_string(code) + ")";
  }
}

}  // namespace ipodctl

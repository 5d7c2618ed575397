// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

#include "wire/recording_pipe.h"

namespace ipodctl {

namespace {

constexpr int kPipeLookMs = 10;
constexpr DWORD kPipeBytes = 1 << 16;

}  // namespace

// A pipe that has a name, under which the library opens the other end as it would a file.
class RecordingPipe::SystemEnds : public Ends {
 public:
  static std::unique_ptr<Ends> Make() {
    const std::string name = "\\\\.\\pipe\\ipodctl-" + std::to_string(GetCurrentProcessId());
    const HANDLE read_end = CreateNamedPipeA(
        name.c_str(), PIPE_ACCESS_INBOUND | FILE_FLAG_FIRST_PIPE_INSTANCE,
        PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, kPipeBytes, kPipeBytes, 0, nullptr);
    if (read_end == INVALID_HANDLE_VALUE) return nullptr;
    return std::unique_ptr<Ends>(new SystemEnds(read_end, name));
  }
  ~SystemEnds() override { CloseHandle(read_end_); }

  std::string NameOfWriteEnd() const override { return name_; }
  void Wake() override {}  // the reader looks often

  /// False once the library has closed its end.
  bool Peek(DWORD* waiting) const {
    *waiting = 0;
    if (PeekNamedPipe(read_end_, nullptr, 0, nullptr, waiting, nullptr) != FALSE) return true;
    return GetLastError() != ERROR_BROKEN_PIPE;
  }

  std::size_t Read(std::uint8_t* bytes, std::size_t count) const {
    DWORD read = 0;
    ReadFile(read_end_, bytes, static_cast<DWORD>(count), &read, nullptr);
    return read;
  }

 private:
  SystemEnds(HANDLE read_end, std::string name) : read_end_(read_end), name_(std::move(name)) {}

  const HANDLE read_end_;
  const std::string name_;
};

std::unique_ptr<RecordingPipe::Ends> RecordingPipe::MakeEnds() { return SystemEnds::Make(); }

RecordingPipe::SystemEnds& RecordingPipe::ends() const { return static_cast<SystemEnds&>(*ends_); }

std::size_t RecordingPipe::Read(std::uint8_t* bytes, std::size_t count,
                                const std::function<void()>& meanwhile) {
  for (int waited_ms = 0;;) {
    const bool ending = ending_;
    DWORD waiting = 0;
    if (!ends().Peek(&waiting)) return 0;
    if (waiting > 0) return ends().Read(bytes, count);
    if (ending && (drained_ || waited_ms >= patience_ms_)) return 0;
    if (!ending) meanwhile();
    ::Sleep(kPipeLookMs);
    if (ending) waited_ms += kPipeLookMs;
  }
}

}  // namespace ipodctl

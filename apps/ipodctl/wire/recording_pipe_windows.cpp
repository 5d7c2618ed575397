// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

#include "console/system.h"
#include "wire/recording_pipe.h"

namespace ipodctl {

namespace {

constexpr int kPipeLookMs = 10;
// For what has been recorded and is not in the pipe yet.
constexpr int kLongestWaitMs = 1000;
constexpr int kGraceMs = 20;
constexpr DWORD kPipeBytes = 1 << 16;

}  // namespace

// A pipe that has a name, under which the library opens the other end as it would a file.
class RecordingPipe::Ends {
 public:
  /// Null where the system has none to give.
  static std::unique_ptr<Ends> Make() {
    const std::string name = "\\\\.\\pipe\\ipodctl-" + std::to_string(GetCurrentProcessId());
    const HANDLE read_end = CreateNamedPipeA(
        name.c_str(), PIPE_ACCESS_INBOUND | FILE_FLAG_FIRST_PIPE_INSTANCE,
        PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, kPipeBytes, kPipeBytes, 0, nullptr);
    if (read_end == INVALID_HANDLE_VALUE) return nullptr;
    return std::unique_ptr<Ends>(new Ends(read_end, name));
  }
  Ends(const Ends&) = delete;
  Ends& operator=(const Ends&) = delete;
  ~Ends() { CloseHandle(read_end_); }

  const std::string& NameOfWriteEnd() const { return name_; }

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
  Ends(HANDLE read_end, std::string name) : read_end_(read_end), name_(std::move(name)) {}

  const HANDLE read_end_;
  const std::string name_;
};

RecordingPipe::RecordingPipe(const std::function<void(RecordingPipe&)>& reader)
    : ends_(Ends::Make()) {
  if (ends_ == nullptr) return;
  set_recording(false);
  SetEnvironment("IPODCOMM_CAPTURE", ends_->NameOfWriteEnd());
  reader_ = std::thread([this, reader] { reader(*this); });
}

// By now all that is recorded of a closed port is in the pipe.
RecordingPipe::~RecordingPipe() {
  drained_ = true;
  End();
}

void RecordingPipe::Finish() { End(); }

void RecordingPipe::set_recording(bool recording) {
  patience_ms_ = recording ? kLongestWaitMs : kGraceMs;
}

void RecordingPipe::End() {
  if (!reader_.joinable()) return;
  ending_ = true;
  reader_.join();
}

std::size_t RecordingPipe::Read(std::uint8_t* bytes, std::size_t count,
                                const std::function<void()>& meanwhile) {
  for (int waited_ms = 0;;) {
    const bool ending = ending_;
    DWORD waiting = 0;
    if (!ends_->Peek(&waiting)) return 0;
    if (waiting > 0) return ends_->Read(bytes, count);
    if (ending && (drained_ || waited_ms >= patience_ms_)) return 0;
    if (!ending) meanwhile();
    ::Sleep(kPipeLookMs);
    if (ending) waited_ms += kPipeLookMs;
  }
}

}  // namespace ipodctl

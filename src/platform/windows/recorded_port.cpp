// SPDX-License-Identifier: MIT
// The port's services of desktop Windows, as the library calls them: the system's own, and with
// IPODCOMM_CAPTURE=FILE a recording of what they carried.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "platform/capture/port_recorder.h"
#include "platform/capture/process_recording.h"
#include "platform/services.h"

namespace ipodcomm::platform {
namespace {

// ---- What the driver tells besides the bytes ----------------------------------------------------

/// The driver tells an error once, to whoever asks: here they are counted.
class DriverStatus : public LineStatus {
 public:
  explicit DriverStatus(HANDLE port) : port_(port) {}

  /// @param flags of ClearCommError
  void Count(DWORD flags) {
    if ((flags & CE_FRAME) != 0) ++framing_;
    if ((flags & CE_RXPARITY) != 0) ++parity_;
    if ((flags & CE_BREAK) != 0) ++breaks_;
    if ((flags & (CE_OVERRUN | CE_RXOVER)) != 0) ++overflows_;
  }

  bool GetErrors(LineErrors* errors) override {
    errors->framing = framing_;
    errors->parity = parity_;
    errors->breaks = breaks_;
    errors->overflows = overflows_;
    return true;
  }

  bool GetControlLines(std::uint8_t* lines) override {
    DWORD bits = 0;
    if (GetCommModemStatus(port_, &bits) == FALSE) return false;
    *lines = 0;
    if ((bits & MS_CTS_ON) != 0) *lines |= capture::kCts;
    if ((bits & MS_RLSD_ON) != 0) *lines |= capture::kDcd;
    if ((bits & MS_DSR_ON) != 0) *lines |= capture::kDsr;
    if ((bits & MS_RING_ON) != 0) *lines |= capture::kRing;
    return true;
  }

 private:
  const HANDLE port_;
  std::atomic<std::uint32_t> framing_ = 0;
  std::atomic<std::uint32_t> parity_ = 0;
  std::atomic<std::uint32_t> breaks_ = 0;
  std::atomic<std::uint32_t> overflows_ = 0;
};

// ---- The ports that are recorded ----------------------------------------------------------------

/// Its end closes the recording of the port. A process ends here without waiting for the thread
/// that writes, so the end of a port does, a second at most.
class RecordedPort {
 public:
  RecordedPort(std::shared_ptr<capture::Recording> recording, const std::string& name, HANDLE port)
      : recording_(std::move(recording)) {
    auto status = std::make_unique<DriverStatus>(port);
    status_ = status.get();
    recorder_ = std::make_unique<PortRecorder>(std::make_unique<capture::LineTap>(recording_, name),
                                               std::move(status));
  }
  RecordedPort(const RecordedPort&) = delete;
  RecordedPort& operator=(const RecordedPort&) = delete;
  ~RecordedPort() {
    recorder_ = nullptr;
    recording_->Drain();
  }

  PortRecorder& recorder() { return *recorder_; }
  void Count(DWORD flags) { status_->Count(flags); }

 private:
  const std::shared_ptr<capture::Recording> recording_;
  DriverStatus* status_ = nullptr;  // the recorder's
  std::unique_ptr<PortRecorder> recorder_;
};

/// Lives as long as the process: other threads are ended before static objects are.
class RecordedPorts {
 public:
  static RecordedPorts& Instance() {
    static auto& instance = *new RecordedPorts;
    return instance;
  }

  std::shared_ptr<capture::Recording> RecordingIn(const std::string& file) {
    return process_.To(file);
  }

  void Add(HANDLE port, std::shared_ptr<RecordedPort> recorded) {
    const std::lock_guard lock(mutex_);
    ports_[port] = std::move(recorded);
    count_ = ports_.size();
  }

  /// Null for what is not recorded, at the cost of one look when nothing is.
  std::shared_ptr<RecordedPort> Find(HANDLE port) {
    if (count_ == 0) return nullptr;
    const std::lock_guard lock(mutex_);
    const auto found = ports_.find(port);
    return found == ports_.end() ? nullptr : found->second;
  }

  std::shared_ptr<RecordedPort> Take(HANDLE port) {
    if (count_ == 0) return nullptr;
    const std::lock_guard lock(mutex_);
    const auto found = ports_.find(port);
    if (found == ports_.end()) return nullptr;
    auto taken = std::move(found->second);
    ports_.erase(found);
    count_ = ports_.size();
    return taken;
  }

 private:
  RecordedPorts() = default;

  std::atomic<std::size_t> count_ = 0;
  std::mutex mutex_;  // guards what follows
  std::map<HANDLE, std::shared_ptr<RecordedPort>> ports_;
  capture::ProcessRecording process_;
};

std::string Utf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return {};
  std::string converted(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, converted.data(), size, nullptr, nullptr);
  converted.pop_back();  // the terminator
  return converted;
}

/// Empty when nothing is to be recorded.
std::string FileAskedFor() {
  const std::wstring variable(capture::kVariable,
                              capture::kVariable + sizeof capture::kVariable - 1);
  const DWORD size = GetEnvironmentVariableW(variable.c_str(), nullptr, 0);
  std::wstring file(size, L'\0');
  const DWORD length = GetEnvironmentVariableW(variable.c_str(), file.data(), size);
  return length < size ? Utf8(file.c_str()) : std::string();
}

// The thread that writes runs until the process ends, and its code must stay as long.
void StayLoaded() {
  HMODULE ignored = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<const wchar_t*>(&StayLoaded), &ignored);
}

void BeginToRecord(HANDLE port, const wchar_t* name) {
  const std::string file = FileAskedFor();
  if (file.empty()) return;
  const auto recording = RecordedPorts::Instance().RecordingIn(file);
  if (recording == nullptr) return;
  StayLoaded();
  std::string line = Utf8(name);
  if (!line.empty() && line.back() == ':') line.pop_back();
  const auto recorded = std::make_shared<RecordedPort>(recording, line, port);
  DCB settings = {};
  settings.DCBlength = sizeof settings;
  (GetCommState)(port, &settings);
  recorded->recorder().Configured(settings);
  RecordedPorts::Instance().Add(port, recorded);
}

/// Does not change the thread's last error, nor throw: a port goes on when there is no memory for
/// its recording.
template <class Action>
void Aside(const Action& action) {
  const DWORD code = GetLastError();
  try {
    action();
  } catch (const std::bad_alloc&) {
  }
  SetLastError(code);
}

template <class Action>
void IfRecorded(HANDLE port, const Action& action) {
  Aside([&] {
    if (const auto recorded = RecordedPorts::Instance().Find(port)) action(*recorded);
  });
}

// A port that was closed meanwhile is not recorded any more: it has not gone away.
void RecordFailure(HANDLE port) {
  const DWORD code = GetLastError();
  IfRecorded(port, [code](RecordedPort& recorded) {
    recorded.recorder().Gone("system error " + std::to_string(code));
  });
}

}  // namespace
}  // namespace ipodcomm::platform

using namespace ipodcomm;
using namespace ipodcomm::platform;

HANDLE DesktopCreateFile(const wchar_t* name, DWORD access, DWORD share,
                         SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                         HANDLE file_template) {
  const HANDLE port =
      (CreateFileW)(name, access, share, security, disposition, flags, file_template);
  if (port != INVALID_HANDLE_VALUE) Aside([&] { BeginToRecord(port, name); });
  return port;
}

// The recording of a port ends before its handle can be another port's.
BOOL DesktopCloseHandle(HANDLE handle) {
  Aside([&] { RecordedPorts::Instance().Take(handle); });
  return (CloseHandle)(handle);
}

BOOL DesktopSetCommState(HANDLE port, DCB* state) {
  if ((SetCommState)(port, state) == FALSE) return FALSE;
  IfRecorded(port, [&](RecordedPort& recorded) { recorded.recorder().Configured(*state); });
  return TRUE;
}

BOOL DesktopReadFile(HANDLE port, void* buffer, DWORD count, DWORD* read, OVERLAPPED* overlapped) {
  if ((ReadFile)(port, buffer, count, read, overlapped) == FALSE) {
    RecordFailure(port);
    return FALSE;
  }
  if (read == nullptr || *read == 0) return TRUE;
  IfRecorded(port, [&](RecordedPort& recorded) { recorded.recorder().Received(buffer, *read); });
  return TRUE;
}

BOOL DesktopWriteFile(HANDLE port, const void* data, DWORD count, DWORD* written,
                      OVERLAPPED* overlapped) {
  const bool recorded = RecordedPorts::Instance().Find(port) != nullptr;
  const capture::Nanoseconds began = recorded ? capture::WallClock() : 0;
  const BOOL succeeded = (WriteFile)(port, data, count, written, overlapped);
  if (recorded && written != nullptr && *written != 0) {
    IfRecorded(port, [&](RecordedPort& line) { line.recorder().Sent(data, *written, began); });
  }
  if (succeeded == FALSE) RecordFailure(port);
  return succeeded;
}

BOOL DesktopClearCommError(HANDLE port, DWORD* errors, COMSTAT* status) {
  DWORD flags = 0;
  const BOOL succeeded = (ClearCommError)(port, &flags, status);
  if (errors != nullptr) *errors = flags;
  if (flags != 0) IfRecorded(port, [&](RecordedPort& recorded) { recorded.Count(flags); });
  return succeeded;
}

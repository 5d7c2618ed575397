// SPDX-License-Identifier: MIT
// ipodserial: frames, written with the pause behind their sync byte and read one by one.
#include <algorithm>

#include "ipodcomm/TraceLog.h"
#include "ipodcomm/ipodserial.h"
#include "legacy/frame_hunt.h"
#include "platform/services.h"
#include "session/keep_going.h"

namespace {

constexpr int kMaxEmptyReads = 5;
constexpr std::uint32_t kMostBytesPerRead = 1024;
constexpr std::uint32_t kLongestPauseMs = 10000;

}  // namespace

int ipodserial::SetConduct(const tagIPOD_LEGACY_CONDUCT* conduct) {
  if (conduct == nullptr || conduct->sync_pause_ms > kLongestPauseMs) return 0;
  if (conduct->bytes_per_read < 1 || conduct->bytes_per_read > kMostBytesPerRead) return 0;
  if (conduct->line_pause_ms > kLongestPauseMs) return 0;
  if (conduct->sync_pause_until_answered < 0 || conduct->sync_pause_until_answered > 1) return 0;
  if (conduct->answers_questions < 0 || conduct->answers_questions > 1) return 0;
  conduct_ = *conduct;
  return 1;
}

int ipodserial::GetConduct(tagIPOD_LEGACY_CONDUCT* conduct) const {
  if (conduct == nullptr) return 0;
  *conduct = conduct_;
  return 1;
}

bool ipodserial::PauseBetweenLines() const {
  if (conduct_.line_pause_ms == 0) return false;
  Sleep(conduct_.line_pause_ms);
  return true;
}

// The sync byte goes out alone, ahead of the rest, and the iPod's receiver wakes up on it. Returns
// the bytes that the port accepted.
unsigned long ipodserial::WriteFrame(unsigned char* frame, unsigned length) {
  const bool awake = conduct_.sync_pause_until_answered != 0 && answered_ != 0;
  if (awake || conduct_.sync_pause_ms == 0) return writeport(frame, static_cast<int>(length));
  const unsigned long written = writeport(frame, 1);
  Sleep(conduct_.sync_pause_ms);
  return written + writeport(frame + 1, static_cast<int>(length - 1));
}

// Empty reads are counted over the whole call, wherever they fall in the frame: hosts in the field
// count on how long a call lasts when the line falls silent. While the host says no they are empty
// at once, and so are the pauses.
unsigned long ipodserial::readport(unsigned char* buffer, int size) {
  if (port_ == INVALID_HANDLE_VALUE || buffer == nullptr) return 0;
  ipodcomm::FrameHunt hunt;
  int stored = 0;
  int empty_reads = 0;
  while (empty_reads < kMaxEmptyReads && stored < size && !hunt.complete()) {
    unsigned char bytes[kMostBytesPerRead];
    const auto room = static_cast<std::uint32_t>(size - stored);
    const unsigned long read = ReadSome(bytes, std::min(room, hunt.least_missing()));
    if (read == 0) {
      ipodcomm::PauseInSlices(keep_going_, timeout_ms_);
      ++empty_reads;
      continue;
    }
    for (unsigned long i = 0; i < read; ++i) {
      if (hunt.Accept(bytes[i])) buffer[stored++] = bytes[i];
    }
    // Another thread may have closed the port meanwhile.
    if (port_ == INVALID_HANDLE_VALUE) break;
  }
  if (hunt.complete()) answered_ = 1;
  return static_cast<unsigned long>(stored);
}

// Up to `most` bytes; 0 when nothing came for as long as a read of one byte waits by default, or
// the read failed.
unsigned long ipodserial::ReadSome(unsigned char* buffer, unsigned long most) {
  DWORD read = 0;
  ipodcomm::WaitInSlices(keep_going_, 2 * timeout_ms_, [&](std::uint32_t /*slice_ms*/) {
    bool told = true;
    const DWORD wanted = BytesToRead(most, &told);
    DWORD count = 0;
    if (ReadFile(port_, buffer, wanted, &count, nullptr) == FALSE) return true;
    if (!told) {
      byte_wise_ = 1;
      CKORVATrace::LogSoftwareError(L"ipodserial::readport",
                                    L"Driver does not tell what it holds, reading byte by byte");
    }
    read = count;
    return read != 0;
  });
  return read;
}

// A read of several bytes asks for no more than the driver holds: how long a read of one byte waits
// is what hosts count on. Where the driver does not tell, one byte is asked for; when even that
// fails, the port is gone.
unsigned long ipodserial::BytesToRead(unsigned long most, bool* told) const {
  if (conduct_.bytes_per_read == 1 || byte_wise_ != 0) return 1;
  DWORD errors = 0;
  COMSTAT status = {};
  *told = ClearCommError(port_, &errors, &status) != FALSE;
  if (!*told || status.cbInQue == 0) return 1;
  return std::min<DWORD>({status.cbInQue, conduct_.bytes_per_read, most});
}

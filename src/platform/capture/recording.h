// SPDX-License-Identifier: MIT
// A pcapng file under construction.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "platform/capture/pcapng.h"

namespace ipodcomm::capture {

/// The present time.
Nanoseconds WallClock();

/// What is added is written by a thread of the recording's own, so that a slow disk, or a reader
/// that does not read, never holds up the session. Four megabytes wait at most; what is added then
/// is lost. When the file cannot be written any more, one sentence on standard error says so, and
/// the rest is dropped.
///
/// All members may be called from any thread.
class Recording {
 public:
  /// @param file its path, which is written from its beginning; "-" is standard output
  /// @return null when the file cannot be made, with the reason in `*error`
  static std::shared_ptr<Recording> Start(const std::string& file, std::string* error);

  /// Writes what waits, however long that takes.
  ~Recording();
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  /// @return the interface's number, for its packets
  std::uint32_t Add(const Interface& line);
  /// False when the packet was lost.
  bool Add(const Packet& packet);
  void Add(const Statistics& statistics);

  /// Waits until all is written, a second at most.
  void Drain();

 private:
  Recording(std::string file, std::FILE* stream);

  void Queue(const Bytes& block);
  void WriteUntilDone();
  bool Write(const Bytes& blocks);

  const std::string file_;
  std::FILE* const stream_;
  std::mutex mutex_;  // guards what follows
  std::condition_variable changed_;
  Bytes waiting_;
  std::uint32_t interfaces_ = 0;
  bool writing_ = false;
  bool done_ = false;
  bool failed_ = false;
  std::thread writer_;  // the last member: it uses the others
};

}  // namespace ipodcomm::capture

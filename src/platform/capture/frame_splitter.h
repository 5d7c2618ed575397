// SPDX-License-Identifier: MIT
// Parts the bytes of one direction of the line into frames and what is none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/capture/pcapng.h"

namespace ipodcomm::capture {

/// Bytes that belong together. The runs of a direction, put together, are its bytes.
struct ByteRun {
  Bytes bytes;
  Nanoseconds time = 0;  ///< of the first byte
  bool is_frame = false;
  bool bad_checksum = false;  ///< of a frame
};

/// It reads a line as the library does: a frame begins with FF 55, and its length tells where it
/// ends, whatever the checksum then says.
class FrameSplitter {
 public:
  /// Adds the next byte of the line, and to `ended` the runs that end with it.
  void Push(std::uint8_t byte, Nanoseconds now, std::vector<ByteRun>* ended);
  /// Ends the run that has begun: nothing came for long, or nothing more will come.
  void Flush(std::vector<ByteRun>* ended);

  /// Whether these bytes go on with a frame of which the sync byte has come and nothing else yet.
  bool GoesOn(const std::uint8_t* bytes, std::size_t count) const;

  /// When the last byte came.
  Nanoseconds last_byte_at() const { return last_byte_at_; }

 private:
  bool BeginsFrame(std::uint8_t byte) const;
  void BeginFrame(std::vector<ByteRun>* ended);
  bool IsWhole() const;
  bool ChecksumHolds() const;

  ByteRun current_;
  bool in_frame_ = false;  // the current run begins with FF 55
  Nanoseconds last_byte_at_ = 0;
};

}  // namespace ipodcomm::capture

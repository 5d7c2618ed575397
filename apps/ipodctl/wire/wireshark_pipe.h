// SPDX-License-Identifier: MIT
// The pipe from which Wireshark reads what an interface records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace ipodctl {

class WiresharkPipe {
 public:
  /// Waits until somebody reads it. A file does as well. Throws a CommandFailure when it cannot be
  /// written, or the program is interrupted meanwhile.
  explicit WiresharkPipe(const std::string& path);
  ~WiresharkPipe();
  WiresharkPipe(const WiresharkPipe&) = delete;
  WiresharkPipe& operator=(const WiresharkPipe&) = delete;

  /// False when it is not read any more, as at the end of a recording.
  bool Write(const std::uint8_t* bytes, std::size_t count);
  /// Whether it is still read, as far as the system tells without a byte being written.
  bool IsRead() const;

 private:
  class Stream;
  std::unique_ptr<Stream> stream_;
};

}  // namespace ipodctl

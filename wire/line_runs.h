// SPDX-License-Identifier: MIT
// Puts together what one side sent, where the packets of a recording are cut otherwise than frames.
#pragma once

#include <cstdint>
#include <vector>

#include "wire/conversation.h"

namespace ipodwire {

/// For one side of one line. A recording of ours has a packet for each frame, which passes as it
/// is; that of another program may have one for each read.
class LineRuns {
 public:
  explicit LineRuns(Sender sender) : sender_(sender) {}

  /// Adds a packet's bytes. @return the frames, and the bytes that are none, that end with it
  /// @param no_frame whether they are known to be no frame
  std::vector<Observed> Add(std::uint64_t number, Nanoseconds time,
                            const std::vector<std::uint8_t>& bytes, bool no_frame);
  /// What has begun and will not go on.
  std::vector<Observed> End();

 private:
  void Push(std::uint64_t number, Nanoseconds time, std::uint8_t byte,
            std::vector<Observed>* ended);
  void Finish(std::vector<Observed>* ended);
  bool IsWhole() const;

  Sender sender_;
  Observed current_;
  bool in_frame_ = false;
  Nanoseconds last_byte_at_ = 0;
};

}  // namespace ipodwire

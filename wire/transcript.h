// SPDX-License-Identifier: MIT
// A recording told packet by packet.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "wire/conversation.h"
#include "wire/line_runs.h"
#include "wire/recording_reader.h"

namespace ipodwire {

/// Follows the conversation of each line that a recording holds.
class Transcript {
 public:
  using Tell = std::function<void(const Told&)>;

  /// @param tell is called with each frame, each run of bytes that is none, and each event that
  /// stands
  ///     out, such as a framing error
  explicit Transcript(Tell tell) : tell_(std::move(tell)) {}

  void Add(const Packet& packet);
  /// Tells what had begun when the recording ended.
  /// @return what stayed unanswered
  std::vector<Note> End();

 private:
  struct Line {
    LineRuns sent{Sender::kAccessory};
    LineRuns received{Sender::kIpod};
    Conversation conversation;
  };

  void TellAll(Line* line, const std::vector<Observed>& runs);
  void TellEvent(const Packet& packet, Note::Kind kind, const std::string& text);

  Tell tell_;
  std::map<std::string, Line> lines_;  // by name
};

}  // namespace ipodwire

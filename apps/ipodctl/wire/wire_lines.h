// SPDX-License-Identifier: MIT
// What goes over the line, a line for each frame.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "console/output.h"
#include "wire/conversation.h"

namespace ipodctl {

/// Prints frames: as text, or as JSON objects where the output is for machines.
///
///       12  +0.035 < Extended Interface ReturnShuffle id 0x0007: shuffle albums
class WireLines {
 public:
  explicit WireLines(Output& output) : output_(output) {}

  void Print(const ipodwire::Told& told);
  /// What stands out at the end of the recording.
  void PrintEnd(const std::vector<ipodwire::Note>& notes);

 private:
  std::string Text(const ipodwire::Told& told) const;
  std::string NotesText(const std::vector<ipodwire::Note>& notes) const;
  nlohmann::ordered_json Json(const ipodwire::Told& told) const;
  ipodwire::Nanoseconds SincePrevious(const ipodwire::Told& told) const;

  Output& output_;
  std::optional<ipodwire::Nanoseconds> previous_;  // the time of the last that was printed
};

}  // namespace ipodctl

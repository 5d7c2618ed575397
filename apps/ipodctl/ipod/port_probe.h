// SPDX-License-Identifier: MIT
// Whether an iPod answers on a port, asked within some seconds.
#pragma once

#include <optional>
#include <string>

#include "options.h"

namespace ipodctl {

/// What came of asking.
struct PortAnswer {
  enum class Kind {
    kIpod,         // one answers, and may be controlled
    kNotAccepted,  // one answers, and does not accept the accessory or is too old
    kNothing,      // nothing answers
    kEcho,         // what is sent comes back
    kBusy,         // another program has the port open
    kForbidden,    // this user may not open it
    kUnusable,     // it cannot be opened otherwise
  };

  Kind kind = Kind::kNothing;
  std::optional<std::string> name;   // of the iPod; none: it did not tell
  std::optional<std::string> model;  // the same
  std::string trouble;               // a sentence, where there is more to tell

  bool ipod_answers() const { return kind == Kind::kIpod || kind == Kind::kNotAccepted; }
  /// Whether the port could be opened.
  bool opened() const;
  /// In one word, for machines.
  const char* word() const;
  /// "Anna's iPod (MB598LL)", "nothing answers", "busy": for people.
  std::string Text() const;
};

/// Identifies the accessory on the port, and closes it. Throws a CommandFailure when interrupted.
PortAnswer AskPort(const Options& options, const std::string& device);

}  // namespace ipodctl

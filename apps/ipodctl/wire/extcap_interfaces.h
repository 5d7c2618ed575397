// SPDX-License-Identifier: MIT
// The interfaces that Wireshark shows: what it is told of them, and what they stand for.
#pragma once

#include <string>
#include <vector>

#include "wire/extcap_arguments.h"

namespace ipodctl {

/// What differs by system and by build.
struct ExtcapSurroundings {
  std::string version;                ///< of this program
  std::string device;                 ///< that the library opens when none is named
  std::vector<std::string> profiles;  ///< of the simulated iPod; none where there is none
};

/// What is to be recorded into Wireshark's pipe: a session that this program makes, or the
/// recording of one that another program makes.
struct ExtcapCapture {
  std::string pipe;
  std::vector<std::string> session;  ///< this program's own arguments for it; empty for none
  std::string recording;             ///< its file; empty for none
};

/// What Wireshark reads; empty when it asks for a recording. Throws the CommandFailure that says
/// what is wrong with the question.
std::string AnswerExtcap(const ExtcapArguments& arguments, const ExtcapSurroundings& surroundings);

/// What it asks to be recorded. Throws likewise.
ExtcapCapture CaptureForExtcap(const ExtcapArguments& arguments,
                               const ExtcapSurroundings& surroundings);

}  // namespace ipodctl

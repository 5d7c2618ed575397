// SPDX-License-Identifier: MIT
// Why a session with an iPod failed, or could not be all that it might be.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ipodwire {

enum class Certainty {
  kProved,       ///< what went over the line admits nothing else
  kLikely,       ///< it admits something else, too, which is seldom the case
  kNotExcluded,  ///< one cause of several
};

/// "proved", "likely" or "not excluded".
const char* NameOf(Certainty certainty);

struct Finding {
  std::string code;  ///< "E301", by which its page is found
  Certainty certainty = Certainty::kProved;
  std::string seen;                    ///< the evidence, in one sentence without a full stop
  std::vector<std::uint64_t> packets;  ///< the numbers of the packets that show it, a few at most
  std::uint32_t rate = 0;  ///< in baud, at which the iPod is proved to send; 0 otherwise
};

/// What a code stands for. Texts are sentences.
struct FindingPage {
  const char* code;
  const char* title;    ///< without a full stop
  const char* tried;    ///< what the accessory was doing
  const char* meaning;  ///< what follows from it
  const char* remedy;   ///< what to do
};

/// In the order of their codes.
const std::vector<FindingPage>& FindingPages();
/// Null for an unknown code.
const FindingPage* FindFindingPage(const std::string& code);

}  // namespace ipodwire

// SPDX-License-Identifier: MIT
// What an identification asked and what came, as evidence for what is said of the iPod.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ipodcomm/CIpodComm.h"

namespace ipodctl {

/// "1.09"
std::string VersionText(const tagIPOD_VERSION& version);

/// Lingoes below what the library needs: "General 1.01, needs 1.02; ..." Those that `version` does
/// not tell are none.
std::string WhatIsTooOld(
    const std::function<std::optional<tagIPOD_VERSION>(unsigned char lingo)>& version);

class IdentifyEvidence {
 public:
  /// Of the last identification of `ipod`.
  explicit IdentifyEvidence(CIpodComm& ipod);
  explicit IdentifyEvidence(const tagIPOD_IDENTIFY_REPORT& report) : report_(report) {}

  /// Whether anything was answered, and be it by a refusal.
  bool AnyAnswer() const;
  /// Lingoes whose version the iPod told or refused to tell.
  std::vector<unsigned char> AskedLingoes() const;
  /// None when the iPod did not tell it.
  std::optional<tagIPOD_VERSION> Version(unsigned char lingo) const;
  /// The status with which it refused to tell it; none when it did not.
  std::optional<std::uint8_t> Refusal(unsigned char lingo) const;

  /// Whether the iPod told a version that is too old, and does not only keep one to itself.
  bool AnyTooOld() const;
  /// "General 1.01, needs 1.02; Display Remote not told (status 4, unknown to it), needs 1.01"
  std::string WhatIsTooOld() const;
  /// "no answer to any of 15 questions", "4 of 7 questions answered", or, when it ended with a
  /// refusal, "command 13 refused: status 4, unknown to it".
  std::string WhatCame() const;

 private:
  const tagIPOD_EXCHANGE* VersionStep(unsigned char lingo) const;

  tagIPOD_IDENTIFY_REPORT report_ = {};
};

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// Reads the report of an identification.
#include "ipod/identify_evidence.h"

#include <algorithm>
#include <cstdio>

#include "console/text.h"
#include "ipod/refusal.h"
#include "ipodcomm/ipod.h"

namespace ipodctl {

namespace {

constexpr std::uint16_t kRequestVersion = ipod::IPOD_COMMAND_REQUESTLINGOPROTOCOLVERSION;

struct Minimum {
  unsigned char lingo;
  const char* name;
  tagIPOD_VERSION version;
};

// Below these the library does not control an iPod.
constexpr Minimum kMinimums[] = {
    {ipod::IPOD_LINGO_GENERAL, "General", {1, 2}},
    {ipod::IPOD_LINGO_DISPLAY, "Display Remote", {1, 1}},
    {ipod::IPOD_LINGO_EXTENDED, "Extended Interface", {1, 8}},
};

bool IsBelow(const tagIPOD_VERSION& version, const tagIPOD_VERSION& minimum) {
  return version.major < minimum.major ||
         (version.major == minimum.major && version.minor < minimum.minor);
}

bool CameFromIpod(const tagIPOD_EXCHANGE& step) {
  return step.result == IPOD_EXCHANGE_ANSWERED || step.result == IPOD_EXCHANGE_REFUSED ||
         step.result == IPOD_EXCHANGE_DAMAGED;
}

std::string WhyNotTold(const tagIPOD_EXCHANGE* step) {
  const bool refused = step != nullptr && step->result == IPOD_EXCHANGE_REFUSED;
  return refused ? "not told (" + StatusText(step->status) + ")" : "not told";
}

std::string RefusalOf(const tagIPOD_EXCHANGE& step) {
  char command[32];
  std::snprintf(command, sizeof command, "command %02X refused: ", step.command);
  return command + StatusText(step.status);
}

}  // namespace

std::string VersionText(const tagIPOD_VERSION& version) {
  char text[16];
  std::snprintf(text, sizeof text, "%u.%02u", version.major, version.minor);
  return text;
}

std::string WhatIsTooOld(
    const std::function<std::optional<tagIPOD_VERSION>(unsigned char lingo)>& version) {
  std::string text;
  for (const Minimum& minimum : kMinimums) {
    const std::optional<tagIPOD_VERSION> told = version(minimum.lingo);
    if (!told || !IsBelow(*told, minimum.version)) continue;
    text += (text.empty() ? "" : "; ") + std::string(minimum.name) + " " + VersionText(*told) +
            ", needs " + VersionText(minimum.version);
  }
  return text;
}

IdentifyEvidence::IdentifyEvidence(CIpodComm& ipod) { ipod.GetIdentifyReport(&report_); }

bool IdentifyEvidence::AnyAnswer() const {
  return std::any_of(report_.step, report_.step + report_.steps, CameFromIpod);
}

const tagIPOD_EXCHANGE* IdentifyEvidence::VersionStep(unsigned char lingo) const {
  const tagIPOD_EXCHANGE* last = nullptr;
  for (const tagIPOD_EXCHANGE* step = report_.step; step != report_.step + report_.steps; ++step) {
    if (step->lingo == ipod::IPOD_LINGO_GENERAL && step->command == kRequestVersion &&
        step->argument == lingo) {
      last = step;
    }
  }
  return last;
}

std::vector<unsigned char> IdentifyEvidence::AskedLingoes() const {
  std::vector<unsigned char> lingoes;
  for (unsigned char lingo = 0; lingo <= ipod::IPOD_LINGO_DIGITALAUDIO; ++lingo) {
    const tagIPOD_EXCHANGE* const step = VersionStep(lingo);
    const bool told = step != nullptr && (step->result == IPOD_EXCHANGE_ANSWERED ||
                                          step->result == IPOD_EXCHANGE_REFUSED);
    if (told) lingoes.push_back(lingo);
  }
  return lingoes;
}

std::optional<tagIPOD_VERSION> IdentifyEvidence::Version(unsigned char lingo) const {
  const tagIPOD_EXCHANGE* const step = VersionStep(lingo);
  constexpr std::uint8_t kAnswerBytes = 3;  // the lingo, then its version
  if (step == nullptr || step->result != IPOD_EXCHANGE_ANSWERED ||
      step->data_bytes < kAnswerBytes) {
    return std::nullopt;
  }
  return tagIPOD_VERSION{step->data[1], step->data[2]};
}

std::optional<std::uint8_t> IdentifyEvidence::Refusal(unsigned char lingo) const {
  const tagIPOD_EXCHANGE* const step = VersionStep(lingo);
  if (step == nullptr || step->result != IPOD_EXCHANGE_REFUSED) return std::nullopt;
  return step->status;
}

bool IdentifyEvidence::AnyTooOld() const {
  return std::any_of(std::begin(kMinimums), std::end(kMinimums), [this](const Minimum& minimum) {
    const std::optional<tagIPOD_VERSION> version = Version(minimum.lingo);
    return version && IsBelow(*version, minimum.version);
  });
}

std::string IdentifyEvidence::WhatIsTooOld() const {
  std::string text;
  for (const Minimum& minimum : kMinimums) {
    const std::optional<tagIPOD_VERSION> version = Version(minimum.lingo);
    if (version && !IsBelow(*version, minimum.version)) continue;
    if (!text.empty()) text += "; ";
    text += std::string(minimum.name) + " " +
            (version ? VersionText(*version) : WhyNotTold(VersionStep(minimum.lingo))) +
            ", needs " + VersionText(minimum.version);
  }
  return text;
}

std::string IdentifyEvidence::WhatCame() const {
  const std::uint32_t asked = report_.steps + report_.steps_left_out;
  if (!AnyAnswer()) return "no answer to any of " + Counted(asked, "question");
  // What came last ended it. A refusal before that, such as that of the tokens, did not.
  const tagIPOD_EXCHANGE& last = report_.step[report_.steps - 1];
  if (last.result == IPOD_EXCHANGE_REFUSED) return RefusalOf(last);
  const auto answered = std::count_if(report_.step, report_.step + report_.steps, CameFromIpod);
  return std::to_string(answered) + " of " + Counted(asked, "question") + " answered";
}

}  // namespace ipodctl

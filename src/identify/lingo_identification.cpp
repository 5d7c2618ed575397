// SPDX-License-Identifier: MIT
// The identification sequence by IdentifyDeviceLingoes, with its survey of lingo versions.
#include <cstring>

#include "identify/identification_sequence.h"
#include "identify/lingo_versions.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "serial/event_wait.h"
#include "session/exchange.h"

using ipodcomm::Answer;
using ipodcomm::AtLeast;
using ipodcomm::Command;
using ipodcomm::kGeneralLingo;
namespace general = ipodcomm::general;

namespace {

constexpr std::uint32_t kGeneralOnly = 0x00000001;
constexpr std::uint32_t kWithoutSports = 0x00000019;  // General, Display Remote, Extended
constexpr std::uint32_t kWithSports = 0x00001219;     // and Sports and Storage

constexpr tagIPOD_VERSION kMinGeneral = {1, 2};
constexpr tagIPOD_VERSION kMinDisplayRemote = {1, 1};
constexpr tagIPOD_VERSION kMinExtended = {1, 8};
constexpr tagIPOD_VERSION kMinSports = {1, 1};
constexpr tagIPOD_VERSION kMinStorage = {1, 2};

// Whether the iPod said that it has no such lingo, and not that it failed just now.
bool IsUnknownLingo(const tagIPOD_EXCHANGE& asked) {
  constexpr std::uint8_t kBadParameter = 3;
  constexpr std::uint8_t kUnknownCommand = 4;
  return asked.result == IPOD_EXCHANGE_REFUSED &&
         (asked.status == kBadParameter || asked.status == kUnknownCommand);
}

struct PreferenceSetting {
  unsigned char preference_class;
  unsigned char setting;
};

// Preferences set after identification.
constexpr PreferenceSetting kPreferences[] = {
    {3, 1}, {1, 0}, {2, 0}, {8, 1}, {9, 0}, {10, 1}, {15, 1}, {0, 1},
};

}  // namespace

int CIpodComm::IdentificationSequence::IdentifyByLingoes() {
  if (!AnnounceLingoes(kGeneralOnly, nullptr)) {
    JudgeEcho();
    return 0;
  }
  if (!KeepGoing()) return 0;
  AwaitModelNumberRequest();

  const VersionVerdict versions = SurveyVersions();
  if (!KeepGoing()) return 0;
  if (versions == VersionVerdict::kUnknown) {
    NKDbgPrintfW(L"iPod told too few versions!\r\n");
    return 0;
  }
  if (versions == VersionVerdict::kTooOld) {
    NKDbgPrintfW(L"iPod version too old!\r\n");
    SetResult(IPOD_IDENTIFY_RESULT_TOOOLD);
    return 0;
  }
  Identity& identity = session_.identity_;
  if (AtLeast(identity.sports, kMinSports) && AtLeast(identity.storage, kMinStorage)) {
    identity.sports_supported = 1;
  }

  unsigned char status = 0;
  const bool sports = identity.sports_supported != 0;
  if (!AnnounceLingoes(sports ? kWithSports : kWithoutSports, &status)) return 0;
  if (status != 0) {
    AwaitModelNumberRequest();
    return 0;
  }
  // Identified from here on: the result is set before the iPod is configured, which takes seconds.
  SetResult(IPOD_IDENTIFY_RESULT_LINGOS);
  return ConfigureIpod();
}

// IdentifyDeviceLingoes: `13 mask options device-id`, ACK. True when the exchange succeeded.
bool CIpodComm::IdentificationSequence::AnnounceLingoes(std::uint32_t mask, unsigned char* status) {
  unsigned char data[12] = {};
  ipodcomm::WriteNumber32(data, mask);
  std::memcpy(data + 4, options_, 4);
  std::memcpy(data + 8, device_id_, 4);
  unsigned char ack[2] = {};
  if (!session_.Exchange(Command(kGeneralLingo, general::kIdentifyDeviceLingoes, data),
                         Answer(general::kAck, ack))) {
    return false;
  }
  if (status != nullptr) *status = ack[0];
  return true;
}

// The iPod asks for the model number last of all. A time-out is normal.
void CIpodComm::IdentificationSequence::AwaitModelNumberRequest() {
  constexpr std::uint32_t kWaitMs = 1000;
  ipodcomm::WaitInSlices(session_.HostToAsk(), kWaitMs, [this](std::uint32_t ms) {
    return ipodcomm::WaitForEvent(session_.identification_event_, ms);
  });
}

// Asks for the versions of the lingoes that the accessory uses. Under the robust conduct one that
// it cannot do without and that stays unanswered ends the survey: to ask on would take seconds and
// change nothing.
auto CIpodComm::IdentificationSequence::SurveyVersions() -> VersionVerdict {
  const struct {
    const wchar_t* name;
    std::uint8_t lingo;
    tagIPOD_VERSION Identity::*version;
    bool needed;
  } surveyed[] = {
      {L"General", kGeneralLingo, &Identity::general, true},
      {L"Display Remote", ipodcomm::kDisplayRemoteLingo, &Identity::display_remote, true},
      {L"Extended", ipodcomm::kExtendedLingo, &Identity::extended, true},
      {L"Sports", ipodcomm::kSportsLingo, &Identity::sports, false},
      {L"Storage", ipodcomm::kStorageLingo, &Identity::storage, false},
  };
  bool any_told = false;
  for (const auto& row : surveyed) {
    tagIPOD_VERSION& version = session_.identity_.*row.version;
    if (Robust()) version = {};  // what another iPod told
    const bool told = SurveyVersion(row.name, row.lingo, row.needed, &version);
    any_told = any_told || told;
    if (Robust() && row.needed && !told && !IsUnknownLingo(session_.last_exchange_)) {
      return JudgeVersions(any_told, true);
    }
  }
  return JudgeVersions(any_told, false);
}

bool CIpodComm::IdentificationSequence::SurveyVersion(const wchar_t* name, std::uint8_t lingo,
                                                      bool needed, tagIPOD_VERSION* version) {
  bool told = session_.Command_RequestLingoProtocolVersion(lingo, version) != 0;
  // A busy iPod refuses what it answers a moment later.
  const bool refused = session_.last_exchange_.result == IPOD_EXCHANGE_REFUSED;
  if (!told && Robust() && needed && refused) {
    told = session_.Command_RequestLingoProtocolVersion(lingo, version) != 0;
  }
  if (!told) {
    NKDbgPrintfW(L"Lingo Version - %s = not supported\r\n", name);
    return false;
  }
  NKDbgPrintfW(L"Lingo Version - %s = %d.%02d\r\n", name, version->major, version->minor);
  return true;
}

// Under the robust conduct "too old" needs evidence: a version that was told and is below its
// minimum, or an iPod that told others and does not know a lingo. Silence is none.
auto CIpodComm::IdentificationSequence::JudgeVersions(bool any_told, bool unanswered) const
    -> VersionVerdict {
  const Identity& identity = session_.identity_;
  const struct {
    const tagIPOD_VERSION& version;
    const tagIPOD_VERSION& minimum;
  } needed[] = {{identity.general, kMinGeneral},
                {identity.display_remote, kMinDisplayRemote},
                {identity.extended, kMinExtended}};
  bool suffice = true;
  bool told_too_low = false;
  for (const auto& row : needed) {
    if (AtLeast(row.version, row.minimum)) continue;
    suffice = false;
    told_too_low = told_too_low || row.version.major != 0 || row.version.minor != 0;
  }
  if (suffice) return VersionVerdict::kSuffice;
  const bool unknown = !any_told || (unanswered && !told_too_low);
  return Robust() && unknown ? VersionVerdict::kUnknown : VersionVerdict::kTooOld;
}

int CIpodComm::IdentificationSequence::ConfigureIpod() {
  if (!KeepGoing()) return 0;
  AwaitModelNumberRequest();
  for (const PreferenceSetting& preference : kPreferences) {
    session_.Command_SetPreference(preference.preference_class, preference.setting);
  }
  if (!KeepGoing()) return 0;
  AdjustEventNotifications();
  return 1;
}

// SPDX-License-Identifier: MIT
// The identification sequence by IdentifyDeviceLingoes, with its survey of lingo versions.
#include <cstring>

#include "identify/identification_sequence.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "serial/event_wait.h"
#include "session/exchange.h"

using ipodcomm::Answer;
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

bool AtLeast(const tagIPOD_VERSION& version, const tagIPOD_VERSION& minimum) {
  return version.major > minimum.major ||
         (version.major == minimum.major && version.minor >= minimum.minor);
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
  if (!AnnounceLingoes(kGeneralOnly, nullptr) || !KeepGoing()) return 0;
  AwaitModelNumberRequest();

  const bool surveyed = SurveyVersions();
  if (!KeepGoing()) return 0;
  if (!surveyed && session_.conduct_.robust != 0) {
    NKDbgPrintfW(L"iPod told no version!\r\n");
    return 0;
  }
  if (!VersionsSuffice()) {
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
  constexpr unsigned long kWaitMs = 1000;
  ipodcomm::WaitForEvent(session_.identification_event_, kWaitMs);
}

// False when the iPod told no version at all.
bool CIpodComm::IdentificationSequence::SurveyVersions() {
  Identity& identity = session_.identity_;
  int told = 0;
  told += SurveyVersion(L"General", kGeneralLingo, &identity.general);
  told += SurveyVersion(L"Display Remote", ipodcomm::kDisplayRemoteLingo, &identity.display_remote);
  told += SurveyVersion(L"Extended", ipodcomm::kExtendedLingo, &identity.extended);
  told += SurveyVersion(L"Sports", ipodcomm::kSportsLingo, &identity.sports);
  told += SurveyVersion(L"Storage", ipodcomm::kStorageLingo, &identity.storage);
  return told != 0;
}

bool CIpodComm::IdentificationSequence::SurveyVersion(const wchar_t* name, std::uint8_t lingo,
                                                      tagIPOD_VERSION* version) {
  if (session_.Command_RequestLingoProtocolVersion(lingo, version) == 0) {
    NKDbgPrintfW(L"Lingo Version - %s = not supported\r\n", name);
    return false;
  }
  NKDbgPrintfW(L"Lingo Version - %s = %d.%02d\r\n", name, version->major, version->minor);
  return true;
}

bool CIpodComm::IdentificationSequence::VersionsSuffice() const {
  const Identity& identity = session_.identity_;
  return AtLeast(identity.general, kMinGeneral) &&
         AtLeast(identity.display_remote, kMinDisplayRemote) &&
         AtLeast(identity.extended, kMinExtended);
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

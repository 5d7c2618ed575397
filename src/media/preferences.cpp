// SPDX-License-Identifier: MIT
// CIpodComm: the iPod's own preferences.
#include "identify/lingo_versions.h"
#include "ipodcomm/CIpodComm.h"
#include "protocol/commands.h"
#include "session/exchange.h"

using ipodcomm::Answer;
using ipodcomm::Command;
using ipodcomm::kGeneralLingo;
namespace general = ipodcomm::general;

// Preferences came with version 1.05 of the General lingo; an older iPod is not asked.
bool CIpodComm::KnowsPreferences() const { return ipodcomm::AtLeast(identity_.general, {1, 5}); }

int CIpodComm::Command_GetPreference(unsigned char preference_class, unsigned char* setting) {
  if (!KnowsPreferences()) return 0;
  const unsigned char data[] = {preference_class};
  unsigned char reply[2] = {};
  tagIPOD_READ_PARAMS read = Answer(general::kRetIpodPreferences, reply);
  if (!Exchange(Command(kGeneralLingo, general::kGetIpodPreferences, data), &read)) return 0;
  if (read.received_command == general::kAck) return 0;  // refused
  if (setting != nullptr) *setting = reply[1];
  return 1;
}

int CIpodComm::Command_SetPreference(unsigned char preference_class, unsigned char setting) {
  constexpr unsigned char kRestoreOnExit = 1;
  if (!KnowsPreferences()) return 0;
  const unsigned char data[] = {preference_class, setting, kRestoreOnExit};
  return ExchangeForGeneralAck(Command(kGeneralLingo, general::kSetIpodPreferences, data));
}

// SPDX-License-Identifier: MIT
// What a host begins with: it opens the port and introduces the console to the iPod. And what it
// tells its user when something fails.
#pragma once

#include <ipodcomm/CIpodComm.h>

#include <string>

namespace example {

/// A sentence on why the iPod has not done `what`, which it was asked for last.
inline std::string WhyNot(CIpodComm& session, const std::string& what) {
  tagIPOD_EXCHANGE last = {};
  session.GetLastExchange(&last);
  switch (last.result) {
    case IPOD_EXCHANGE_REFUSED:
      return "The iPod refused to " + what + " (status " + std::to_string(last.status) + ").";
    case IPOD_EXCHANGE_UNANSWERED:
      return "The iPod did not answer when asked to " + what + ". Is it still docked?";
    default:
      return "The iPod did not " + what + ".";
  }
}

/// A sentence on why the iPod could not be identified.
inline std::string WhyNotIdentified(CIpodComm& session, tagIPOD_IDENTIFY_RESULT how) {
  if (how == IPOD_IDENTIFY_RESULT_TOOOLD) return "This iPod's software is too old; update it.";
  if (how == IPOD_IDENTIFY_RESULT_ECHO)
    return "The line is wired back to itself; no iPod is on it.";
  tagIPOD_IDENTIFY_REPORT report = {};
  session.GetIdentifyReport(&report);
  for (std::uint32_t i = 0; i < report.steps; ++i) {
    if (report.step[i].result != IPOD_EXCHANGE_UNANSWERED) {
      return "The iPod does not accept this console. Take it out, dock it again.";
    }
  }
  return "No iPod answers. Is one docked and switched on?";
}

/// Opens the port and makes the iPod accept the console, which takes some seconds.
/// @param keep_going optional; asked with `context`, false ends the identification
/// @return empty when the iPod takes commands, else what to tell the user
inline std::string Dock(CIpodComm& session, bool (*keep_going)(void*) = nullptr,
                        void* context = nullptr) {
  session.SetConduct(&IPOD_CONDUCT_ROBUST);  // notice lost, late and doubled answers
  session.SetModel("QZ104");
  session.SetIDPSEnable(1);  // by tokens where the iPod knows them
  if (const long code = session.Open(); code != 0) {
    return "The port cannot be opened (code " + std::to_string(code) + ").";
  }
  tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
  if (session.Command_IdentifyDeviceLingos(0, &how, keep_going, context) == 0) {
    return WhyNotIdentified(session, how);
  }
  if (session.Command_EnterRemoteUIMode() == 0)
    return WhyNot(session, "be controlled from outside");
  return {};
}

}  // namespace example

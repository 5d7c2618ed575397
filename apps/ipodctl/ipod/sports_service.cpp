// SPDX-License-Identifier: MIT
// Finds out why there is no Sports service.
#include "ipod/sports_service.h"

#include "console/failure.h"
#include "ipod/refusal.h"

namespace ipodctl {

namespace {

constexpr unsigned char kSportsLingo = 0x09;

}  // namespace

// That none was offered does not mean that there is none: the iPod may have refused to say so when
// it was identified.
void RequireSportsService(Session& session, const std::string& lack, const std::string& advice) {
  CIpodComm& ipod = session.ipod();
  if (ipod.SupportsSports() != 0) return;
  if (ipod.Command_RequestLingoProtocolVersion(kSportsLingo, nullptr, nullptr) != 0) {
    throw CommandFailure(kFailed, lack +
                                      ": it did not offer its Sports service when it was "
                                      "identified; take it out of the dock and put it back");
  }
  const tagIPOD_EXCHANGE last = session.Last();
  if (last.result == IPOD_EXCHANGE_REFUSED && SaysUnknown(last.status)) {
    throw CommandFailure(kFailed, lack + ": it has no Sports service" + advice);
  }
  session.Fail(last, "tell whether it has a Sports service");
}

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
#include "console/failure.h"

#include <nlohmann/json.hpp>

namespace ipodctl {

namespace {

const char* WordFor(ExitStatus status) {
  switch (status) {
    case kPortUnavailable:
      return "port-unavailable";
    case kNothingDocked:
      return "nothing-docked";
    case kIpodTooOld:
      return "ipod-too-old";
    case kUsage:
      return "usage";
    case kDamaged:
      return "damaged";
    case kInputFile:
      return "input-file";
    case kCannotCreate:
      return "cannot-create";
    case kInterrupted:
      return "interrupted";
    default:
      return "failed";
  }
}

}  // namespace

nlohmann::ordered_json ToJson(const CommandFailure& failure) {
  nlohmann::ordered_json json = {{"error", WordFor(failure.status())},
                                 {"message", failure.what()},
                                 {"status", static_cast<int>(failure.status())}};
  if (!failure.finding().empty()) json["finding"] = failure.finding();
  return json;
}

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// Asks the Sports service about its user.
#include "settings/userdata.h"

#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "ipod/sports_service.h"
#include "ipodcomm/ipod.h"

namespace ipodctl {

namespace {

void RequireUserData(Session& session) {
  CIpodComm& ipod = session.ipod();
  unsigned short caps = 0;
  RequireSportsService(session, "this iPod knows nothing about its user", "");
  session.Require(ipod.Command_SportsGetIpodCaps(&caps, nullptr) != 0,
                  "tell its Sports capabilities");
  if ((caps & ipod::IPOD_SPORTS_GETIPODCAPS_MASK_USERDATA) == 0) {
    throw CommandFailure(kFailed,
                         "this iPod knows nothing about its user: its Sports service keeps no such "
                         "data");
  }
}

// The answer is longer than those about the other data, so the library takes one that is cut short.
unsigned short ReadWeight(Session& session) {
  constexpr unsigned char kWeight = 3;
  const auto data = session.ExchangeWhole(
      {ipod::IPOD_COMMAND_SPORTS_GETUSERDATA, ipod::IPOD_LINGO_SPORTS, &kWeight, 1},
      ipod::IPOD_COMMAND_SPORTS_RETURNUSERDATA,
      [](const std::vector<unsigned char>& answer) { return answer.size() >= 3; }, "the weight");
  session.Require(data.has_value(), "tell the weight");
  return static_cast<unsigned short>((*data)[1] << 8 | (*data)[2]);
}

void SetWeight(Session& session, unsigned wanted) {
  CIpodComm& ipod = session.ipod();
  session.Require(ipod.Command_SetUserWeight(static_cast<unsigned short>(wanted)) != 0,
                  "take the weight");
  const unsigned short weight = ReadWeight(session);
  if (weight == wanted) return;
  throw CommandFailure(kFailed, "the iPod took the weight " + std::to_string(wanted) +
                                    ", but has kept " + std::to_string(weight));
}

}  // namespace

void RunUserdata(const Context& context, Session& session) {
  RequireUserData(session);
  if (context.options.user_weight) SetWeight(session, *context.options.user_weight);
  int flag = 0;
  unsigned char value = 0;
  session.Require(session.ipod().Command_GetUserData(&flag, nullptr, &value) != 0,
                  "tell what it knows about its user");
  const unsigned short weight = ReadWeight(session);
  // What the flag and the value mean is up to the iPod, so they are shown as they are.
  context.output.Fact("Weight", std::to_string(weight));
  context.output.Fact("Flag (data type 2)", flag != 0 ? "set" : "not set");
  context.output.Fact("Value (data type 4)", std::to_string(value));
  context.output.Object({{"weight", weight}, {"flag", flag != 0}, {"value", value}});
}

}  // namespace ipodctl
